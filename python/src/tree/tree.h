#pragma once

#include "tree/handle_map.h"

#include "document/document.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace bk_python {

struct Search;

/// Where a group stands: the entry that holds it, and the group that lists that entry.
struct GroupPlace {
    ParserEntry* holder = nullptr;
    ParserGroup* outer = nullptr;
};

/// Something that owns entries: a document, or an entry or a group that was taken out of one. It lives as long as a Python
/// object refers to it or to something in it; it knows those objects, and an edit tells them where they belong from then on.
/// So no object ever points at what is gone: what is removed while an object stands for it lives on in a tree of its own.
///
/// Everything here is used with the interpreter's lock held. While a save works without it, `is_busy` is set, and whoever
/// wants the tree waits (wait_until_free).
class Tree {
public:
    explicit Tree(bk_parser::LoadResult loaded);
    Tree(std::unique_ptr<ParserEntry> entry, std::uint64_t origin) noexcept
        : origin_(origin), entry_(std::move(entry)) {}
    Tree(std::unique_ptr<ParserGroup> group, std::uint64_t origin) noexcept
        : origin_(origin), group_(std::move(group)) {}

    void retain() noexcept { ++references_; }
    void release() noexcept {
        if (--references_ == 0) {
            delete this;
        }
    }

    /// Null for what was taken out.
    bk_parser::Document* document() noexcept { return loaded_ ? &loaded_->document : nullptr; }
    const std::vector<bk_parser::Problem>& problems() const noexcept;
    /// The outermost group; null in the tree of an entry.
    ParserGroup* root() noexcept { return loaded_ ? &loaded_->document.root() : group_.get(); }
    /// The entry that this tree is about; null for a document or a group.
    ParserEntry* entry() noexcept { return entry_.get(); }
    std::unique_ptr<ParserEntry> give_entry() noexcept { return std::move(entry_); }
    void take_entry(std::unique_ptr<ParserEntry> entry) noexcept { entry_ = std::move(entry); }
    /// Of the document that lines and columns of this tree's entries refer to; 0 for none.
    std::uint64_t origin() const noexcept { return origin_; }

    /// Before entries come, go or move: searches find the rest of what they look for now, and go on from a list.
    void settle_searches();
    /// After that, and after a value changed that a path may show.
    void forget_paths() noexcept { paths_.reset(); }
    void forget_places() noexcept { places_.reset(); }

    /// The path of an entry from the document's root on. Linear in the tree for the first of several that are
    /// asked without an edit between.
    std::string path_of(const ParserEntry& entry);
    /// Nothing of a root. Linear in the tree once, until groups come, go or move.
    GroupPlace place_of(ParserGroup& group);

    HandleMap handles;
    Search* searches = nullptr; // those that have not ended, each pointing to the next
    std::atomic<bool> is_busy = false;

private:
    ~Tree() = default;

    std::size_t references_ = 0;
    std::uint64_t origin_;
    std::optional<bk_parser::LoadResult> loaded_;
    std::unique_ptr<ParserEntry> entry_;
    std::unique_ptr<ParserGroup> group_;
    std::optional<bk_parser::PathIndex> paths_;
    std::optional<std::unordered_map<const ParserGroup*, GroupPlace>> places_;
};

/// Waits until no save works on the tree. The interpreter's lock is given up meanwhile.
void wait_until_free(Tree& tree);

/// Waits until no save goes on: one that a fork cuts in two never ends in the child. The interpreter's lock is given up
/// meanwhile.
void wait_for_saves();
/// What a save does first, so that those who wait for saves have their turn.
void wait_for_forks();
/// Called in the child of a fork.
void begin_forked();

/// Keeps others off the tree while the interpreter's lock is given up. Made and destroyed with that lock held.
class Occupation {
public:
    explicit Occupation(Tree& tree);
    ~Occupation();
    Occupation(const Occupation&) = delete;
    Occupation& operator=(const Occupation&) = delete;

private:
    Tree& tree_;
};

/// A reference that counts.
class TreeRef {
public:
    explicit TreeRef(Tree* tree) noexcept : tree_(tree) { tree_->retain(); }
    ~TreeRef() { tree_->release(); }
    TreeRef(const TreeRef&) = delete;
    TreeRef& operator=(const TreeRef&) = delete;
    Tree& operator*() const noexcept { return *tree_; }
    Tree* operator->() const noexcept { return tree_; }
    Tree* get() const noexcept { return tree_; }

private:
    Tree* tree_;
};

/// Every group that is a value of the entry.
template <class Action>
void each_group(const ParserEntry& entry, const Action& act) {
    for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
        ParserGroup* group = nullptr;
        if (bk_parser::access::read(entry, i, group)) {
            act(*group);
        }
    }
}

/// The first group among the values; null when there is none.
inline ParserGroup* first_group(const ParserEntry& entry) {
    for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
        ParserGroup* group = nullptr;
        if (bk_parser::access::read(entry, i, group)) {
            return group;
        }
    }
    return nullptr;
}

} // namespace bk_python
