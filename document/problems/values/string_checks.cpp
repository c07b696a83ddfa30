#include "document/problems/list/problem_codes_impl.h"
#include "document/problems/list/shown_word_impl.h"
#include "document/problems/values/value_checks_impl.h"

namespace bk_parser {

namespace {

/// Whether a backslash before this character has no meaning and is dropped.
bool is_dropped_escape(char escaped) noexcept {
    return bk::is_char(escaped, bk::CHAR_NAME) && escaped != 'n' && escaped != 'r' && escaped != 't';
}

std::string quote_text(std::string_view word, const ValueFlaw& flaw) {
    return word[flaw.offset - 1] == '\\'
               ? std::string(string_runs_on)
               : "the string runs on behind this quote: a blank is missing between two strings";
}

std::string escape_text(std::string_view word, const ValueFlaw& flaw) {
    return shown(word.substr(flaw.offset, 2)) + " is read as " + shown(word.substr(flaw.offset + 1, 1)) +
           ": a backslash is spelled '\\\\'";
}

std::string last_backslash_text(std::string_view, const ValueFlaw&) {
    return "a backslash at the end of a string is dropped: it is spelled '\\\\'";
}

} // namespace

ValueFlaw find_string_flaw(std::string_view word, bool has_escapes, std::size_t from) {
    const char* const closing = word.data() + word.size() - 1;
    for (const char* p = bk::find_escaped(word.data() + from, closing); p < closing;
         p = bk::find_escaped(p + 1, closing)) {
        const auto i = static_cast<std::size_t>(p - word.data());
        if (word[i] == '"') {
            if (has_escapes || word[i - 1] != '\\') {
                return {codes::quote_inside_string, quote_text, i, 1};
            }
            return {codes::escape_without_version, nullptr, i - 1, 2};
        }
        if (word[i] != '\\' || !has_escapes) {
            continue;
        }
        if (i + 2 < word.size() && is_dropped_escape(word[i + 1])) {
            return {codes::unknown_escape, escape_text, i, 2};
        }
        if (++p == closing) { // also skips the escaped character
            return {codes::unknown_escape, last_backslash_text, i, 1};
        }
    }
    return {};
}

} // namespace bk_parser
