#pragma once

#include "core/core_string.h"

#include <string_view>

namespace bk {

/// A word as it stands in the text.
struct Token {
    unsigned int start = 0;
    unsigned int length = 0; // 0 at the end of the text
    core_ulong line = 0;
    core_ulong column = 0;
};

/// Cuts a text into words and counts lines and columns. A word is a span of the text; nothing is copied.
///
/// Lines count from 1; carriage return and line feed count one line each. The column of a word that ends at white
/// space is that of its first byte counted from 1; of a delimiter, of a word that ends at a delimiter and of the last
/// word of the text it is counted from 0.
class WordStream {
public:
    explicit WordStream(std::string_view text) noexcept
        : begin_(text.data()), end_(begin_ + text.size()), position_(begin_), line_start_(begin_) {}

    /// Cuts the next word; an empty one is found only at the end.
    Token next() noexcept;

    /// Whether every byte has been consumed: the byte that ends a word goes with it, but for a delimiter.
    bool at_end() const noexcept { return position_ == end_; }
    /// How far the text is consumed, from 0 to 1.
    float fraction() const noexcept;
    std::string_view characters(const Token& token) const noexcept {
        return {begin_ + token.start, token.length};
    }

private:
    void skip_blanks() noexcept;
    const char* word_end() const noexcept;
    const char* string_end(const char* p) const noexcept;
    Token make_token(const char* start, const char* end, core_ulong column_base) const noexcept;
    void consume_line_break() noexcept;

    const char* begin_;
    const char* end_;
    const char* position_;
    const char* line_start_;
    core_ulong line_ = 1;
};

} // namespace bk
