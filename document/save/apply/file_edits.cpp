#include "document/save/apply/file_edits_impl.h"

#include "document/save/apply/text_edits_impl.h"
#include "document/save/files/same_file_impl.h"
#include "document/save/forms/stored_form_impl.h"

#include <algorithm>
#include <utility>

namespace bk_parser {

/// The parser takes a text whose lines end in "\r" for one line. An inserted "\n" would end that line, and the comments in it.
bool breaks_returns(std::string_view text, const std::vector<Edit>& edits) {
    const bool has_break = std::any_of(edits.begin(), edits.end(), [](const Edit& edit) {
        return edit.text.find('\n') != std::string::npos;
    });
    return has_break && text.find('\n') == std::string_view::npos &&
           text.find('\r') != std::string_view::npos;
}

namespace {

/// A text whose last line has no line end stays so, whatever its last line is now.
void keep_last_line(std::string_view before, std::string& text) {
    while (!before.empty() && !before.ends_with('\n') && text.ends_with('\n')) {
        text.pop_back();
        if (text.ends_with('\r')) {
            text.pop_back();
        }
    }
}

} // namespace

bool apply_edits(const SaveSources& sources, const FileNames& names, const std::vector<Edit>& edits,
                 const std::string& key, NewBytes& bytes, std::string& reason) {
    const SourceMap& map = sources.map();
    std::vector<std::vector<Edit>> by_inclusion(map.get_inclusion_count());
    for (const Edit& edit : edits) {
        by_inclusion[edit.inclusion].push_back(edit);
    }
    std::vector<std::size_t> first(map.get_files().size(),
                                   map.get_inclusion_count()); // one inclusion for each file
    for (std::size_t i = 0; i < by_inclusion.size(); ++i) {
        sort_edits(by_inclusion[i]);
        const std::size_t file = names.first(map.inclusion(i).file);
        if (first[file] == map.get_inclusion_count()) {
            first[file] = i;
            continue;
        }
        const std::vector<Edit>& one = by_inclusion[first[file]];
        const std::vector<Edit>& two = by_inclusion[i];
        if (!are_alike(one, two)) {
            reason = map.get_files()[file]->path +
                     ": is included more than once, and what came from it was not changed alike; entry '" +
                     (one.empty() ? two : one).front().about + "'";
            return false;
        }
    }
    for (std::size_t file = 0; file < first.size(); ++file) {
        const std::vector<Edit>& changes = by_inclusion[first[names.first(file)]];
        if (names.place(file) != file || changes.empty()) {
            continue;
        }
        const std::string& path = map.get_files()[file]->path;
        if (breaks_returns(map.get_files()[file]->text.get_text(), changes)) {
            reason = path +
                     ": its lines end in a carriage return alone, and cannot take a new line; entry '" +
                     changes.front().about + "'";
            return false;
        }
        std::string text = edited(map.get_files()[file]->text.get_text(), changes);
        keep_last_line(map.get_files()[file]->text.get_text(), text);
        bytes[path] = sources.is_enciphered(path) ? enciphered(text, key) : std::move(text);
    }
    return true;
}

} // namespace bk_parser
