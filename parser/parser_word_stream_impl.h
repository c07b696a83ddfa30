#pragma once

#include "core/core_string.h"
#include "parser/parser_characters_impl.h"
#include "parser/parser_text_scan_impl.h"

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
    /// A NUL follows the text, as in every CoreString.
    explicit WordStream(std::string_view text) noexcept
        : begin_(text.data()), end_(begin_ + text.size()), position_(begin_), line_start_(begin_) {}

    /// Cuts the next word. False at the end, where only an empty word is left.
    bool next() noexcept {
        skip_blanks();
        start_ = position_;
        word_line_ = line_;
        word_line_start_ = line_start_;
        classes_ = 0;
        column_base_ = 0;
        if (is_char(*start_, CHAR_DELIMITER)) {
            ++position_;
            word_end_ = position_;
            return true;
        }
        word_end_ = find_word_end();
        position_ = word_end_;
        if (is_char(*position_, CHAR_BLANK)) { // the byte that ends a word goes with it
            column_base_ = 1;
            position_ = past_blank(position_);
        }
        return word_end_ != start_;
    }

    /// The word that was cut last.
    std::string_view word() const noexcept { return {start_, static_cast<std::size_t>(word_end_ - start_)}; }
    /// Which of CHAR_NOT_IN_NAME, CHAR_DOUBLE_MARK and CHAR_QUOTE its characters have, but for those between quotes;
    /// none for a delimiter.
    unsigned int classes() const noexcept { return classes_; }
    Token token() const noexcept {
        return {static_cast<unsigned int>(start_ - begin_), static_cast<unsigned int>(word_end_ - start_),
                word_line_, static_cast<core_ulong>(start_ - word_line_start_) + column_base_};
    }

    /// Whether every byte has been consumed.
    bool at_end() const noexcept { return position_ == end_; }
    /// How far the text is consumed, from 0 to 1.
    float fraction() const noexcept;

private:
    void skip_blanks() noexcept {
        const char* p = position_;
        for (;;) {
            if (*p == ' ') { // most of them
                p = skip_spaces(p, end_);
            }
            if (!is_char(*p, CHAR_BLANK)) {
                break;
            }
            p = past_blank(p);
        }
        position_ = p;
    }

    /// Without a branch: whether a line ends after a word is anybody's guess.
    const char* past_blank(const char* p) noexcept {
        const bool ends_line = is_char(*p, CHAR_LINE_BREAK);
        ++p;
        line_ += ends_line ? 1 : 0;
        line_start_ = ends_line ? p : line_start_;
        return p;
    }

    const char* find_word_end() noexcept {
        if (*start_ == '"') {
            return find_end_past(start_);
        }
        const TextRun run = scan_run(start_, end_);
        classes_ = run.classes;
        return is_char(*run.end, CHAR_BLANK | CHAR_DELIMITER) || run.end == end_ ? run.end
                                                                                 : find_end_past(run.end);
    }

    const char* find_end_past(const char* p) noexcept;
    const char* find_string_end(const char* p) const noexcept;

    const char* begin_;
    const char* end_;
    const char* position_;
    const char* line_start_;
    core_ulong line_ = 1;

    const char* start_ = nullptr;
    const char* word_end_ = nullptr;
    const char* word_line_start_ = nullptr;
    core_ulong word_line_ = 0;
    core_ulong column_base_ = 0;
    unsigned int classes_ = 0;
};

} // namespace bk
