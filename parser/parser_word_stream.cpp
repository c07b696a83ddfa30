#include "parser/parser_word_stream_impl.h"

namespace bk {

float WordStream::fraction() const noexcept {
    return begin_ == end_ ? 1.0F : static_cast<float>(position_ - begin_) / static_cast<float>(end_ - begin_);
}

/// Goes on behind a quote or a NUL that is a part of the word.
const char* WordStream::find_end_past(const char* p) noexcept {
    while (p != end_ && !is_char(*p, CHAR_BLANK | CHAR_DELIMITER)) {
        classes_ |= classes_of(*p);
        const bool opens_string = *p == '"' && (p == begin_ || p[-1] != '\\');
        ++p;
        if (!opens_string) {
            continue;
        }
        p = find_string_end(p);
        if (p == end_ || *p != '"') {
            return p;
        }
        ++p;
    }
    return p;
}

/// From inside a string: its closing quote, the line break that cuts it off, or the end of the text. Only the
/// one byte before a quote tells whether it is escaped.
const char* WordStream::find_string_end(const char* p) const noexcept {
    p = find_string_stop(p, end_);
    while (p != end_ && *p == '"' && p[-1] == '\\') {
        p = find_string_stop(p + 1, end_);
    }
    return p;
}

} // namespace bk
