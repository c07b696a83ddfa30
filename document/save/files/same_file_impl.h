#pragma once

#include "document/load/document_state_impl.h"
#include "document/sources/source_map_impl.h"

#include <cstddef>
#include <string>
#include <vector>

namespace bk_parser {

/// Resolves all symbolic links of a path, so that all paths of one file give the same name. UTF-8; absolute if the path is.
std::string real_path(const std::string& path);

/// Whether the path leads to the file that the document was loaded from or last saved to.
bool is_own_file(const DocumentState& state, const std::string& path);

/// Whether the path leads to a file that the document includes.
bool is_included_file(const DocumentState& state, const std::string& path);

/// Finds files of a document that are one file under several names, by symbolic or hard links.
class FileNames {
public:
    explicit FileNames(const SourceMap& map);

    /// The first name of this file.
    std::size_t first(std::size_t file) const noexcept { return first_[file]; }
    /// The first name with the same path on the disk. Hard links have different paths.
    std::size_t place(std::size_t file) const noexcept { return place_[file]; }
    bool has_several_names() const noexcept { return has_several_; }

private:
    std::vector<std::size_t> first_;
    std::vector<std::size_t> place_;
    bool has_several_ = false;
};

} // namespace bk_parser
