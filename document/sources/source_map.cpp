#include "document/sources/source_map_impl.h"

#include <algorithm>

namespace bk_parser {

std::size_t SourceMap::file_index(const SourceName& name, std::string_view path) {
    const auto [place, is_new] = files_by_path_.try_emplace(std::string(path), files_.size());
    if (is_new) {
        files_.push_back(std::make_unique<SourceFile>(SourceFile{name, std::string(path), SourceText()}));
    }
    return place->second;
}

/// When memory runs out, throws before it adds the file to the open ones, so that every open file was entered whole.
void SourceMap::enter(const SourceName& name, std::string_view path, const Spot& directive) {
    inclusions_.push_back({file_index(name, path), directive});
    open_.push_back(inclusions_.size() - 1);
}

void SourceMap::leave(CoreString&& text, bool is_clean) {
    if (open_.empty()) {
        return;
    }
    SourceFile& file = *files_[inclusions_[current()].file];
    if (file.text.get_text().empty()) {
        file.text = SourceText(std::move(text));
        file.is_clean = is_clean;
    }
    open_.pop_back();
}

Spot SourceMap::find(std::size_t expanded, std::size_t length) const {
    const auto after =
        std::upper_bound(pieces_.begin(), pieces_.end(), expanded,
                         [](std::size_t at, const Piece& piece) { return at < piece.expanded; });
    if (after == pieces_.begin()) {
        return {0, 0, 0, expanded};
    }
    const Piece& piece = *std::prev(after);
    const std::size_t within = std::min<std::size_t>(expanded - piece.expanded, piece.length);
    return {piece.inclusion, piece.offset + within, std::min(length, piece.length - within), expanded};
}

std::size_t SourceMap::get_expanded_size() const noexcept {
    return pieces_.empty() ? 0 : std::size_t{pieces_.back().expanded} + pieces_.back().length;
}

} // namespace bk_parser
