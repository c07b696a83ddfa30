#include "document/problems/faults/fault_story_impl.h"
#include "document/problems/list/problem_codes_impl.h"
#include "document/problems/list/shown_word_impl.h"
#include "document/problems/values/value_checks_impl.h"
#include "parser/files/parser_document_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <algorithm>

/// Words that the grammar does not know.
namespace bk_parser {

namespace {

/// The quote that closes the string that a word begins with; npos when there is none.
std::size_t find_closing_quote(std::string_view word) noexcept {
    std::size_t at = word.find('"', 1);
    while (at != std::string_view::npos && word[at - 1] == '\\') {
        at = word.find('"', at + 1);
    }
    return at;
}

/// The first character that no name may have; the size when there is none.
std::size_t find_stranger(std::string_view word) noexcept {
    const auto stranger = std::find_if(word.begin(), word.end(), [](char character) {
        return !bk::is_char(character, bk::CHAR_NAME) && character != '.';
    });
    return static_cast<std::size_t>(stranger - word.begin());
}

std::string unexpected(std::string_view word) {
    return "unexpected " + shown(word);
}

} // namespace

void FaultStory::tell_word(const FaultRecord& record, const Spot& spot) {
    const std::string_view word = word_of(record);
    const std::size_t at = word.find(bk::byte_order_mark);
    const Spot mark = sources_.find(record.start + std::min(at, word.size()), bk::byte_order_mark.size());
    if (at != std::string_view::npos && lines_.state_at(mark) != LineReader::State::string) {
        add(codes::byte_order_mark,
            "an invisible byte order mark is here: save the file without a byte order mark", mark);
    } else if (word[0] == '"') {
        tell_string(word, spot);
    } else if (tell_other_comment(word, spot) || tell_single_quotes(word, spot)) {
        return;
    } else if (bk::is_char(word[0], bk::CHAR_NAME_START) || static_cast<unsigned char>(word[0]) >= 0x80) {
        tell_name(word, spot);
    } else if (word[0] == '[') {
        add(
            codes::bad_array_count,
            [&] { return unexpected(word) + ": remove the blank between the name and its count"; }, spot);
    } else if (word[0] == '<') {
        add(
            codes::bad_template,
            [&] { return unexpected(word) + ": remove the blank between the name and its template"; }, spot);
    } else if (word[0] == '#') {
        add(
            codes::bad_name,
            [&] { return shown(word) + " is not a keyword: letters, digits and '_' follow the '#'"; }, spot);
    } else {
        add(
            codes::unexpected_word, [&] { return unexpected(word); }, spot);
    }
}

void FaultStory::tell_string(std::string_view word, const Spot& spot) {
    const std::string_view behind = text_of(spot).substr(spot.offset + spot.length);
    const Spot next{spot.inclusion, spot.offset + spot.length, 0, spot.expanded + spot.length};
    if ((behind.starts_with(bk::include_directive) || behind.starts_with(bk::version_directive)) &&
        lines_.state_at(next) == LineReader::State::string) {
        last_reason_ = next; // the directive has a problem of its own
        losses_.add(next);
        cover_line(spot, next);
        return;
    }
    if (const std::size_t last = word.find("\\\\\""); last != std::string_view::npos) {
        add(codes::quote_inside_string, string_runs_on, spot_of(word.substr(last + 2, 1)));
        cover_line(spot);
        return;
    }
    const std::size_t quote = find_closing_quote(word);
    if (quote != std::string_view::npos) {
        const std::string_view rest = word.substr(quote + 1);
        const Spot place = spot_of(rest);
        const std::string hint =
            rest[0] == '"' ? ": put a blank between two strings" : " after a string, which is left out";
        add(
            codes::unexpected_word, [&] { return unexpected(rest) + hint; }, place);
        return;
    }
    has_open_quote_[sources_.file_of_inclusion(spot.inclusion)] = true;
    const bool has_escaped = word.find("\\\"") != std::string_view::npos;
    add(codes::string_left_open,
        has_escaped ? "this string is not closed on its line: a quote after a backslash does not close it"
                    : "this string is not closed on its line: a line's end is spelled '\\n'",
        spot);
}

void FaultStory::tell_name(std::string_view word, const Spot& spot) {
    const std::size_t at = find_stranger(word);
    if (at == word.size()) { // it ends with a point
        add(
            codes::bad_name, [&] { return shown(word) + " is not a name: a name cannot end with '.'"; },
            spot);
        return;
    }
    const std::string_view rest = word.substr(at);
    if (rest[0] == '<') {
        add(
            codes::bad_template,
            [&] { return shown(rest) + " is not a template: put a name between '<' and '>'"; }, spot);
    } else if (rest[0] == '[') {
        add(
            codes::bad_array_count,
            [&] { return shown(rest) + " is not an array count: write a whole number or nothing"; }, spot);
    } else if (rest[0] == '"') {
        add(
            codes::bad_name, [&] { return shown(word) + " is not a name: put a blank before a string"; },
            spot);
    } else {
        const std::string_view character =
            rest.substr(0, static_cast<unsigned char>(rest[0]) < 0x80 ? 1 : std::string_view::npos);
        const std::size_t letters = std::min(
            character.find_first_of("._abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"),
            character.size());
        add(
            codes::bad_name,
            [&] {
                return shown(word) + " is not a name: it cannot contain " +
                       shown(character.substr(0, letters)) + ", and what follows goes to the entry before it";
            },
            spot);
    }
}

/// A comment as other languages begin one.
bool FaultStory::tell_other_comment(std::string_view word, const Spot& spot) {
    const std::string_view text = text_of(spot);
    if (word.starts_with("/*")) {
        const std::size_t end = text.find("*/", spot.offset + 2);
        if (end == std::string_view::npos) {
            cover_line(spot);
        } else {
            cover(spot, spot.offset, end + 2);
        }
    } else if (word.find_first_not_of('#') == std::string_view::npos) {
        cover_line(spot);
    } else {
        return false;
    }
    add(
        codes::no_comment,
        [&] {
            return shown(word.substr(0, word[0] == '/' ? 2 : word.size())) +
                   " does not begin a comment: '//' does, up to the end of its line";
        },
        spot);
    return true;
}

bool FaultStory::tell_single_quotes(std::string_view word, const Spot& spot) {
    if (word[0] != '\'' && word[0] != '`') {
        return false;
    }
    const std::size_t line_end = sources_.file_of(spot).text.line_end(spot.offset);
    const std::string_view line = text_of(spot).substr(0, line_end);
    const std::size_t end = line.find(word[0], spot.offset + 1);
    const std::size_t length = end == std::string_view::npos ? spot.length : end + 1 - spot.offset;
    cover(spot, spot.offset, spot.offset + length);
    add(codes::unquoted_string, [&] { return shown(word) + " is skipped: strings need double quotes"; },
        {spot.inclusion, spot.offset, length, spot.expanded});
    return true;
}

} // namespace bk_parser
