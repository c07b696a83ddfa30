#include "document/save/proof/proof_impl.h"

#include "document/save/proof/read_back_impl.h"
#include "parser/words/parser_characters_impl.h"

#include <algorithm>
#include <string>
#include <utility>

// Why it is enough to read the window of the new text. Let the old text be P W S, where W is the window, and the new one P V S. S begins
// with a name that began an entry, with the "}" of the group, or at the end of the text. P ends where an entry began, or after
// the "{" of the group. The parser splits words from left to right, so P gives the same words and leaves the grammar in the
// same state as before, one in which a name begins an entry. V is read from that state. The check requires that V ends in no
// string and in no word, that all its groups are closed, and that a name after it begins an entry: the check appends one more
// entry and looks for it. So the grammar reaches S in a state in which the first word of S acts as it did in the old text, and
// that word clears the state before it. Hence S gives the same entries.
//
// `prove` compares P and S byte by byte. `prove_spliced` need not: the splice is inside W and left P and S in place.

namespace bk_parser {

namespace {

constexpr std::string_view further_name = "_";
constexpr std::string_view further_entry = " _ 1 ";

/// The unchanged entries at the beginning and at the end of a group, or null.
struct Ends {
    const OldEntry* lead = nullptr;
    const OldEntry* trail = nullptr;
};

Ends ends_of(const OldGroup& group) noexcept {
    Ends ends;
    if (group.entries.empty()) {
        return ends;
    }
    const OldEntry& first = group.entries.front();
    const OldEntry& last = group.entries.back();
    if (!first.has_changed && first.new_index == 0) {
        ends.lead = &first;
    }
    if (!last.has_changed && &last != ends.lead &&
        last.new_index + last.count == group.now->get_entries().get_count()) {
        ends.trail = &last;
    }
    return ends;
}

/// The only changed entry, if only its group changed; else null.
const OldEntry* only_change(const OldGroup& group, const Ends& ends) noexcept {
    const std::size_t first = ends.lead == nullptr ? 0 : 1;
    const std::size_t unchanged = first + (ends.trail == nullptr ? 0 : 1);
    if (group.entries.size() != unchanged + 1) {
        return nullptr;
    }
    const OldEntry& entry = group.entries[first];
    const std::uint32_t before = ends.lead == nullptr ? 0 : ends.lead->count;
    const std::uint32_t after =
        ends.trail == nullptr ? group.now->get_entries().get_count() : ends.trail->new_index;
    const bool is_alone = entry.new_index == before && entry.new_index + 1 == after;
    return is_alone && !entry.has_own_change && entry.group != no_index ? &entry : nullptr;
}

/// Line and column of a place, from 0.
struct LineColumn {
    core_ulong line = 0;
    core_ulong column = 0;
};

/// Counts lines from `begin` on.
LineColumn place_of(std::string_view text, std::size_t begin, std::size_t end) noexcept {
    const std::string_view passed = text.substr(begin, end - begin);
    const auto feeds = std::count(passed.begin(), passed.end(), '\n');
    const auto returns = std::count(passed.begin(), passed.end(), '\r');
    std::size_t line = end;
    while (line != 0 && !bk::is_char(text[line - 1], bk::CHAR_LINE_BREAK)) {
        --line;
    }
    return {static_cast<core_ulong>(feeds + returns), static_cast<core_ulong>(end - line)};
}

bool is_same_around(std::string_view before, std::string_view now, const ProofWindow& window) noexcept {
    const std::size_t least = window.begin + window.rest;
    return before.size() >= least && now.size() >= least &&
           before.substr(0, window.begin) == now.substr(0, window.begin) &&
           before.substr(before.size() - window.rest) == now.substr(now.size() - window.rest);
}

/// Whether no word can span the place.
bool cuts_words(std::string_view text, std::size_t at) noexcept {
    constexpr unsigned int cuts = bk::CHAR_BLANK | bk::CHAR_DELIMITER;
    return at == 0 || at == text.size() || bk::is_char(text[at - 1], cuts) ||
           bk::is_char(text[at], bk::CHAR_DELIMITER);
}

bool prove_window(std::string_view now, ProofWindow&& window, bool has_escapes, Proof& proof) {
    const std::size_t new_end = now.size() - window.rest;
    if (!cuts_words(now, new_end)) {
        return false;
    }
    std::string text(now.substr(window.begin, new_end - window.begin));
    text += further_entry;
    ReadBack back(text, *window.group, window.first, window.last, has_escapes);
    // Counting the line ends of 50 MB would cost as much as comparing them.
    LineColumn start = place_of(now, window.line_known_at, window.begin);
    start.line += window.known_line;
    back.read_piece(start.line, start.column, further_name);
    if (!back.run()) {
        return false;
    }
    proof.is_equal = true;
    proof.shifts = back.shifts();
    proof.shifts.set_range(*window.group, window.first, window.last);
    const LineColumn is = place_of(now, window.begin, new_end);
    proof.shifts.set_rest(std::move(window.entries_after), 1 + start.line + window.line_breaks,
                          is.line - window.line_breaks, is.column - window.end_column);
    return true;
}

} // namespace

ProofWindow find_window(std::string_view before, const LayoutRecord& record) {
    ProofWindow window;
    const OldGroup* group = &record.group(record.root());
    for (;;) {
        const Ends ends = ends_of(*group);
        const unsigned int end =
            ends.trail == nullptr ? group->now->get_entries().get_count() : ends.trail->new_index;
        window.entries_after.emplace_back(group->now, end);
        const OldEntry* const inner = only_change(*group, ends);
        if (inner == nullptr || record.group(inner->group).now == nullptr) {
            window.begin = ends.lead == nullptr ? group->open : ends.lead->last_begin;
            window.rest = before.size() - (ends.trail == nullptr ? group->close : ends.trail->name.begin);
            window.group = group->now;
            window.first = ends.lead == nullptr ? 0 : ends.lead->count - 1;
            if (ends.lead != nullptr) {
                window.line_known_at = window.begin;
                window.known_line = group->now->get_entries()[window.first]->get_line() - 1;
            }
            window.last = end;
            window.end = before.size() - window.rest;
            const LineColumn place = place_of(before, window.begin, window.end);
            window.line_breaks = place.line;
            window.end_column = place.column;
            std::reverse(window.entries_after.begin(), window.entries_after.end());
            return window;
        }
        window.line_known_at = inner->name.begin;
        window.known_line = inner->line - 1;
        group = &record.group(inner->group);
    }
}

Proof prove(std::string_view before, const LayoutRecord& record, std::string_view now,
            const ParserGroup& root, bool has_escapes) {
    Proof proof;
    if (record.has_changes()) {
        ProofWindow window = find_window(before, record);
        if (is_same_around(before, now, window) && prove_window(now, std::move(window), has_escapes, proof)) {
            return proof;
        }
    }
    ReadBack back(now, root, has_escapes);
    proof.is_equal = back.run();
    proof.difference = back.difference();
    proof.shifts = back.shifts();
    proof.shifts.set_range(root, 0, root.get_entries().get_count());
    return proof;
}

Proof prove_spliced(ProofWindow&& window, const TextSplice& splice, std::string_view now, bool has_escapes) {
    Proof proof;
    const bool is_around = window.begin <= splice.begin && splice.old_end <= window.end &&
                           now.size() + splice.old_end == window.end + window.rest + splice.new_end;
    if (is_around) {
        proof.is_equal = prove_window(now, std::move(window), has_escapes, proof);
    }
    return proof;
}

} // namespace bk_parser
