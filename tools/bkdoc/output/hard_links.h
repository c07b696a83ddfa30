#pragma once

#include "output/output.h"

#include <cstddef>
#include <string>
#include <vector>

namespace bkdoc {

/// Reports hard links of the files that a save replaces. A replaced file is a new file, so the other names of the old one keep
/// the old content.
class HardLinks {
public:
    /// Call it before the files are replaced, with their paths and their names in reports.
    void note(const std::string& path, const std::string& name);
    /// Reports for each file with hard links that the other names keep, or would keep, the old content.
    void tell(Streams& streams, bool is_done) const;

private:
    struct Linked {
        std::string path;
        std::string name;
        std::size_t others = 0; // names that keep the old file
    };
    std::vector<Linked> linked_;
};

} // namespace bkdoc
