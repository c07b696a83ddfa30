#include "document/problems/list/problem_codes_impl.h"
#include "document/problems/list/shown_word_impl.h"
#include "document/problems/values/value_checks_impl.h"

namespace bk_parser {

namespace {

/// Whether a backslash before it is there for nothing, and is dropped.
bool is_dropped_escape(char escaped) noexcept {
    return bk::is_char(escaped, bk::CHAR_NAME) && escaped != 'n' && escaped != 'r' && escaped != 't';
}

ValueFlaw flaw_of_quote(std::string_view word, std::size_t quote) {
    if (word[quote - 1] == '\\') {
        return {codes::quote_inside_string, std::string(string_runs_on), quote, 1};
    }
    return {codes::quote_inside_string,
            "the string runs on behind this quote: a blank is missing between two strings", quote, 1};
}

} // namespace

ValueFlaw find_string_flaw(std::string_view word, bool has_escapes, std::size_t from) {
    const char* const closing = word.data() + word.size() - 1;
    for (const char* p = bk::find_escaped(word.data() + from, closing); p < closing;
         p = bk::find_escaped(p + 1, closing)) {
        const auto i = static_cast<std::size_t>(p - word.data());
        if (word[i] == '"') {
            if (has_escapes || word[i - 1] != '\\') {
                return flaw_of_quote(word, i);
            }
            return {codes::escape_without_version, {}, i - 1, 2};
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
        if (++p == closing) { // what it escapes is passed with it
            return {codes::unknown_escape,
                    "a backslash at the end of a string is dropped: it is spelled '\\\\'", i, 1};
        }
    }
    return {};
}

} // namespace bk_parser
