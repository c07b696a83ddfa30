#pragma once

#include "parser/text/parser_known_entry_impl.h"
#include "parser/text/parser_text_block_impl.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace bk {

/// The fast path of parsing: cuts whole entries with a few shifts of bit masks, as long as it is certain what they are. It adds no
/// rule: the grammar would make the same entries of the same words.
///
/// Makes the masks once, for blocks of 64 characters from the beginning of the text on, and keeps them in a ring while they are
/// needed. Reads an entry through windows of 64 characters, which may begin anywhere in two neighbouring blocks.
class EntryCutter {
public:
    /// A NUL follows the text, as in every CoreString.
    explicit EntryCutter(std::string_view text) noexcept
        : begin_(text.data()), end_(begin_ + text.size()), at_(begin_), line_start_(begin_),
          make_masks_(fastest_make_masks()) {}

    /// Continues at the first character of a word that may begin an entry. Returns false when it is not certain what is there.
    bool seek(const char* word);

    /// Cuts the next entry, or with `may_close` the next end of a group. Returns false, and cuts nothing, when it is not certain what
    /// follows.
    bool cut(KnownEntry& known, bool may_close);

    /// The first character that is not cut yet, and its place.
    const char* at() const noexcept { return at_; }
    LinePlace place() noexcept;
    /// The brace that opens the group that was cut last.
    const Token& brace() const noexcept { return brace_; }

private:
    using Head = KnownEntry::Head;

    /// The masks of 64 characters.
    struct Record {
        std::uint64_t starts;       // the first characters of words that follow a blank
        std::uint64_t ends;         // the first blanks after words
        std::uint64_t stops;        // where a row of numbers cannot go on
        std::uint64_t double_marks; // CHAR_DOUBLE_MARK
        std::uint64_t others;       // characters that no name has
        std::uint64_t breaks;       // CHAR_LINE_BREAK
        LinePlace first;            // of the first character
    };

    void make_record() noexcept;
    void reach(const char* p) noexcept {
        while (record_count_ < static_cast<std::size_t>(p - begin_) / 64 + 2) {
            make_record();
        }
    }
    /// The masks of the 64 characters from `p` on, which were reached.
    std::uint64_t window(std::uint64_t Record::*mask, const char* p) const noexcept {
        const auto offset = static_cast<std::size_t>(p - begin_);
        const std::uint64_t first = records_[offset / 64 % ring_size].*mask;
        const std::uint64_t next = records_[(offset / 64 + 1) % ring_size].*mask;
        return first >> offset % 64 | next << 1 << (63 - offset % 64);
    }

    LinePlace place_of(const char* p) const noexcept;
    Token token_of_brace(const char* p) noexcept;
    bool look(const char* p, Head& head);
    /// The first character from `p` on that is no blank. The NUL after the text is no blank.
    const char* next_word(const char* p) noexcept {
        if (!is_char(*p, CHAR_BLANK)) {
            return p;
        }
        return is_char(p[1], CHAR_BLANK) ? next_word_after(p + 1) : p + 1;
    }
    const char* next_word_after(const char* p) noexcept;
    const char* cut_numbers(const char* p, KnownEntry& known);

    static constexpr std::size_t ring_size = 16;

    const char* begin_;
    const char* end_;
    const char* at_;
    Token brace_;
    bool has_head_ = false; // `head_` describes the entry at `at_`
    Head heads_[2] = {};    // that head, and the head of the entry that was cut last or comes next
    Head* head_ = heads_;

    core_ulong line_ = 1; // of the first character after the records
    const char* line_start_;
    bool follows_blank_ = true;
    std::size_t record_count_ = 0;
    MakeMasks make_masks_;
    std::array<Record, ring_size> records_ = {};
};

} // namespace bk
