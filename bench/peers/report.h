#pragma once

#include "bench/peers/cell.h"

#include <map>
#include <string>
#include <vector>

namespace bench {

/// A corpus in files, one for each form, which differ only in their extension.
struct Corpus {
    std::string name;
    std::string path;
    double values = 0.0;
    bool is_scene = false;
    bool is_numeric = false; // nearly all values are decimals
};

/// The median of each cell of one corpus. A rate is in millions of values a second, for the edit in millions of changes.
class Results {
public:
    void keep(const PeerKind& peer, Operation operation, const Corpus& corpus, const CellResult& result);
    /// Negative when the operation was not timed.
    double rate(const std::string& peer, Operation operation) const;
    double bytes_per_value(const std::string& peer) const;

private:
    std::map<std::pair<std::string, Operation>, double> figures_;
};

constexpr const char* operation_titles[operation_count] = {
    "parse",    "parse+walk", "walk",     "again",   "edit",  "pretty", "compact", "built/pr",
    "built/co", "encode",     "dec+walk", "destroy", "whole", "first",  "bytes"};

/// A corpus and its results.
struct Raced {
    Corpus corpus;
    Results results;
};

bool is_measured(const Results& results, Operation operation);
bool takes_part(const Results& results, const PeerKind& peer);

/// Prints the rates of all peers, and after each rate how many times faster bk_parser is.
void print_table(const Corpus& corpus, const Results& results);

} // namespace bench
