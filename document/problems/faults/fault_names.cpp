#include "document/problems/faults/fault_story_impl.h"
#include "document/problems/list/problem_codes_impl.h"
#include "document/problems/list/shown_word_impl.h"
#include "parser/words/parser_characters_impl.h"

#include <algorithm>
#include <array>

/// Names where a value was missing. The grammar skips every name until the entry has a value, and gives the next value to that
/// entry, however many names come between. The line breaks show which of the names were meant as values.
namespace bk_parser {

namespace {

bool is_blank_or_equals(std::string_view text) noexcept {
    return std::all_of(text.begin(), text.end(), [](char character) {
        return bk::is_char(character, bk::CHAR_BLANK) || character == '=';
    });
}

bool is_meant_as_boolean(std::string_view word) noexcept {
    constexpr std::array<std::string_view, 8> words = {"true", "false", "on",      "off",
                                                       "yes",  "no",    "enabled", "disabled"};
    return std::any_of(words.begin(), words.end(), [word](std::string_view candidate) {
        return std::equal(word.begin(), word.end(), candidate.begin(), candidate.end(),
                          [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + ('a' - 'A') : a) == b; });
    });
}

bool is_meant_as_number(std::string_view word) noexcept {
    return word == "inf" || word == "nan" || word == "infinity" || word == "Infinity" || word == "NaN";
}

bool is_meant_as_nothing(std::string_view word) noexcept {
    return word == "null" || word == "nil" || word == "none" || word == "None" || word == "NULL";
}

} // namespace

/// Reports a run of names, from record `i` on, and returns the first record after it.
std::size_t FaultStory::tell_names(std::size_t i) {
    const FaultRecord& first = records_[i];
    std::size_t end = i + 1;
    while (end < records_.size() && records_[end].kind == first.kind && records_[end].epoch == first.epoch) {
        ++end;
    }
    const std::size_t head_end = std::size_t{first.head_start} + first.head_length;
    const bool is_explained = last_ != nullptr && last_->epoch == first.epoch;
    const bool has_head =
        is_explained ||
        (first.head_length != 0 && is_blank_or_equals(text_.substr(head_end, first.start - head_end)));
    const Reason reason = is_explained ? last_reason_ : cover_.reason;
    last_reason_.reset();
    const std::vector<Name> names = names_of_run(records_.subspan(i, end - i), has_head);
    const std::size_t last_end = std::size_t{records_[end - 1].start} + records_[end - 1].length;
    const std::size_t next = std::min(text_.find_first_not_of(" \t\r\n", last_end), text_.size());
    const bool has_value_after = next != text_.size() && text_[next] != '}' && text_[next] != ')';

    std::size_t named_end = 0; // after the last name that a message says
    for (std::size_t k = 0; k < names.size();) {
        std::size_t follower_count = 0;
        if (k + 1 < names.size() && !names[k + 1].begins_line) {
            follower_count = 1;
            if (!is_meant_as_boolean(names[k + 1].word)) { // several words usually are one string
                while (k + 1 + follower_count < names.size() && !names[k + 1 + follower_count].begins_line) {
                    ++follower_count;
                }
            }
        }
        const std::size_t after = k + 1 + follower_count;
        const bool is_whole =
            after == names.size() && follower_count == 0 && has_value_after; // it has a value
        const bool is_told_already = k == 0 && has_head && (is_explained || is_covered(names[0].spot));
        const bool is_join_meant = // where a value was meant
            follower_count != 0 ? names[k + 1].is_joined : k == 0 && !has_head && names[0].is_joined;
        if (is_told_already) {
            lose(first, reason);
            named_end = k + 1;
        } else if (!is_join_meant && (!is_whole || k == 0)) {
            tell_name_without_value(std::span(names).subspan(k), follower_count);
            named_end = k + 2;
        } else if (is_join_meant) {
            named_end = after;
        }
        for (std::size_t unnamed = std::max(named_end, k); unnamed < after; ++unnamed) {
            skip_too(names[unnamed].word);
        }
        k = after;
    }
    return end;
}

/// A comment or directive that joined words to one of them is an error.
std::vector<FaultStory::Name> FaultStory::names_of_run(Records run, bool has_head) {
    std::vector<Name> names;
    if (has_head) {
        const std::string_view head = text_.substr(run.front().head_start, run.front().head_length);
        names.push_back({head, spot_of(head), true, false});
    }
    for (const FaultRecord& record : run) {
        const std::string_view word = word_of(record);
        const Spot spot = spot_of(word);
        bool begins_line = true;
        if (!names.empty() && names.back().spot.inclusion == spot.inclusion) {
            const SourceText& source = sources_.file_of(spot).text;
            begins_line = source.line_begin(spot.offset) != source.line_begin(names.back().spot.offset);
        }
        joins_.lose(record.start, record.length, losses_);
        names.push_back({word, spot, begins_line, joins_.is_inside(record.start, record.length)});
    }
    return names;
}

/// The first of the names has no value. This many names after it on its line were meant as the value.
void FaultStory::tell_name_without_value(std::span<const Name> names, std::size_t follower_count) {
    const auto before = [&] { return shown(names[0].word) + " has no value"; };
    const Spot& spot = names[0].spot;
    if (names.size() == 1) {
        add(codes::no_value, before, spot);
        return;
    }
    const std::string_view word = names[1].word;
    const auto skipped = [&] { return before() + ", and " + shown(word) + " is skipped"; };
    if (follower_count == 0) {
        add(codes::no_value, skipped, spot);
    } else if (is_meant_as_boolean(word)) {
        add(
            codes::not_a_boolean, [&] { return skipped() + ": booleans are yes and no"; }, spot);
    } else if (is_meant_as_nothing(word)) {
        add(
            codes::no_value, [&] { return skipped() + ": write <empty> for no value"; }, spot);
    } else if (is_meant_as_number(word)) {
        add(
            codes::no_value, [&] { return skipped() + ": write +inf for infinity"; }, spot);
    } else {
        add(
            codes::unquoted_string, [&] { return skipped() + ": strings need double quotes"; }, spot);
    }
}

} // namespace bk_parser
