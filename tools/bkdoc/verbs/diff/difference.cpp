#include "verbs/diff/difference.h"

#include "document/places.h"
#include "output/display/text_display.h"
#include "output/display/value_display.h"
#include "platform/paths.h"

#include <algorithm>

namespace bkdoc {

namespace {

using bk_parser::TreeChange;
using Kind = TreeChange::Kind;

constexpr std::size_t longest_text = 120; // characters shown of a string

std::string string_of(const ParserEntry& entry, unsigned int i) {
    return std::string(entry.get_string(i).get_view());
}

std::string value_text(const ParserEntry& entry, unsigned int i) {
    if (i == TreeChange::no_value) {
        return "nothing";
    }
    return entry.get_value_type(i) == ParserValue::TYPE_STRING
               ? shown_quoted(entry.get_string(i).get_view(), longest_text)
               : shown_value(entry, i);
}

/// Two values that look alike differ in their types, or after the part that is shown.
void tell_apart(const TreeChange& change, std::string& before, std::string& after) {
    if (before != after) {
        return;
    }
    const ParserValue::Type type = change.before->get_value_type(change.value_before);
    const ParserValue::Type other = change.after->get_value_type(change.value_after);
    if (type != other) {
        before = std::string(type_word(type)) + " " + before;
        after = std::string(type_word(other)) + " " + after;
    } else if (type == ParserValue::TYPE_STRING) {
        const std::string left = string_of(*change.before, change.value_before);
        const std::string right = string_of(*change.after, change.value_after);
        const auto place = std::mismatch(left.begin(), left.end(), right.begin(), right.end()).first;
        after +=
            " (different from byte " + grouped(static_cast<std::size_t>(place - left.begin()) + 1) + " on)";
    } else {
        after += " (other bytes)";
    }
}

std::string head_text(const ParserEntry& entry) {
    const std::string kind = shown_kind(entry);
    return shown_name(entry) + (kind == "call" ? "()" : kind == "raw text" ? " (raw text)" : "");
}

/// The content of an entry on one line.
std::string content_text(const ParserEntry& entry) {
    constexpr unsigned int most_values = 6;
    std::string text;
    for (unsigned int i = 0; i < std::min(entry.get_value_count(), most_values); ++i) {
        text +=
            (i == 0 ? "" : " ") + (entry.is_value_group(i) ? shown_value(entry, i) : value_text(entry, i));
    }
    return text + (entry.get_value_count() > most_values ? " " + std::string(ellipsis) : "");
}

std::string at_value(const ParserEntry& entry, unsigned int i) {
    return entry.get_value_count() > 1 ? "@" + std::to_string(i) : "";
}

} // namespace

std::string_view word_of(Kind kind) noexcept {
    switch (kind) {
    case Kind::value:
        return "value";
    case Kind::head:
        return "head";
    case Kind::added:
        return "added";
    case Kind::removed:
        return "removed";
    case Kind::moved:
        return "moved";
    case Kind::renamed:
        return "renamed";
    }
    return {};
}

DifferenceTeller::DifferenceTeller(const OpenedDocument& before, const OpenedDocument& after)
    : before_(before), after_(after), before_paths_(before.root()), after_paths_(after.root()) {}

ToldDifference DifferenceTeller::tell(const TreeChange& change) const {
    ToldDifference told;
    told.change = change;
    const bool is_removed = change.after == nullptr;
    const OpenedDocument& document = is_removed ? before_ : after_;
    const bk_parser::EntryPlace place =
        place_of(document.document(), is_removed ? *change.before : *change.after);
    told.file = place.file.empty() ? document.name() : text_of(place.file);
    told.line = place.line;
    told.column = place.column;
    told.path_before = change.before == nullptr ? "" : before_paths_.path_of(*change.before);
    told.path = is_removed ? told.path_before : after_paths_.path_of(*change.after);
    switch (change.kind) {
    case Kind::value:
        tell_value(told);
        break;
    case Kind::head:
        tell_head(told);
        break;
    case Kind::added:
        told.what = "added";
        told.after = content_text(*change.after);
        break;
    case Kind::removed:
        told.what = "removed";
        told.before = content_text(*change.before);
        break;
    case Kind::moved:
        tell_move(told);
        break;
    case Kind::renamed:
        told.what = "renamed from " + shown(change.before->get_name().get_view(), longest_path);
        break;
    }
    return told;
}

void DifferenceTeller::tell_value(ToldDifference& told) const {
    const TreeChange& change = told.change;
    told.before = value_text(*change.before, change.value_before);
    told.after = value_text(*change.after, change.value_after);
    if (change.value_before == TreeChange::no_value || change.value_after == TreeChange::no_value) {
        const bool is_added = change.value_before == TreeChange::no_value;
        told.path += "@" + std::to_string(is_added ? change.value_after : change.value_before);
        told.what = is_added ? "added" : "removed";
        (is_added ? told.before : told.after).clear();
        return;
    }
    tell_apart(change, told.before, told.after);
    told.path += at_value(*change.after, change.value_after);
}

void DifferenceTeller::tell_head(ToldDifference& told) const {
    told.before = head_text(*told.change.before);
    told.after = head_text(*told.change.after);
}

void DifferenceTeller::tell_move(ToldDifference& told) const {
    const bk_parser::EntryPlace place = place_of(before_.document(), *told.change.before);
    told.what = "moved";
    if (told.path_before != told.path) {
        told.what += " from " + shown(told.path_before, longest_path);
    } else if (place.is_known()) {
        told.what += " from line " + std::to_string(place.line);
    }
}

} // namespace bkdoc
