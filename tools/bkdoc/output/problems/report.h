#pragma once

#include "input/opened_document.h"
#include "output/output.h"
#include "verbs/exit_code.h"

#include <filesystem>
#include <string>
#include <vector>

namespace bkdoc {

/// A file as reports name it; `memory_name` stands for a document in memory.
std::string shown_file(const std::filesystem::path& file, const std::string& memory_name);

/// The message of a problem in the words of the command line: what the library says of its options is said of the tool's.
/// Without the name of the file that it begins with, when that is `name`.
std::string tool_message(const bk_parser::Problem& problem, const std::string& name);

/// Where a document includes a file.
struct InclusionPlace {
    std::filesystem::path file;
    unsigned int line = 0; // 0 when it is not known
    unsigned int column = 0;
};
/// The chain of includes that leads to a problem, the innermost first.
std::vector<InclusionPlace> chain_of(const bk_parser::Problem& problem,
                                     const std::vector<bk_parser::Include>& includes);

/// Writes problems, each as "file:line:column: error: message [code]" with the source line and a caret under it. Before a
/// problem of an included file stands how it was included, once for those that follow each other in it.
class ProblemWriter {
public:
    ProblemWriter(Output& out, std::string memory_name) : out_(out), memory_name_(std::move(memory_name)) {}

    void write(const bk_parser::Problem& problem, const std::vector<InclusionPlace>& chain);
    /// One line, without the chain and the snippet.
    void write_line(const bk_parser::Problem& problem);

private:
    void write_chain(const std::vector<InclusionPlace>& chain);

    Output& out_;
    std::string memory_name_;
    std::filesystem::path last_file_; // of a problem with a chain
};

/// Every problem of a document but the one that kept it out.
void report(const OpenedDocument& document, Output& out);

/// For verbs that write something else: the report, and why the document cannot be read, go to the error stream.
ExitCode report_aside(const OpenedDocument& document, Streams& streams);

} // namespace bkdoc
