#pragma once

#include "core/core_string.h"
#include "parser/words/parser_word_rules_impl.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace bk {

/// A word as it stands in the text.
struct Token {
    unsigned int start = 0;
    unsigned int length = 0; // 0 at the end of the text
    core_ulong line = 0;
    core_ulong column = 0;
};

/// What the place of a character is counted from.
struct LinePlace {
    core_ulong line;
    const char* line_start;
};

/// What the fast way of reading recognises in one look: a whole entry of a shape that nearly all have, or the beginning of
/// one that holds a group and nothing else, or the end of a group. It is certain of all this; what it is not certain of it
/// leaves alone, for the grammar to take word by word.
struct KnownEntry {
    enum Kind {
        numbers, ///< a name and numbers in decimal
        string,  ///< a name and a string
        boolean, ///< a name and "yes" or "no"
        group,   ///< a name and "{"
        close    ///< "}" alone
    };
    /// Whole numbers of a row, with blanks between, in at most 64 characters: a bit each.
    struct Numbers {
        const char* begin;
        std::uint64_t starts;       ///< the first character of each
        std::uint64_t ends;         ///< the one behind each
        std::uint64_t double_marks; ///< CHAR_DOUBLE_MARK
    };

    /// A name and what it carries.
    struct Head {
        std::string_view name;
        std::string_view template_name;
        unsigned int array_count;
        LinePlace place;
        const char* value; ///< the first character of what follows

        core_ulong column() const noexcept {
            return static_cast<core_ulong>(name.data() - place.line_start) + 1;
        }
    };

    Kind kind = close;
    const Head* head = nullptr;
    /// The values as they stand in the text, with what is between them; of a string what is between its quotes.
    std::string_view text;
    std::vector<Numbers> rows;
};

} // namespace bk
