#pragma once

#include "bench/peers/peer.h"

#include <optional>
#include <string>
#include <vector>

namespace bench {

/// The result of one operation of one peer on one corpus.
struct CellResult {
    std::vector<double> samples; // seconds, or bytes for Operation::memory
    Checksum sum;                // of the walk, if `was_walked`
    bool was_walked = false;
    std::size_t amount = 0; // changes made, or bytes written
};

/// Runs the operation in this process at least `repetitions` times. Returns nothing when the peer fails.
std::optional<CellResult> run_cell(const PeerKind& kind, Operation operation, const std::string& corpus,
                                   std::size_t repetitions);

/// Runs the operation in a child process, which executes this program again, so that each cell has a fresh heap.
std::optional<CellResult> run_cell_apart(const PeerKind& kind, Operation operation, const std::string& corpus,
                                         std::size_t repetitions);

/// Called in the child: measures, and prints the result for the parent.
int answer_cell(const std::string& peer, const std::string& operation, const std::string& corpus,
                std::size_t repetitions);

/// The middle one.
double median(std::vector<double> samples);

} // namespace bench
