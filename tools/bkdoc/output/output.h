#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace bkdoc {

/// The meaning of a piece of output. Each has its colour on a terminal.
enum class Tone { plain, strong, dim, name, text, number, flag, data, warning, error, caret };

/// A buffered standard stream. It remembers a failed write: after that nothing is written, and long work may stop early.
class Output {
public:
    Output(std::FILE* stream, bool coloured, bool terminal);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    Output& operator<<(std::string_view text);
    /// Writes the text in the colour of its tone.
    void paint(Tone tone, std::string_view text);

    bool is_terminal() const noexcept { return terminal_; }
    bool has_failed() const noexcept { return error_ != 0; }
    /// The errno of the failed write; 0 when none failed.
    int get_error() const noexcept { return error_; }

    bool flush();
    /// Flushes and closes the stream. Only then is it known that everything was written.
    bool close();

private:
    void write_out();

    std::FILE* stream_;
    std::string buffer_;
    bool coloured_;
    bool terminal_;
    bool used_ = false;
    int error_ = 0;
};

/// The streams of a verb: results and errors.
struct Streams {
    Output& out;
    Output& err;
};

/// Writes one line to the error stream, after the tool's name.
void complain(Streams& streams, std::string_view message);

} // namespace bkdoc
