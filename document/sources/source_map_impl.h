#pragma once

#include "document/sources/memory_allocator_impl.h"
#include "document/sources/source_text_impl.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace bk_parser {

/// The name of a file in reports, and the search folder in which it was found, empty when it was found as named.
struct SourceName {
    std::string shown;
    std::string folder;
};

/// A file of a document.
struct SourceFile {
    SourceName name;
    std::string path; // absolute, UTF-8; empty for a document in memory
    SourceText text;
    bool is_clean = false; // its text is known to have no stray bytes
};

/// A piece of a file, in one of the places that the file was included at.
struct Spot {
    std::size_t inclusion = 0;
    std::size_t offset = 0; // in the file's text
    std::size_t length = 0;
    std::size_t expanded =
        0; // its place in the expanded text; of a piece that is not there, the place of what follows it
};

/// A file at one place of the chain of includes. The first inclusion is the document itself.
struct Inclusion {
    std::size_t file = 0;
    Spot directive; // the include directive in the including file; the document itself has none
};

/// Which file each byte of the expanded text came from.
class SourceMap {
public:
    /// A range of a file that is also a range of the expanded text. Texts have lengths of 32 bits.
    struct Piece {
        std::uint32_t expanded;
        std::uint32_t offset;
        std::uint32_t length;
        std::uint32_t inclusion;
    };

    /// In blocks, which grow without copies and come from the pages of the tree. A vector costs a load of 20 MiB with 120,000
    /// comments 700 page faults.
    using Pieces = std::deque<Piece, MemoryAllocator<Piece>>;

    /// The place of an include directive or a version line, neither of which is a part of the expanded text.
    struct Directive {
        std::uint32_t offset;
        std::uint32_t inclusion;
    };

    /// A file begins, at the place of a directive in the file that was current until now.
    void enter(const SourceName& name, std::string_view path, const Spot& directive);
    /// The current file ends. Keeps its text; of a file that is included more than once, the text of the first inclusion.
    void leave(CoreString&& text, bool is_clean = false);
    /// A piece of the current file becomes part of the expanded text, after all that came before. Returns false when it continues the
    /// piece before.
    bool copy(std::size_t offset, std::size_t length, std::size_t expanded) {
        const std::size_t inclusion = current();
        if (!pieces_.empty()) {
            Piece& last = pieces_.back();
            if (std::size_t{last.offset} + last.length == offset && last.inclusion == inclusion &&
                std::size_t{last.expanded} + last.length == expanded) {
                last.length += static_cast<std::uint32_t>(length);
                return false;
            }
        }
        pieces_.push_back({static_cast<std::uint32_t>(expanded), static_cast<std::uint32_t>(offset),
                           static_cast<std::uint32_t>(length), static_cast<std::uint32_t>(inclusion)});
        return true;
    }
    /// The last piece begins inside a word.
    void note_joint() { joints_.push_back(static_cast<std::uint32_t>(pieces_.size() - 1)); }

    /// A directive of the current file, after all that came before.
    void note_directive(std::size_t offset) {
        directives_.push_back({static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(current())});
    }

    /// The inclusion that is being read.
    std::size_t current() const noexcept { return open_.empty() ? 0 : open_.back(); }

    /// A place of the current file.
    Spot here(std::size_t offset, std::size_t length) const noexcept {
        return {current(), offset, length, get_expanded_size()};
    }
    /// Where a piece of the expanded text came from, up to the end of the source's own piece. Past the end of the text: the end of
    /// the last piece. Call it only after a file was entered.
    Spot find(std::size_t expanded, std::size_t length) const;

    bool is_empty() const noexcept { return inclusions_.empty(); }
    const Inclusion& inclusion(std::size_t i) const noexcept { return inclusions_[i]; }
    const SourceFile& file_of(const Spot& spot) const noexcept {
        return *files_[inclusions_[spot.inclusion].file];
    }
    /// Each file once, in the order of its first inclusion.
    const std::vector<std::unique_ptr<SourceFile>>& get_files() const noexcept { return files_; }
    /// By ascending place in the expanded text. No piece continues the one before it.
    const Pieces& get_pieces() const noexcept { return pieces_; }
    /// The indices in get_pieces of the pieces that begin inside a word.
    const std::vector<std::uint32_t>& get_joints() const noexcept { return joints_; }
    /// In the order of the reading, those of each inclusion by their place.
    const std::vector<Directive>& get_directives() const noexcept { return directives_; }
    /// The index in get_files of an inclusion's file.
    std::size_t file_of_inclusion(std::size_t i) const noexcept { return inclusions_[i].file; }
    std::size_t get_inclusion_count() const noexcept { return inclusions_.size(); }
    std::size_t get_expanded_size() const noexcept;

private:
    std::size_t file_index(const SourceName& name, std::string_view path);

    std::vector<std::unique_ptr<SourceFile>> files_;
    std::unordered_map<std::string, std::size_t> files_by_path_;
    std::vector<Inclusion> inclusions_;
    std::vector<std::size_t> open_; // inclusions that were entered and not left, outermost first
    Pieces pieces_;                 // by ascending expanded offset
    std::vector<std::uint32_t> joints_;
    std::vector<Directive> directives_;
};

} // namespace bk_parser
