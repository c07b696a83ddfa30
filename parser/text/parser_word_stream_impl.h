#pragma once

#include "core/core_string.h"
#include "parser/text/parser_known_entry_impl.h"
#include "parser/text/parser_text_block_impl.h"
#include "parser/text/parser_text_scan_impl.h"
#include "parser/words/parser_characters_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <bit>
#include <string_view>

namespace bk {

/// Cuts a text into words. A word is a span of the text; nothing is copied. Reads the text in blocks of 64 characters, each of which begins
/// where the last one was left.
///
/// Lines count from 1; carriage return and line feed count one line each. The column of a word is that of its first byte: counted from
/// 1 when the word ends at white space, and from 0 for a delimiter, for a word that ends at a delimiter and for the last word of the
/// text. Line and column are computed only when they are asked for.
class WordStream {
public:
    /// A NUL follows the text, as in every CoreString.
    explicit WordStream(std::string_view text) noexcept
        : begin_(text.data()), end_(begin_ + text.size()), position_(begin_), word_end_(begin_),
          line_start_(begin_), make_masks_(fastest_make_masks()) {
        fill_block(begin_);
    }

    /// Cuts the next word. False at the end, where only an empty word is left.
    bool next() noexcept {
        while (unread_ == 0) {
            take_block();
        }
        // When x is the lowest bit of a mask, -x has that bit and all above it. The difference of two such bits has
        // the bits from the lower one up to the other. So no shift is needed.
        const std::uint64_t first = unread_ & -unread_;
        const std::uint64_t ends = masks_.run_ends & -first;
        const std::uint64_t end = ends & -ends;
        start_ = block_ + std::countr_zero(first);
        if ((masks_.blanks & end) == 0) { // the word does not end in this block, or not at a blank
            return end_otherwise(first, end);
        }
        classes_ = (masks_.double_marks & (end - first)) != 0 ? CHAR_DOUBLE_MARK : 0;
        word_end_ = block_ + std::countr_zero(end);
        position_ = word_end_ + 1; // also consumes the blank that ends the word
        unread_ &= -end;
        return true;
    }

    /// The first character of the next word; null when that is not known yet.
    const char* next_start() const noexcept {
        return unread_ == 0 ? nullptr : block_ + std::countr_zero(unread_);
    }
    /// Consumes everything before `word`, a later word. Call `go_on_at` before the next word is cut.
    void pass(const char* word) noexcept { position_ = word; }
    void go_on_at(const char* word, const LinePlace& place) noexcept;

    /// The word that was cut last.
    std::string_view word() const noexcept { return {start_, static_cast<std::size_t>(word_end_ - start_)}; }
    /// Which of CHAR_DOUBLE_MARK and CHAR_QUOTE its characters have, except those between quotes.
    unsigned int classes() const noexcept { return classes_; }
    /// Whether the word has only letters, digits and '_'.
    bool has_name_characters_only() const noexcept {
        return are_name_characters(start_, static_cast<std::size_t>(word_end_ - start_), end_);
    }
    Token token() noexcept;

    /// Whether every byte has been consumed.
    bool at_end() const noexcept { return position_ == end_; }
    const char* begin() const noexcept { return begin_; }
    /// How many bytes have been consumed.
    std::size_t consumed() const noexcept { return static_cast<std::size_t>(position_ - begin_); }
    /// How far the text is consumed, from 0 to 1.
    float fraction() const noexcept;

private:
    void take_block() noexcept;
    void restart_block(std::uint64_t first) noexcept;
    void fill_block(const char* from) noexcept;
    void count_lines(std::uint64_t breaks) noexcept;
    bool end_otherwise(std::uint64_t first, std::uint64_t end) noexcept;
    bool end_string(std::uint64_t first) noexcept;
    const char* find_run_end(const char* p) noexcept;
    const char* find_end_past(const char* p) noexcept;
    const char* find_string_end(const char* p) const noexcept;

    const char* begin_;
    const char* end_;
    const char* position_; // everything before it is consumed
    const char* start_ = nullptr;
    const char* word_end_;
    unsigned int classes_ = 0;

    core_ulong line_ = 1; // line and start of the line at the first line break that is not counted yet
    const char* line_start_;

    MakeMasks make_masks_;
    const char* block_ = nullptr;
    TextMasks masks_;          // `breaks` has only the line breaks that are not counted yet
    std::uint64_t unread_ = 0; // the characters after the last word that are no blanks
};

} // namespace bk
