#include "bench/peers/report.h"

#include <cstdio>

namespace bench {

namespace {

template <class Cell>
void print_rows(const Results& results, const char* title, Cell cell) {
    std::printf("%-20s", title);
    for (unsigned int i = 0; i < operation_count; ++i) {
        if (is_measured(results, static_cast<Operation>(i))) {
            std::printf(" %10s", operation_titles[i]);
        }
    }
    std::printf("\n");
    for (const PeerKind& peer : all_peers()) {
        if (!takes_part(results, peer)) {
            continue;
        }
        std::printf("%-20s", peer.name);
        for (unsigned int i = 0; i < operation_count; ++i) {
            const auto operation = static_cast<Operation>(i);
            if (!is_measured(results, operation)) {
                continue;
            }
            const double amount = cell(peer, operation);
            amount >= 0.0 ? std::printf(" %10.2f", amount) : std::printf(" %10s", "");
        }
        std::printf("%s\n", peer.is(PeerKind::READ_ONLY) ? "  read-only" : "");
    }
}

} // namespace

void Results::keep(const PeerKind& peer, Operation operation, const Corpus& corpus,
                   const CellResult& result) {
    const double middle = median(result.samples);
    const double amount = operation == Operation::edit ? static_cast<double>(result.amount) : corpus.values;
    figures_[{peer.name, operation}] =
        operation == Operation::memory ? middle / corpus.values : amount / middle * 1e-6;
}

double Results::rate(const std::string& peer, Operation operation) const {
    const auto found = figures_.find({peer, operation});
    return found == figures_.end() ? -1.0 : found->second;
}

double Results::bytes_per_value(const std::string& peer) const {
    return rate(peer, Operation::memory);
}

bool is_measured(const Results& results, Operation operation) {
    for (const PeerKind& peer : all_peers()) {
        if (results.rate(peer.name, operation) >= 0.0) {
            return true;
        }
    }
    return false;
}

bool takes_part(const Results& results, const PeerKind& peer) {
    for (unsigned int i = 0; i < operation_count; ++i) {
        if (results.rate(peer.name, static_cast<Operation>(i)) >= 0.0) {
            return true;
        }
    }
    return false;
}

void print_table(const Corpus& corpus, const Results& results) {
    std::printf("\n%s, %.0f values; millions of values a second, of changes for the edit\n",
                corpus.name.c_str(), corpus.values);
    print_rows(results, "",
               [&](const PeerKind& peer, Operation operation) { return results.rate(peer.name, operation); });
    std::printf("\n");
    print_rows(results, "bk_parser is, times", [&](const PeerKind& peer, Operation operation) {
        const double ours = results.rate(all_peers()[0].name, operation);
        const double theirs = results.rate(peer.name, operation);
        if (ours <= 0.0 || theirs <= 0.0) {
            return -1.0;
        }
        return operation == Operation::memory ? theirs / ours : ours / theirs;
    });
}

} // namespace bench
