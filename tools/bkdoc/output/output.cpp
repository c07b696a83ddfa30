#include "output/output.h"

#include "output/display/text_display.h"

#include <cerrno>

namespace bkdoc {

namespace {

constexpr std::size_t buffer_size = std::size_t{64} * 1024;
constexpr std::size_t message_limit = 1000; // characters

std::string_view start_of(Tone tone) {
    switch (tone) {
    case Tone::plain:
        return {};
    case Tone::strong:
        return "\x1b[1m";
    case Tone::dim:
        return "\x1b[2m";
    case Tone::name:
        return "\x1b[1;34m";
    case Tone::text:
        return "\x1b[32m";
    case Tone::number:
        return "\x1b[36m";
    case Tone::flag:
        return "\x1b[33m";
    case Tone::data:
        return "\x1b[35m";
    case Tone::warning:
        return "\x1b[1;35m";
    case Tone::error:
        return "\x1b[1;31m";
    case Tone::caret:
        return "\x1b[1;32m";
    }
    return {};
}

constexpr std::string_view end_of_tone = "\x1b[0m";

// Some failures do not set errno.
int last_error() noexcept {
    return errno != 0 ? errno : EIO;
}

} // namespace

Output::Output(std::FILE* stream, bool coloured, bool terminal)
    : stream_(stream), coloured_(coloured), terminal_(terminal) {}

Output& Output::operator<<(std::string_view text) {
    if (!has_failed()) {
        buffer_ += text;
        if (buffer_.size() >= buffer_size) {
            write_out();
        }
    }
    return *this;
}

void Output::paint(Tone tone, std::string_view text) {
    if (!coloured_ || tone == Tone::plain) {
        *this << text;
    } else {
        *this << start_of(tone) << text << end_of_tone;
    }
}

void Output::write_out() {
    used_ = used_ || !buffer_.empty();
    errno = 0;
    if (std::fwrite(buffer_.data(), 1, buffer_.size(), stream_) != buffer_.size()) {
        error_ = last_error();
    }
    buffer_.clear();
}

bool Output::flush() {
    if (!has_failed()) {
        write_out();
    }
    errno = 0;
    if (!has_failed() && std::fflush(stream_) != 0) {
        error_ = last_error();
    }
    return !has_failed();
}

bool Output::close() {
    const bool flushed = flush();
    errno = 0;
    // A stream that was closed from the start is an error only if something was written to it.
    if (std::fclose(stream_) != 0 && flushed && used_) {
        error_ = last_error();
    }
    return !has_failed();
}

void complain(Streams& streams, std::string_view message) {
    streams.out.flush();
    streams.err << "bkdoc: " << shown(message, message_limit) << "\n";
    streams.err.flush();
}

} // namespace bkdoc
