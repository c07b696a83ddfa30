#pragma once

#include "input/source_text.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace bkdoc {

/// How a file is called in reports, and the search folder that it was found in: empty when it was found as
/// named.
struct SourceName {
    std::string shown;
    std::string folder;
};

/// A file that took part in a reading.
struct SourceFile {
    SourceName name;
    std::string path;
    SourceText text;
};

/// A piece of a file, in one of the places that the file was included at.
struct Spot {
    std::size_t inclusion = 0;
    std::size_t offset = 0; // in the file's text
    std::size_t length = 0;
};

/// A file at one place of the chain of includes. The first inclusion is the document itself.
struct Inclusion {
    std::size_t file = 0;
    Spot directive; // where the including file says so; the document itself has none
};

/// Which file each byte of the expanded text came from.
class SourceMap {
public:
    /// A file begins, at the place of a directive in the file that was current until now.
    void enter(const SourceName& name, std::string_view path, std::string_view text, const Spot& directive);
    void leave();
    /// A piece of the current file becomes part of the expanded text, after all that came before.
    void copy(std::size_t offset, std::size_t length, std::size_t expanded);

    /// The inclusion that is being read.
    std::size_t current() const noexcept { return open_.empty() ? 0 : open_.back(); }

    /// Where a piece of the expanded text came from, as far as it is of one piece there too. Past the end:
    /// the end of the last piece. Only after something was entered.
    Spot find(std::size_t expanded, std::size_t length) const;

    bool is_empty() const noexcept { return inclusions_.empty(); }
    const Inclusion& inclusion(std::size_t i) const noexcept { return inclusions_[i]; }
    const SourceFile& file_of(const Spot& spot) const noexcept {
        return *files_[inclusions_[spot.inclusion].file];
    }
    /// Each file once, in the order of its first inclusion.
    const std::vector<std::unique_ptr<SourceFile>>& get_files() const noexcept { return files_; }
    std::size_t get_inclusion_count() const noexcept { return inclusions_.size(); }
    std::size_t get_expanded_size() const noexcept;

private:
    struct Piece {
        std::size_t expanded;
        std::size_t offset;
        std::size_t length;
        std::size_t inclusion;
    };

    std::size_t file_index(const SourceName& name, std::string_view path, std::string_view text);

    std::vector<std::unique_ptr<SourceFile>> files_;
    std::unordered_map<std::string, std::size_t> files_by_path_;
    std::vector<Inclusion> inclusions_;
    std::vector<std::size_t> open_; // inclusions that were entered and not left, outermost first
    std::vector<Piece> pieces_;     // by ascending expanded offset
};

} // namespace bkdoc
