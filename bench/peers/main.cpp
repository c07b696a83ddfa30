// Times bk_parser and other libraries that keep documents as trees, on equal content in the form of each library. Every cell runs in a
// process of its own. The peers take turns within an operation, so that a change of the machine's speed affects all of them. The run fails
// unless a typed walk of each tree finds the same values.

#include "bench/peers/corpora.h"
#include "bench/peers/figures.h"
#include "bench/peers/plot.h"
#include "bench/peers/targets.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string_view>

namespace {

using bench::CellResult;
using bench::Corpus;
using bench::Operation;
using bench::PeerKind;

constexpr const char* usage = "usage: bk_parser_peers [--corpus DIR] [--only CORPUS] [--operations A,B] "
                              "[--peers A,B] [--rounds N] [--plot DIR]\n";

/// How often each cell is timed, in all its rounds together.
constexpr unsigned int least_repetitions = 7;

struct Options {
    std::string folder;
    std::string only;
    std::string operations;
    std::string peers;
    std::string pictures; // the folder for the charts
    unsigned int rounds = 3;
};

bool is_listed(const std::string& list, const std::string& name) {
    return list.empty() || ("," + list + ",").find("," + name + ",") != std::string::npos;
}

bool take_options(int argc, char** argv, Options& options) {
    const std::map<std::string_view, std::string*> texts = {{"--corpus", &options.folder},
                                                            {"--only", &options.only},
                                                            {"--operations", &options.operations},
                                                            {"--peers", &options.peers},
                                                            {"--plot", &options.pictures}};
    for (int i = 1; i < argc; i += 2) {
        const auto found = texts.find(argv[i]);
        const bool is_rounds = std::string_view(argv[i]) == "--rounds";
        if (i + 1 == argc || (found == texts.end() && !is_rounds)) {
            return false;
        }
        if (is_rounds) {
            options.rounds = static_cast<unsigned int>(std::max(1, std::atoi(argv[i + 1])));
        } else {
            *found->second = argv[i + 1];
        }
    }
    return true;
}

/// Keeps the checksum of the first walk, and refuses a walk that differs from it. Does the same with the number of changes, for forms with
/// the same entries.
class Agreement {
public:
    bool takes(const PeerKind& peer, Operation operation, const CellResult& result) {
        if (operation == Operation::edit &&
            (peer.form == bench::Form::text || peer.form == bench::Form::xml)) {
            changes_ = changes_ == 0 ? result.amount : changes_;
            return result.amount == changes_;
        }
        if (!result.was_walked) {
            return true;
        }
        if (operation == Operation::decode_walk && peer.is(PeerKind::STORES_NO_TEMPLATES)) {
            return result.sum.bits == known_.bits && result.sum.leaves <= known_.leaves;
        }
        if (!is_known_) {
            is_known_ = true;
            known_ = result.sum;
        }
        return result.sum.leaves == known_.leaves && result.sum.exact == known_.exact &&
               (peer.is(PeerKind::LOOSE_DECIMALS) || result.sum.bits == known_.bits) &&
               std::abs(result.sum.sum - known_.sum) <= 1e-9 * std::abs(known_.sum) + 1e-6;
    }
    const bench::Checksum& known() const { return known_; }

private:
    bool is_known_ = false;
    bench::Checksum known_;
    std::size_t changes_ = 0;
};

void complain(const PeerKind& peer, Operation operation, const CellResult& result,
              const bench::Checksum& known) {
    if (operation == Operation::edit) {
        std::fprintf(stderr, "%s, edit: %zu changes, unlike others\n", peer.name, result.amount);
        return;
    }
    std::fprintf(
        stderr, "%s, %s: saw %llu values, %llx, %llx, %.17g; not %llu, %llx, %llx, %.17g\n", peer.name,
        bench::operation_name(operation), static_cast<unsigned long long>(result.sum.leaves),
        static_cast<unsigned long long>(result.sum.exact), static_cast<unsigned long long>(result.sum.bits),
        result.sum.sum, static_cast<unsigned long long>(known.leaves),
        static_cast<unsigned long long>(known.exact), static_cast<unsigned long long>(known.bits), known.sum);
}

/// Times all cells of one corpus, and returns how many failed.
class Race {
public:
    Race(const Corpus& corpus, const Options& options) : corpus_(corpus), options_(options) {}

    unsigned int run() {
        for (unsigned int i = 0; i < bench::operation_count; ++i) {
            const auto operation = static_cast<Operation>(i);
            if (is_listed(options_.operations, bench::operation_name(operation))) {
                race(operation);
            }
        }
        bench::print_table(corpus_, results_);
        std::printf("\ntargets over %s\n", corpus_.name.c_str());
        for (const bench::Target& target : bench::targets_over(corpus_, results_)) {
            bench::print_target(target);
        }
        std::fflush(stdout);
        return failures_;
    }

    const bench::Results& results() const { return results_; }

private:
    void race(Operation operation) {
        std::map<const PeerKind*, CellResult> cells;
        for (unsigned int round = 0; round < rounds_of(operation); ++round) {
            for (const PeerKind& peer : bench::all_peers()) {
                if (peer.can(operation) && is_listed(options_.peers, peer.name)) {
                    run(peer, operation, cells[&peer]);
                }
            }
        }
        for (const auto& [peer, cell] : cells) {
            if (!cell.samples.empty()) {
                results_.keep(*peer, operation, corpus_, cell);
            }
        }
    }

    unsigned int rounds_of(Operation operation) const {
        if (operation == Operation::memory) {
            return 1;
        }
        return operation == Operation::first ? std::max(least_repetitions, options_.rounds) : options_.rounds;
    }

    void run(const PeerKind& peer, Operation operation, CellResult& all) {
        const std::size_t repetitions = (least_repetitions + options_.rounds - 1) / options_.rounds;
        const std::optional<CellResult> result =
            bench::run_cell_apart(peer, operation, corpus_.path, repetitions);
        if (!result) {
            std::fprintf(stderr, "%s, %s over %s: failed\n", peer.name, bench::operation_name(operation),
                         corpus_.name.c_str());
            ++failures_;
            return;
        }
        if (!agreement_.takes(peer, operation, *result)) {
            complain(peer, operation, *result, agreement_.known());
            ++failures_;
            return;
        }
        all.samples.insert(all.samples.end(), result->samples.begin(), result->samples.end());
        all.amount = result->amount;
    }

    const Corpus& corpus_;
    const Options& options_;
    bench::Results results_;
    Agreement agreement_;
    unsigned int failures_ = 0;
};

} // namespace

int main(int argc, char** argv) {
    if (argc == 6 && std::string_view(argv[1]) == "--cell") {
        return bench::answer_cell(argv[2], argv[3], argv[4], std::strtoul(argv[5], nullptr, 10));
    }
    Options options;
    if (!take_options(argc, argv, options)) {
        std::fputs(usage, stderr);
        return 2;
    }
    const bench::TemporaryFolder folder;
    unsigned int failures = 0;
    std::vector<bench::Raced> raced;
    for (const Corpus& corpus : bench::make_corpora(options.folder, options.only, folder.path())) {
        Race race(corpus, options);
        failures += race.run();
        raced.push_back({corpus, race.results()});
    }
    std::printf("\n");
    bench::print_target(bench::keystream_target());
    if (!options.pictures.empty()) {
        bench::write_figures(raced, options.pictures + "/performance_figures.md");
        if (!bench::plot(raced, folder.path(), options.pictures)) {
            std::fputs("the pictures could not be drawn\n", stderr);
            ++failures;
        }
    }
    if (failures != 0) {
        std::fprintf(stderr, "%u failed\n", failures);
    }
    return failures == 0 ? 0 : 1;
}
