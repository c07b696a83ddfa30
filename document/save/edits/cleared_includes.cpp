#include "document/layout/source_tokens_impl.h"
#include "document/save/apply/text_edits_impl.h"
#include "document/save/edits/layout_edits_impl.h"
#include "document/save/edits/layout_lines_impl.h"

#include <algorithm>
#include <iterator>
#include <utility>

// When a file is included several times and all entries of one inclusion were removed, only the directive of that inclusion is
// removed. The file stays as it is for the others.

namespace bk_parser {

/// Whether an edit belongs to its file, not to a text that is carried from there.
bool LayoutEdits::is_of_file(const Edit& edit) const noexcept {
    return edit.inside == no_index || carries_[edit.inside].place.inclusion != edit.inclusion;
}

/// Takes the edits that belong to files, by inclusion.
std::vector<std::vector<Edit>> LayoutEdits::take_file_edits() {
    std::vector<std::vector<Edit>> by_inclusion(sources_.map().get_inclusion_count());
    std::vector<Edit> others;
    for (Edit& edit : edits_) {
        (is_of_file(edit) ? by_inclusion[edit.inclusion] : others).push_back(std::move(edit));
    }
    edits_ = std::move(others);
    for (std::vector<Edit>& edits : by_inclusion) {
        sort_edits(edits);
    }
    return by_inclusion;
}

/// Removes the directive of an inclusion, inside of the carried text if it is in one.
Edit LayoutEdits::removal_of_directive(std::size_t inclusion, std::string about) const {
    const Spot& directive = sources_.map().inclusion(inclusion).directive;
    const LineRange lines =
        removal_of(text_of(directive.inclusion), directive.offset, directive.offset + directive.length);
    Edit edit;
    edit.inclusion = directive.inclusion;
    edit.begin = lines.begin;
    edit.end = lines.end;
    edit.about = std::move(about);
    edit.removes_entries = true;
    for (std::uint32_t i = 0; i < carries_.size(); ++i) {
        const FileRange& place = carries_[i].place;
        if (place.inclusion == directive.inclusion && place.begin <= directive.offset &&
            directive.offset < place.end) {
            edit.inside = i; // ends with the innermost one
        }
    }
    return edit;
}

/// For each inclusion, whether nothing is left of it but comments.
std::vector<bool> LayoutEdits::cleared_places(const std::vector<std::vector<Edit>>& edits) const {
    const SourceMap& map = sources_.map();
    std::vector<std::vector<Edit>> left(edits);
    std::vector<bool> is_cleared(edits.size());
    for (std::size_t i = edits.size(); i-- > 1;) {
        sort_edits(left[i]);
        const std::string text = edited(text_of(i), left[i]);
        const SourceTokens tokens = find_tokens(text);
        is_cleared[i] = std::all_of(tokens.tokens.begin(), tokens.tokens.end(), [](const SourceToken& token) {
            return token.kind == TokenKind::comment || token.kind == TokenKind::version;
        });
        if (is_cleared[i]) {
            left[map.inclusion(i).directive.inclusion].push_back(removal_of_directive(i, {}));
        }
    }
    return is_cleared;
}

void LayoutEdits::drop_cleared_includes() {
    const SourceMap& map = sources_.map();
    if (map.get_inclusion_count() == map.get_files().size() && !names_.has_several_names()) {
        return; // no file is included twice
    }
    std::vector<std::vector<Edit>> edits = take_file_edits();
    std::vector<std::vector<std::size_t>> places(map.get_files().size()); // inclusions of each file
    for (std::size_t i = 0; i < edits.size(); ++i) {
        places[names_.first(map.file_of_inclusion(i))].push_back(i);
    }
    const auto differs = [&](std::size_t i) {
        const std::vector<std::size_t>& all = places[names_.first(map.file_of_inclusion(i))];
        return std::any_of(all.begin(), all.end(),
                           [&](std::size_t other) { return !are_alike(edits[i], edits[other]); });
    };
    std::vector<bool> is_cleared;
    for (std::size_t i = edits.size(); i-- > 1;) {
        if (edits[i].empty() || !differs(i)) {
            continue;
        }
        if (is_cleared.empty()) {
            is_cleared = cleared_places(edits);
        }
        if (is_cleared[i]) {
            Edit removal = removal_of_directive(i, edits[i].front().about);
            drop_edits_below(i, edits);
            (is_of_file(removal) ? edits[removal.inclusion] : edits_).push_back(std::move(removal));
            sort_edits(edits[map.inclusion(i).directive.inclusion]);
        }
    }
    for (std::vector<Edit>& one : edits) {
        std::move(one.begin(), one.end(), std::back_inserter(edits_));
    }
}

/// Drops the edits in an inclusion and in all below it, which have higher numbers.
void LayoutEdits::drop_edits_below(std::size_t inclusion, std::vector<std::vector<Edit>>& edits) const {
    std::vector<bool> is_below(edits.size());
    is_below[inclusion] = true;
    for (std::size_t i = inclusion; i < edits.size(); ++i) {
        is_below[i] = is_below[i] || is_below[parent(i)];
        if (is_below[i]) {
            edits[i].clear();
        }
    }
}

} // namespace bk_parser
