#pragma once

#include "document/problems/problem_list_impl.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace bk_parser {

/// The places of the expanded text where a comment or directive was taken out and the words around it have become one.
class Joins {
public:
    /// Linear in the pieces.
    Joins(std::string_view expanded, const SourceMap& sources);

    /// Whether one of them is inside a word: what is wrong with it comes of that.
    bool is_inside(std::size_t start, std::size_t length) const noexcept;
    void tell(std::string_view expanded, const SourceMap& sources, ProblemList& problems) const;

private:
    std::vector<std::size_t> pieces_;    // those before which words join
    std::vector<std::uint32_t> offsets_; // where they begin
};

} // namespace bk_parser
