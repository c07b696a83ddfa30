#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

/// What differs between systems.
namespace bkdoc {

/// The words of the command line after the tool's own name, in UTF-8.
std::vector<std::string> command_line(int argc, char** argv);

/// The value in UTF-8; empty when the variable is not set.
std::string environment_variable(const char* name);

/// Lets bytes pass the standard streams untranslated, and makes writing to a closed pipe an error that can
/// be seen.
void prepare_streams();

/// Whether colours suit the stream: it is a terminal that knows them, and NO_COLOR is not set.
bool takes_colours(std::FILE* stream);

/// Whether the stream is a terminal.
bool is_terminal(std::FILE* stream);

/// How many columns a terminal has; 80 where that is not known. At least 40, at most 100: longer lines are hard to read.
std::size_t terminal_width(std::FILE* stream);

/// Whether two paths, in UTF-8, lead to one file that is there.
bool are_same_file(const std::string& first, const std::string& second);

/// Whether a path, in UTF-8, leads to the file that standard input comes from.
bool is_standard_input(const std::string& path);

/// Whether the failure of a write, given by its errno, only says that the reader has had enough.
bool is_closed_pipe(int error) noexcept;

} // namespace bkdoc
