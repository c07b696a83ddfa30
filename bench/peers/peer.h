#pragma once

#include "bench/peers/checksum.h"
#include "bench/peers/forms.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace bench {

/// The input of a peer: the content in its form, and the kinds of the values when the form has no types.
struct Source {
    std::string text;
    std::string kinds;
};

/// A library with one document. A peer does not override the steps that it lacks, and its entry in the list of peers does not name them.
/// Steps that can fail return false or 0; a peer that fails is not timed.
class Peer {
public:
    virtual ~Peer() = default;

    /// Called before each parse, not timed. A peer that parses in place makes a fresh copy of the text.
    virtual void prepare() {}
    virtual bool parse() = 0;
    /// Reads every value in its own type.
    virtual Checksum walk() const = 0;
    /// Not timed. Replaces the parsed tree with one that is built value by value.
    virtual bool build() { return false; }
    /// Of each ten entries that hold values, renames one, adds one after another, removes one, and moves one to the end of its group
    /// (Turns). Returns the number of changes.
    virtual std::size_t edit() { return 0; }
    /// Returns the size of the output, which is kept until `forget`.
    virtual std::size_t print(bool) { return 0; }
    virtual std::size_t encode() { return 0; }
    /// Reads what the last `encode` wrote into a new document.
    virtual bool decode() { return false; }
    virtual void destroy() = 0;
    /// Not timed. Frees the output.
    virtual void forget() {}
    /// Not timed. Frees a copy of the text that the tree does not need.
    virtual void drop_text() {}
};

enum class Operation {
    parse,
    parse_walk,
    walk,
    walk_again,
    edit,
    print_pretty,
    print_compact,
    built_pretty,
    built_compact,
    encode,
    decode_walk,
    destroy,
    load_walk_close,
    first,
    memory
};
constexpr unsigned int operation_count = 15;
const char* operation_name(Operation operation);

constexpr unsigned int bit(Operation operation) {
    return 1u << static_cast<unsigned int>(operation);
}
constexpr unsigned int reads = bit(Operation::parse) | bit(Operation::parse_walk) | bit(Operation::walk) |
                               bit(Operation::walk_again) | bit(Operation::destroy) |
                               bit(Operation::load_walk_close) | bit(Operation::first) |
                               bit(Operation::memory);
constexpr unsigned int prints = bit(Operation::print_pretty) | bit(Operation::print_compact);
constexpr unsigned int built_prints = bit(Operation::built_pretty) | bit(Operation::built_compact);
constexpr unsigned int stores = bit(Operation::encode) | bit(Operation::decode_walk);
constexpr unsigned int edits = bit(Operation::edit);

/// The properties of a peer.
struct PeerKind {
    enum Trait : unsigned int {
        NONE = 0,
        /// Parses in place: overwrites the caller's text, which must then live as long as the tree.
        IN_PLACE = 1,
        READ_ONLY = 2,
        LOOSE_DECIMALS = 4,     // does not promise the nearest double
        STORES_NO_TEMPLATES = 8 // in bytes
    };

    const char* name;
    Form form;
    unsigned int traits;
    unsigned int operations;
    std::unique_ptr<Peer> (*make)(const Source& source);

    bool is(Trait trait) const { return (traits & trait) != 0; }
    bool can(Operation operation) const { return (operations & bit(operation)) != 0; }
};

/// All peers; bk_parser is the first.
const std::vector<PeerKind>& all_peers();
const PeerKind* find_peer(const std::string& name);

template <class P>
std::unique_ptr<Peer> make_peer(const Source& source) {
    return std::make_unique<P>(source);
}

} // namespace bench
