#pragma once

#include "bench/peers/peer.h"

#include <optional>
#include <string>
#include <vector>

namespace bench {

/// What one operation of one peer over one corpus came to.
struct CellResult {
    std::vector<double> samples; // seconds, or bytes for Operation::memory
    Checksum sum;                // of the walk, where there was one
    bool was_walked = false;
    std::size_t amount = 0; // changes made, or bytes written
};

/// Runs it in this process, so many times at least. Nothing when the peer fails.
std::optional<CellResult> run_cell(const PeerKind& kind, Operation operation, const std::string& corpus,
                                   std::size_t repetitions);

/// Runs it in a child process, which is this program once more, so that each cell finds a fresh heap.
std::optional<CellResult> run_cell_apart(const PeerKind& kind, Operation operation, const std::string& corpus,
                                         std::size_t repetitions);

/// The child's side of it: measures and reports.
int answer_cell(const std::string& peer, const std::string& operation, const std::string& corpus,
                std::size_t repetitions);

/// The middle one.
double median(std::vector<double> samples);

} // namespace bench
