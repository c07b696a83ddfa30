#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace bkdoc {

/// What a piece of output is; each has its colour on a terminal.
enum class Tone { plain, strong, dim, name, text, number, flag, data, warning, error, caret };

/// One of the standard streams. It is buffered, and remembers that a write failed: from then on nothing
/// more is written, and long work may stop early.
class Output {
public:
    Output(std::FILE* stream, bool coloured, bool terminal);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    Output& operator<<(std::string_view text);
    /// The text in the colour of its tone.
    void paint(Tone tone, std::string_view text);

    bool is_terminal() const noexcept { return terminal_; }
    bool has_failed() const noexcept { return error_ != 0; }
    /// The errno of the write that failed; 0 when none did.
    int get_error() const noexcept { return error_; }

    bool flush();
    /// Flushes and closes the stream: only then is it known that all is stored.
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

/// Where a verb writes what it was asked for, and what went wrong.
struct Streams {
    Output& out;
    Output& err;
};

/// One line on the error stream, after the tool's name.
void complain(Streams& streams, std::string_view message);

} // namespace bkdoc
