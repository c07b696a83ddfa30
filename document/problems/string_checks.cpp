#include "document/problems/problem_codes_impl.h"
#include "document/problems/shown_word_impl.h"
#include "document/problems/value_checks_impl.h"

namespace bk_parser {

namespace {

/// Whether a backslash before it is there for nothing, and is dropped.
bool is_dropped_escape(char escaped) noexcept {
    return bk::is_char(escaped, bk::CHAR_NAME) && escaped != 'n' && escaped != 'r' && escaped != 't';
}

ValueFlaw flaw_of_quote(std::string_view word, std::size_t quote) {
    if (word[quote - 1] == '\\') {
        return {codes::quote_inside_string,
                "the string runs on behind this quote, as a backslash stands before it: put another value "
                "first, or let "
                "the string end otherwise",
                quote, 1};
    }
    return {codes::quote_inside_string,
            "the string runs on behind this quote: a blank is missing between two strings", quote, 1};
}

} // namespace

ValueFlaw find_string_flaw(std::string_view word, bool has_escapes, std::size_t from) {
    for (std::size_t i = from; i + 1 < word.size(); ++i) {
        if (word[i] == '"') {
            if (has_escapes || word[i - 1] != '\\') {
                return flaw_of_quote(word, i);
            }
            return {codes::escape_without_version,
                    "before version 1.1 a backslash stands for itself; '#Brellwick_Serial_Version 1.2' as "
                    "the first line "
                    "makes this an escape",
                    i - 1, 2};
        }
        if (word[i] != '\\' || !has_escapes) {
            continue;
        }
        if (i + 2 < word.size() && is_dropped_escape(word[i + 1])) {
            return {codes::unknown_escape,
                    shown(word.substr(i, 2)) + " is read as " + shown(word.substr(i + 1, 1)) +
                        ": a backslash is spelled '\\\\'",
                    i, 2};
        }
        ++i;
    }
    return {};
}

} // namespace bk_parser
