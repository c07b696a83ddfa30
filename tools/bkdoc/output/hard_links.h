#pragma once

#include "output/output.h"

#include <cstddef>
#include <string>
#include <vector>

namespace bkdoc {

/// The further names of files that are about to be replaced. A file that is replaced is a new one: the names that hard links gave the
/// old one keep it.
class HardLinks {
public:
    /// Before the files are replaced: their paths, and what reports call them.
    void note(const std::string& path, const std::string& name);
    /// Says of each file with hard links what becomes of them, or what would.
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
