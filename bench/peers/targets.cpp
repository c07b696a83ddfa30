#include "bench/peers/targets.h"

#include "bench/thread_time.h"
#include "parser/cipher/parser_keystream_impl.h"

#include <cstdio>
#include <string_view>

namespace bench {

namespace {

/// Targets for one kind of document: groups and short entries, long lists of decimals, or strings.
struct Wanted {
    double whole;       // of parse, first walk and destroy: times the rate of the best editable tree
    double whole_exact; // the same: times the rate of RapidJSON with the nearest double
    double print;       // times the rate of the best editable tree
    double decode;      // of decode and walk: times the rate of msgpack-cxx
    double destroyed;   // millions of values a second
};

Wanted wanted_of(const Corpus& corpus) {
    if (corpus.is_scene) {
        return {0.8, 1.3, 2.0, 1.0, 1000.0};
    }
    return corpus.is_numeric ? Wanted{1.0, 1.5, 1.2, 1.0, 2000.0} : Wanted{0.8, 0.9, 1.0, 0.9, 500.0};
}

/// The targets over one corpus.
class Targets {
public:
    Targets(const Corpus& corpus, const Results& results) : corpus_(corpus), results_(results) {}

    std::vector<Target> all() {
        const Wanted wanted = wanted_of(corpus_);
        times(best_editable(Operation::load_walk_close), Operation::load_walk_close, wanted.whole);
        times("rapidjson_exact", Operation::load_walk_close, wanted.whole_exact);
        if (corpus_.is_scene) {
            times("pugixml_inplace", Operation::first, 1.0);
            at_most("bytes per value", results_.bytes_per_value(our_name()), 92.0);
        }
        times(best_editable(Operation::print_pretty), Operation::print_pretty, wanted.print);
        times(best_editable(Operation::print_compact), Operation::print_compact, wanted.print);
        times("rapidjson", Operation::built_pretty, 1.0);
        times("rapidjson", Operation::built_compact, 1.0);
        times("msgpack-cxx", Operation::encode, 1.0);
        times("msgpack-cxx", Operation::decode_walk, wanted.decode);
        at_least("destroy, millions of values a second", results_.rate(our_name(), Operation::destroy),
                 wanted.destroyed);
        times("pugixml", Operation::edit, 0.5);
        return std::move(targets_);
    }

private:
    static const char* our_name() { return all_peers()[0].name; }

    void times(const std::string& peer, Operation operation, double wanted) {
        const double ours = results_.rate(our_name(), operation);
        const double theirs = results_.rate(peer, operation);
        if (ours > 0.0 && theirs > 0.0) {
            const std::string what = std::string(operation_name(operation)) + ", times " + peer;
            targets_.push_back({what, ours / theirs, wanted, ours >= wanted * theirs});
        }
    }

    void at_least(const char* what, double reached, double wanted) {
        if (reached > 0.0) {
            targets_.push_back({what, reached, wanted, reached >= wanted});
        }
    }

    void at_most(const char* what, double reached, double wanted) {
        if (reached > 0.0) {
            targets_.push_back({what, reached, wanted, reached <= wanted});
        }
    }

    /// The best of the peers that took part.
    std::string best_editable(Operation operation) const {
        std::string best;
        for (const PeerKind& peer : all_peers()) {
            if (peer.name != std::string_view(our_name()) && !peer.is(PeerKind::READ_ONLY) &&
                results_.rate(peer.name, operation) > results_.rate(best, operation)) {
                best = peer.name;
            }
        }
        return best;
    }

    const Corpus& corpus_;
    const Results& results_;
    std::vector<Target> targets_;
};

} // namespace

std::vector<Target> targets_over(const Corpus& corpus, const Results& results) {
    return Targets(corpus, results).all();
}

Target keystream_target() {
    constexpr std::size_t size = 1u << 20;
    std::vector<unsigned char> bytes(size);
    std::vector<double> samples;
    for (unsigned int i = 0; i < 31; ++i) {
        const double start = thread_seconds();
        bk::Keystream keystream(7);
        keystream.add_to(bytes.data(), bytes.data(), size / 4);
        samples.push_back(thread_seconds() - start);
    }
    const double rate = static_cast<double>(size) / median(samples) * 1e-9;
    return {"keystream, GB a second", rate, 6.0, rate >= 6.0};
}

void print_target(const Target& target) {
    std::printf("  %-11s  %-58s %8.2f, wanted %.2f\n", target.is_reached ? "reached" : "NOT REACHED",
                target.what.c_str(), target.reached, target.wanted);
}

} // namespace bench
