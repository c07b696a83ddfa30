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

/// Switches off the translation of line ends on the standard streams, and makes a write to a closed pipe return an error
/// instead of ending the process.
void prepare_streams();

/// Whether to write colours: the stream is a terminal that knows them, and NO_COLOR is not set.
bool takes_colours(std::FILE* stream);

/// Whether the stream is a terminal.
bool is_terminal(std::FILE* stream);

/// The columns of the terminal, from 40 to 100, because longer lines are hard to read; 80 if unknown.
std::size_t terminal_width(std::FILE* stream);

/// Whether two paths, in UTF-8, lead to the same existing file.
bool are_same_file(const std::string& first, const std::string& second);

/// Whether a path, in UTF-8, leads to the file that standard input reads from.
bool is_standard_input(const std::string& path);

/// Whether the errno of a failed write means that the reader closed the pipe.
bool is_closed_pipe(int error) noexcept;

} // namespace bkdoc
