#include "parser/parser_word_stream_impl.h"

#include "parser/parser_characters_impl.h"

namespace bk {

Token WordStream::next() noexcept {
    skip_blanks();
    const char* const start = position_;
    if (start == end_) {
        return make_token(start, start, 0);
    }
    if (is_char(*start, CHAR_DELIMITER)) {
        ++position_;
        return make_token(start, position_, 0);
    }
    const char* const end = word_end();
    position_ = end;
    if (end == end_ || !is_char(*end, CHAR_BLANK)) {
        return make_token(start, end, 0);
    }
    const Token token = make_token(start, end, 1);
    if (is_char(*end, CHAR_LINE_BREAK)) {
        consume_line_break();
    } else {
        ++position_;
    }
    return token;
}

float WordStream::fraction() const noexcept {
    return begin_ == end_ ? 1.0F : static_cast<float>(position_ - begin_) / static_cast<float>(end_ - begin_);
}

void WordStream::skip_blanks() noexcept {
    while (position_ != end_ && is_char(*position_, CHAR_BLANK)) {
        if (is_char(*position_, CHAR_LINE_BREAK)) {
            consume_line_break();
        } else {
            ++position_;
        }
    }
}

void WordStream::consume_line_break() noexcept {
    ++position_;
    ++line_;
    line_start_ = position_;
}

const char* WordStream::word_end() const noexcept {
    const char* p = position_;
    for (;;) {
        while (p != end_ && !is_char(*p, CHAR_ENDS_WORD)) {
            ++p;
        }
        if (p == end_ || *p != '"') {
            return p;
        }
        const bool is_escaped = p != begin_ && p[-1] == '\\';
        ++p;
        if (is_escaped) {
            continue;
        }
        p = string_end(p);
        if (p == end_ || *p != '"') {
            return p;
        }
        ++p;
    }
}

/// From inside a string: its closing quote, the line break that cuts it off, or the end of the text. Only the
/// one byte before a quote tells whether it is escaped.
const char* WordStream::string_end(const char* p) const noexcept {
    while (p != end_ && !is_char(*p, CHAR_LINE_BREAK) && !(*p == '"' && p[-1] != '\\')) {
        ++p;
    }
    return p;
}

Token WordStream::make_token(const char* start, const char* end, core_ulong column_base) const noexcept {
    return {static_cast<unsigned int>(start - begin_), static_cast<unsigned int>(end - start), line_,
            static_cast<core_ulong>(start - line_start_) + column_base};
}

} // namespace bk
