#pragma once

#include "core/core_string.h"
#include "core/text/core_bits_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <bit>
#include <cstdint>
#include <string_view>
#include <vector>

namespace bk {

/// A word of a text.
struct Token {
    unsigned int start = 0;
    unsigned int length = 0; // 0 at the end of the text
    core_ulong line = 0;
    core_ulong column = 0;
};

/// The name of an entry as the grammar hands it to a sink.
struct EntryHead {
    std::string_view name;
    std::string_view template_name;
    unsigned int array_count = no_array;
    bool is_keyword = false;
    bool had_suffix = false; // the name is only a part of the word
};

/// A line, and where it begins, from where columns are counted.
struct LinePlace {
    core_ulong line;
    const char* line_start;
};

/// What bk::EntryCutter recognises at once: a whole entry of a usual shape, the beginning of an entry that holds only a group, or the
/// end of a group. It leaves everything of which it is not certain to the grammar, which takes that word by word.
struct KnownEntry {
    enum Kind {
        numbers, ///< a name and numbers in decimal
        string,  ///< a name and a string
        boolean, ///< a name and "yes" or "no"
        group,   ///< a name and "{"
        close    ///< "}" alone
    };
    /// Numbers that are completely inside a window of 64 characters, with blanks between them. Each mask has one bit for each character.
    struct Numbers {
        const char* begin;
        std::uint64_t starts;       ///< the first character of each number
        std::uint64_t ends;         ///< the character after each number
        std::uint64_t double_marks; ///< CHAR_DOUBLE_MARK
        std::uint64_t others;       ///< the characters that no name contains, and so neither digits nor 'e'

        /// take(number, whether it is a double)
        template <class Take>
        void for_each(Take& take) const {
            std::uint64_t number_ends = ends;
            for (std::uint64_t left = starts; left != 0; left &= left - 1, number_ends &= number_ends - 1) {
                const std::uint64_t first = left & -left;
                const std::uint64_t end = number_ends & -number_ends;
                const int at = std::countr_zero(first);
                take(std::string_view(begin + at, static_cast<std::size_t>(std::countr_zero(end) - at)),
                     (double_marks & (end - first)) != 0);
            }
        }
    };

    /// A name with its template and array count.
    struct Head {
        std::string_view name;
        std::string_view template_name;
        unsigned int array_count;
        LinePlace place;
        const char* end;   ///< the position after the name and its suffix
        const char* value; ///< the first character of what follows

        core_ulong column() const noexcept {
            return static_cast<core_ulong>(name.data() - place.line_start) + 1;
        }
    };

    Kind kind = close;
    const Head* head = nullptr;
    /// The text of the values, with the blanks between them. For `string` the part between the quotes, for `close` the brace.
    std::string_view text;
    std::vector<Numbers> rows;

    EntryHead entry_head() const noexcept {
        return {head->name, head->template_name, head->array_count, false,
                head->name.data() + head->name.size() != head->end};
    }
    /// The first word of an entry of a text that begins at `text_begin`.
    Token token(const char* text_begin) const noexcept {
        return {static_cast<unsigned int>(head->name.data() - text_begin),
                static_cast<unsigned int>(head->end - head->name.data()), head->place.line, head->column()};
    }
    /// A string, with its quotes, or "yes" or "no".
    std::string_view word() const noexcept {
        return kind == string ? std::string_view(text.data() - 1, text.size() + 2) : text;
    }
    /// Of an entry that holds no group.
    unsigned int value_count() const noexcept {
        if (kind != numbers) {
            return 1;
        }
        unsigned int count = 0;
        for (const Numbers& row : rows) {
            count += count_ones(row.starts);
        }
        return count;
    }
    /// take(number, whether it is a double)
    template <class Take>
    void for_each_number(Take take) const {
        for (const Numbers& row : rows) {
            row.for_each(take);
        }
    }
};

} // namespace bk
