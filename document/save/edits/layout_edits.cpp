#include "document/save/edits/layout_edits_impl.h"

#include "document/save/edits/layout_lines_impl.h"
#include "document/save/record/value_text_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <utility>

// Locates places of the expanded text in the files.

namespace bk_parser {

bool LayoutEdits::run() {
    note_lost_entries();
    pending_.push_back({record_.root(), no_index});
    while (!pending_.empty()) {
        const PendingGroup pending = pending_.back();
        pending_.pop_back();
        inside_ = pending.inside;
        if (!edit_group(pending.group)) {
            return false;
        }
    }
    join_blank_lines();
    note_moves();
    drop_cleared_includes();
    note_covers();
    if (!keeps_includes() || !keeps_unread_words()) {
        return false;
    }
    note_dropped_files();
    fill_carries();
    return true;
}

std::string_view LayoutEdits::text_of(std::size_t inclusion) const noexcept {
    Spot spot;
    spot.inclusion = inclusion;
    return sources_.map().file_of(spot).text.get_text();
}

const std::string& LayoutEdits::unit_of(std::size_t inclusion) {
    const std::size_t file = sources_.map().inclusion(inclusion).file;
    units_.resize(sources_.map().get_files().size());
    if (units_[file].empty()) {
        units_[file] = indent_unit(text_of(inclusion));
    }
    return units_[file];
}

/// Removing the range also removes the comments and includes inside.
bool LayoutEdits::locate(TextRange range, FileRange& place) {
    const Spot first = sources_.map().find(range.begin, 1);
    place = {first.inclusion, first.offset, first.offset};
    if (range.end == range.begin) {
        return true;
    }
    const Spot last = sources_.map().find(range.end - 1, 1);
    place.end = last.offset + 1;
    return last.inclusion == first.inclusion;
}

bool LayoutEdits::is_of_one_file(TextRange range) const noexcept {
    const std::size_t inclusion = sources_.map().find(range.begin, 1).inclusion;
    for (std::size_t at = range.begin; at < range.end;) {
        const Spot spot = sources_.map().find(at, range.end - at);
        if (spot.inclusion != inclusion || spot.length == 0) {
            return false;
        }
        at += spot.length;
    }
    return true;
}

std::size_t LayoutEdits::parent(std::size_t inclusion) const noexcept {
    return sources_.map().inclusion(inclusion).directive.inclusion;
}

/// Inclusions are numbered in the order of reading, so that an including file has the smaller number.
std::size_t LayoutEdits::common(std::size_t a, std::size_t b) const noexcept {
    while (a != b) {
        (a > b ? a : b) = parent(a > b ? a : b);
    }
    return a;
}

/// The directive that brings the text of a place into the file of `ancestor`.
FileRange LayoutEdits::climb(FileRange place, std::size_t ancestor) const noexcept {
    while (place.inclusion != ancestor) {
        const Spot& directive = sources_.map().inclusion(place.inclusion).directive;
        place = {directive.inclusion, directive.offset, directive.offset + directive.length};
    }
    return place;
}

bool LayoutEdits::is_same(TextRange word, const bk::StoredValue& value) const {
    return reads_as(bk::classify_value(words(word)), words(word), value, has_escapes_);
}

bool LayoutEdits::refuse(const std::string& about, const char* why) {
    reason_ = "entry '" + about + "' " + why;
    return false;
}

} // namespace bk_parser
