#include "document/save/edits/file_edits_impl.h"

#include "document/save/files/same_file_impl.h"
#include "document/save/forms/stored_form_impl.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace bk_parser {

namespace {

bool is_before(const Edit& a, const Edit& b) noexcept {
    return a.begin != b.begin ? a.begin < b.begin : a.end < b.end;
}

bool is_same(const Edit& a, const Edit& b) noexcept {
    return a.begin == b.begin && a.end == b.end && a.text == b.text;
}

/// Removals may overlap.
std::string applied(std::string_view text, const std::vector<Edit>& edits) {
    std::string result;
    result.reserve(text.size() + 4096);
    std::size_t at = 0;
    for (const Edit& edit : edits) {
        if (edit.begin > at) {
            result += text.substr(at, edit.begin - at);
            at = edit.begin;
        }
        result += edit.text;
        at = std::max(at, edit.end);
    }
    result += text.substr(at);
    return result;
}

/// Of each file the first one that is the same behind symbolic links.
std::vector<std::size_t> first_names(const SourceMap& map) {
    std::unordered_map<std::string, std::size_t> by_real_path;
    std::vector<std::size_t> first;
    for (std::size_t file = 0; file < map.get_files().size(); ++file) {
        first.push_back(by_real_path.emplace(real_path(map.get_files()[file]->path), file).first->second);
    }
    return first;
}

/// Text whose lines end in a return alone is one line to the parser; a new one would end it, and comments in it.
bool breaks_returns(std::string_view text, const std::vector<Edit>& edits) {
    const bool has_break = std::any_of(edits.begin(), edits.end(), [](const Edit& edit) {
        return edit.text.find('\n') != std::string::npos;
    });
    return has_break && text.find('\r') != std::string_view::npos &&
           text.find('\n') == std::string_view::npos;
}

} // namespace

bool apply_edits(const SaveSources& sources, const std::vector<Edit>& edits, const std::string& key,
                 NewBytes& bytes, std::string& reason) {
    const SourceMap& map = sources.map();
    std::vector<std::vector<Edit>> by_inclusion(map.get_inclusion_count());
    for (const Edit& edit : edits) {
        by_inclusion[edit.inclusion].push_back(edit);
    }
    const std::vector<std::size_t> names = first_names(map);
    std::vector<std::size_t> first(map.get_files().size(),
                                   map.get_inclusion_count()); // inclusion of each file
    for (std::size_t i = 0; i < by_inclusion.size(); ++i) {
        std::stable_sort(by_inclusion[i].begin(), by_inclusion[i].end(), is_before);
        const std::size_t file = names[map.inclusion(i).file];
        if (first[file] == map.get_inclusion_count()) {
            first[file] = i;
            continue;
        }
        const std::vector<Edit>& one = by_inclusion[first[file]];
        const std::vector<Edit>& two = by_inclusion[i];
        if (!std::equal(one.begin(), one.end(), two.begin(), two.end(), is_same)) {
            reason = map.get_files()[file]->path +
                     ": is included more than once, and what came from it was not changed alike; entry '" +
                     (one.empty() ? two : one).front().about + "'";
            return false;
        }
    }
    for (std::size_t file = 0; file < first.size(); ++file) {
        if (names[file] != file || by_inclusion[first[file]].empty()) {
            continue;
        }
        const std::vector<Edit>& changes = by_inclusion[first[file]];
        const std::string& path = map.get_files()[file]->path;
        if (breaks_returns(map.get_files()[file]->text.get_text(), changes)) {
            reason = path +
                     ": its lines end in a carriage return alone, and cannot take a new line; entry '" +
                     changes.front().about + "'";
            return false;
        }
        std::string text = applied(map.get_files()[file]->text.get_text(), changes);
        bytes[path] = sources.is_enciphered(path) ? enciphered(text, key) : std::move(text);
    }
    return true;
}

} // namespace bk_parser
