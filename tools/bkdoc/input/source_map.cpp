#include "input/source_map.h"

#include <algorithm>

namespace bkdoc {

std::size_t SourceMap::file_index(const SourceName& name, std::string_view path, std::string_view text) {
    const auto [found, is_new] = files_by_path_.try_emplace(std::string(path), files_.size());
    if (is_new) {
        files_.push_back(std::make_unique<SourceFile>(SourceFile{name, std::string(path), SourceText(text)}));
    }
    return found->second;
}

void SourceMap::enter(const SourceName& name, std::string_view path, std::string_view text,
                      const Spot& directive) {
    open_.push_back(inclusions_.size());
    inclusions_.push_back({file_index(name, path, text), directive});
}

void SourceMap::leave() {
    if (!open_.empty()) {
        open_.pop_back();
    }
}

void SourceMap::copy(std::size_t offset, std::size_t length, std::size_t expanded) {
    if (!pieces_.empty()) {
        Piece& last = pieces_.back();
        if (last.inclusion == current() && last.offset + last.length == offset &&
            last.expanded + last.length == expanded) {
            last.length += length;
            return;
        }
    }
    pieces_.push_back({expanded, offset, length, current()});
}

Spot SourceMap::find(std::size_t expanded, std::size_t length) const {
    const auto after =
        std::upper_bound(pieces_.begin(), pieces_.end(), expanded,
                         [](std::size_t at, const Piece& piece) { return at < piece.expanded; });
    if (after == pieces_.begin()) {
        return {};
    }
    const Piece& piece = *std::prev(after);
    const std::size_t within = std::min(expanded - piece.expanded, piece.length);
    return {piece.inclusion, piece.offset + within, std::min(length, piece.length - within)};
}

std::size_t SourceMap::get_expanded_size() const noexcept {
    return pieces_.empty() ? 0 : pieces_.back().expanded + pieces_.back().length;
}

} // namespace bkdoc
