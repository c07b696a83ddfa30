#pragma once

#include "input/opened_document.h"
#include "output/output.h"
#include "verbs/exit_code.h"

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace bkdoc {

/// The name of a file in reports; `memory_name` for a document in memory.
std::string shown_file(const std::filesystem::path& file, const std::string& memory_name);

/// The message of a problem in the words of the command line: names of library options become those of the tool. Removes the
/// file's name from its beginning when that is `name`.
std::string tool_message(const bk_parser::Problem& problem, const std::string& name);

/// A place where a file is included.
struct InclusionPlace {
    std::filesystem::path file;
    unsigned int line = 0; // 0 if unknown
    unsigned int column = 0;
};
/// The includes that lead to a problem, innermost first.
std::vector<InclusionPlace> chain_of(const bk_parser::Problem& problem,
                                     const std::vector<bk_parser::Include>& includes);

/// Writes problems as "file:line:column: error: message [code]", with the source line and a caret below. The chain of includes
/// precedes the first problem of an included file.
class ProblemWriter {
public:
    ProblemWriter(Output& out, std::string memory_name) : out_(out), memory_name_(std::move(memory_name)) {}

    void write(const bk_parser::Problem& problem, const std::vector<InclusionPlace>& chain);
    /// Writes one line, without the chain and the source line.
    void write_line(const bk_parser::Problem& problem);

private:
    void write_chain(const std::vector<InclusionPlace>& chain);

    Output& out_;
    std::string memory_name_;
    std::filesystem::path last_file_; // of the last problem with a chain
};

/// Identifies a problem by its file, byte and code. The message does not count: that of a name without a value at the end of an include
/// depends on the text after the include.
std::string place_key(const bk_parser::Problem& problem);

/// Remembers the problems of many documents, so that one in a file that several of them include is reported once.
class ReportedProblems {
public:
    /// Whether an earlier document had the problem.
    bool has(const bk_parser::Problem& problem) const;
    void add(const OpenedDocument& document);

private:
    std::set<std::string> known_;
};

/// All problems of a document except the one because of which nothing was read, and except those reported before.
void report(const OpenedDocument& document, Output& out, ReportedProblems& reported);

/// For verbs whose output is not a report: writes the problems, and why a document cannot be read, to the error stream. The
/// exit code is the same when the problems were reported before.
ExitCode report_aside(const OpenedDocument& document, Streams& streams, ReportedProblems& reported);
/// Writes the same for a verb that reads a single document, which cannot have reported problems before.
ExitCode report_aside(const OpenedDocument& document, Streams& streams);

} // namespace bkdoc
