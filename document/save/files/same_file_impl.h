#pragma once

#include "document/load/document_state_impl.h"
#include "document/sources/source_map_impl.h"

#include <cstddef>
#include <string>
#include <vector>

namespace bk_parser {

/// The name that a file has behind all symbolic links of its path; two paths of one file have the same. UTF-8, absolute where the path is.
std::string real_path(const std::string& path);

/// Whether the path leads to the file that the document was loaded from, or saved to last.
bool is_own_file(const DocumentState& state, const std::string& path);

/// Whether the path leads to a file that the document includes.
bool is_included_file(const DocumentState& state, const std::string& path);

/// Which of the files of a document are one file under several names, by symbolic or by hard links.
class FileNames {
public:
    explicit FileNames(const SourceMap& map);

    /// The first of the names that this file has.
    std::size_t first(std::size_t file) const noexcept { return first_[file]; }
    /// The first name that leads to the same place of the disk: hard links are places of their own.
    std::size_t place(std::size_t file) const noexcept { return place_[file]; }
    bool has_several_names() const noexcept { return has_several_; }

private:
    std::vector<std::size_t> first_;
    std::vector<std::size_t> place_;
    bool has_several_ = false;
};

} // namespace bk_parser
