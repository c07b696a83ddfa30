#include "parser/text/parser_word_stream_impl.h"

#include <algorithm>

namespace bk {

Token WordStream::token() noexcept {
    const std::uint64_t before = (std::uint64_t{1} << (start_ - block_)) - 1;
    count_lines(masks_.breaks & before);
    masks_.breaks &= ~before;
    const bool ends_at_blank = position_ != word_end_;
    return {static_cast<unsigned int>(start_ - begin_), static_cast<unsigned int>(word_end_ - start_), line_,
            static_cast<core_ulong>(start_ - line_start_) + (ends_at_blank ? 1 : 0)};
}

void WordStream::go_on_at(const char* word, const LinePlace& place) noexcept {
    position_ = word;
    word_end_ = word;
    line_ = place.line;
    line_start_ = place.line_start;
    fill_block(word);
}

float WordStream::fraction() const noexcept {
    return begin_ == end_ ? 1.0F : static_cast<float>(position_ - begin_) / static_cast<float>(end_ - begin_);
}

/// Goes on after the block, or at the end of the last word when that reaches beyond the block. The character there may be a line
/// break, which is not counted yet; the part of the word beyond the block has none.
void WordStream::take_block() noexcept {
    count_lines(masks_.breaks);
    fill_block(std::max(block_ + std::min(TextMasks::width, end_ - block_), word_end_));
}

/// Goes on at the bit `first`.
void WordStream::restart_block(std::uint64_t first) noexcept {
    count_lines(masks_.breaks & (first - 1));
    fill_block(block_ + std::countr_zero(first));
}

void WordStream::fill_block(const char* from) noexcept {
    block_ = from;
    if (end_ - block_ >= TextMasks::width) {
        make_masks_(block_, masks_);
    } else {
        make_last_masks(make_masks_, block_, end_, masks_);
    }
    unread_ = ~masks_.blanks;
}

void WordStream::count_lines(std::uint64_t breaks) noexcept {
    if (breaks != 0) {
        line_ += count_ones(breaks);
        line_start_ = block_ + std::bit_width(breaks);
    }
}

/// Cuts what does not end at a blank of the block: a delimiter; a word that ends at a delimiter, has a quote or goes on beyond the
/// block; or the end of the text. It begins at the bit `first`.
bool WordStream::end_otherwise(std::uint64_t first, std::uint64_t end) noexcept {
    classes_ = 0;
    if (is_char(*start_, CHAR_DELIMITER)) {
        word_end_ = start_ + 1;
        position_ = word_end_;
        unread_ &= unread_ - 1;
        return true;
    }
    if (*start_ == '"') {
        if (end_string(first)) {
            return true;
        }
    } else if (end == 0 && first != 1) {
        restart_block(first); // most words are whole in a block that begins with them
        return next();
    }
    if (end == 0) {
        word_end_ = find_run_end(start_);
    } else {
        word_end_ = block_ + std::countr_zero(end);
        classes_ = (masks_.double_marks & (end - first)) != 0 ? CHAR_DOUBLE_MARK : 0;
    }
    if (!is_char(*word_end_, CHAR_BLANK | CHAR_DELIMITER)) { // a quote, or a NUL, which may be the text's end
        word_end_ = find_end_past(word_end_);
    }
    position_ = word_end_ + (is_char(*word_end_, CHAR_BLANK) ? 1 : 0);
    const std::ptrdiff_t at = word_end_ - block_;
    unread_ = at < TextMasks::width ? unread_ & ~std::uint64_t{0} << at : 0;
    return word_end_ != start_;
}

/// Cuts a usual string: one that ends in the block, at a quote that is not escaped, before a blank. Returns false for every other
/// string.
bool WordStream::end_string(std::uint64_t first) noexcept {
    const std::uint64_t quotes = masks_.quotes & -(first << 1);
    const std::uint64_t closing = quotes & -quotes;
    const std::uint64_t behind = closing << 1;
    if ((masks_.blanks & behind) == 0 || (masks_.breaks & (closing - first)) != 0) {
        return false;
    }
    const char* const quote = block_ + std::countr_zero(closing);
    if (quote[-1] == '\\') {
        return false;
    }
    classes_ = CHAR_QUOTE;
    word_end_ = quote + 1;
    position_ = word_end_ + 1;
    unread_ &= -behind;
    return true;
}

const char* WordStream::find_run_end(const char* p) noexcept {
    unsigned int found = classes_of(*p);
    while ((found & CHAR_ENDS_RUN) == 0) {
        classes_ |= found;
        found = classes_of(*++p);
    }
    return p;
}

/// Goes on after a quote or a NUL that is part of the word.
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

/// Finds the end of a string from a place inside it: its closing quote, the line break that cuts it off, or the end of the text. A
/// quote is escaped when the one byte before it is a backslash.
const char* WordStream::find_string_end(const char* p) const noexcept {
    p = find_string_stop(p, end_);
    while (p != end_ && *p == '"' && p[-1] == '\\') {
        p = find_string_stop(p + 1, end_);
    }
    return p;
}

} // namespace bk
