#pragma once

#include "input/document.h"
#include "output/output.h"
#include "verbs/exit_code.h"

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
    bool content = false;
};
/// Says whether two documents hold the same tree, else where they differ first. Where an entry stood in its
/// file does not count, nor how a number was spelled. With `content`, only names and values count.
ExitCode run_same(const SameOptions& options, Streams& streams, StreamDevice& device);

struct ConvertOptions {
    OpenOptions open;
    std::string file;
    std::string target; // "-" is standard output
    DocumentForm form = DocumentForm::text;
    bool lossy = false;
};
/// Stores the document in another form. What was made is read back and compared before it takes the target's name;
/// a target that cannot be written, or would hold something else, stays as it was.
ExitCode run_convert(const ConvertOptions& options, Streams& streams, StreamDevice& device);

struct DumpOptions {
    OpenOptions open;
    std::string file;
};
/// Writes what each byte of a binary, enciphered or archive file means, up to the first that cannot be explained.
ExitCode run_dump(const DumpOptions& options, Streams& streams, StreamDevice& device);

} // namespace bkdoc
