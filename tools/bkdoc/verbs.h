#pragma once

#include "document.h"
#include "exit_code.h"
#include "output.h"

#include <limits>
#include <string>
#include <vector>

/// The verbs of the tool: each takes what the command line says and does one thing. A verb that writes
/// something other than a report puts the faults of the document on the error stream, and gives EXIT_FAULTS
/// for them.
namespace bkdoc {

struct CheckOptions {
    OpenOptions open;
    std::vector<std::string> files;
};
/// Reports the faults of each file.
ExitCode run_check(const CheckOptions& options, Streams& streams, StreamDevice& device);

struct CatOptions {
    OpenOptions open;
    std::string file;
    bool compact = false;
};
/// Writes the document as the library writes it.
ExitCode run_cat(const CatOptions& options, Streams& streams, StreamDevice& device);

struct TreeOptions {
    OpenOptions open;
    std::string file;
    std::size_t depth = std::numeric_limits<std::size_t>::max();
};
/// Draws the groups, entries and values as a tree.
ExitCode run_tree(const TreeOptions& options, Streams& streams, StreamDevice& device);

struct InfoOptions {
    OpenOptions open;
    std::string file;
};
/// Says what the document is made of and which files it needs.
ExitCode run_info(const InfoOptions& options, Streams& streams, StreamDevice& device);

struct SameOptions {
    OpenOptions open;
    std::string first;
    std::string second;
};
/// Says whether two documents hold the same tree, else where they differ first. Where an entry stood in its
/// file does not count, nor how a number was spelled.
ExitCode run_same(const SameOptions& options, Streams& streams, StreamDevice& device);

} // namespace bkdoc
