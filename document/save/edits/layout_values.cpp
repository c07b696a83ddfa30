#include "document/save/edits/layout_edits_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <algorithm>

// The values of an entry that stays, its group left out: what is at the begin and at the end as it was stays; of what is between,
// words are replaced, and the rest is dropped or inserted.

namespace bk_parser {

bool LayoutEdits::edit_values(const OldGroup& group, const OldEntry& old, const ParserEntry& now,
                              std::uint32_t count) {
    if (old.value_count == 0) {
        return count == 0 || fill_empty(old, now, count);
    }
    const auto is_kept = [&](std::uint32_t from, std::uint32_t to) {
        return is_same(value_of(group, old, from), bk::EntryAccess::value(now, to));
    };
    const std::uint32_t least = std::min(old.value_count, count);
    std::uint32_t head = 0;
    while (head < least && is_kept(head, head)) {
        ++head;
    }
    std::uint32_t tail = 0;
    while (tail < least - head && is_kept(old.value_count - 1 - tail, count - 1 - tail)) {
        ++tail;
    }
    const std::uint32_t replaced = least - tail;
    for (std::uint32_t i = head; i < replaced; ++i) {
        if (!is_kept(i, i) &&
            !replace(value_of(group, old, i), value_text(now, i, value_of(group, old, i).begin), now)) {
            return false;
        }
    }
    if (count > old.value_count) {
        return insert_values(group, old, now, replaced, replaced, count - tail);
    }
    return count == old.value_count || drop_values(group, old, now, replaced, old.value_count - tail);
}

/// The first values of an entry that had none but perhaps a group.
bool LayoutEdits::fill_empty(const OldEntry& old, const ParserEntry& now, std::uint32_t count) {
    std::string text;
    for (std::uint32_t i = 0; i < count; ++i) {
        text += (i == 0 ? "" : old.is_call ? ", " : " ") + value_text(now, i, old.name.begin);
    }
    if (old.empty_tag.end != 0) {
        return replace(old.empty_tag, std::move(text), now);
    }
    if (old.is_call) {
        return replace({old.arguments_open, old.arguments_open}, std::move(text), now);
    }
    return replace({old.name.end, old.name.end}, ' ' + text, now);
}

/// The blanks and the comma go with a value: those behind it when another value follows, else those before it.
bool LayoutEdits::drop_values(const OldGroup& group, const OldEntry& old, const ParserEntry& now,
                              std::uint32_t first, std::uint32_t last) {
    const TextRange dropped{value_of(group, old, first).begin, value_of(group, old, last - 1).end};
    if (last < old.value_count) {
        return replace({dropped.begin, value_of(group, old, last).begin}, {}, now);
    }
    if (first != 0) {
        return replace({value_of(group, old, first - 1).end, dropped.end}, {}, now);
    }
    const bool stays_empty = !old.is_call && now.get_value_count() == 0;
    return replace(dropped, stays_empty ? std::string(bk::empty_tag) : std::string(), now);
}

bool LayoutEdits::insert_values(const OldGroup& group, const OldEntry& old, const ParserEntry& now,
                                std::uint32_t at, std::uint32_t first, std::uint32_t last) {
    const std::string between = separator(group, old);
    std::string text;
    if (at == 0) {
        const TextRange before = value_of(group, old, 0);
        for (std::uint32_t i = first; i < last; ++i) {
            text += value_text(now, i, before.begin) + between;
        }
        FileRange place;
        locate(before, place);
        edits_.push_back({place.inclusion, place.begin, place.begin, std::move(text),
                          std::string(now.get_name().get_view())});
        return true;
    }
    const std::uint32_t end = value_of(group, old, at - 1).end;
    for (std::uint32_t i = first; i < last; ++i) {
        text += between + value_text(now, i, end);
    }
    return replace({end, end}, std::move(text), now);
}

/// What stands between the last two values, where that is on one line.
std::string LayoutEdits::separator(const OldGroup& group, const OldEntry& old) const {
    if (old.value_count > 1) {
        const std::string_view between = words(
            {value_of(group, old, old.value_count - 2).end, value_of(group, old, old.value_count - 1).begin});
        if (between.find('\n') == std::string_view::npos) {
            return std::string(between);
        }
        return between.find(',') == std::string_view::npos ? " " : ", ";
    }
    return old.is_call ? ", " : " ";
}

} // namespace bk_parser
