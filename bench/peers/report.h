#pragma once

#include "bench/peers/cell.h"

#include <map>
#include <string>
#include <vector>

namespace bench {

/// A corpus as it stands in files, one for each form, all of the same name but for the ending.
struct Corpus {
    std::string name;
    std::string path;
    double values = 0.0;
    bool is_scene = false;
    bool is_numeric = false; // hardly anything but decimals
};

/// The median of each cell of one corpus. Rates are millions a second, of values or, for the edit, of changes.
class Results {
public:
    void keep(const PeerKind& peer, Operation operation, const Corpus& corpus, const CellResult& result);
    /// Negative when there is none.
    double rate(const std::string& peer, Operation operation) const;
    double bytes_per_value(const std::string& peer) const;

private:
    std::map<std::pair<std::string, Operation>, double> figures_;
};

constexpr const char* operation_titles[operation_count] = {
    "parse",    "parse+walk", "walk",     "again",   "edit",  "pretty", "compact", "built/pr",
    "built/co", "encode",     "dec+walk", "destroy", "whole", "first",  "bytes"};

/// A corpus and what came of it.
struct Raced {
    Corpus corpus;
    Results results;
};

bool is_measured(const Results& results, Operation operation);
bool takes_part(const Results& results, const PeerKind& peer);

/// The rates of all peers, and beside each how many times faster bk_parser is.
void print_table(const Corpus& corpus, const Results& results);

} // namespace bench
