#pragma once

#include "document/problems/list/losses_impl.h"
#include "document/problems/list/problem_list_impl.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace bk_parser {

/// The places of the expanded text where a comment or directive was removed and the words around it became one. Leaves out comments
/// inside strings: the problem of the string explains these.
class Joins {
public:
    /// Linear in the pieces that begin inside a word.
    Joins(std::string_view expanded, const SourceMap& sources);

    /// Whether one of them is inside this word, and so explains what is wrong with it.
    bool is_inside(std::size_t start, std::size_t length) const noexcept {
        return find_inside(start, length) != nullptr;
    }
    /// What was taken out of the first of them, or null.
    const Spot* find_inside(std::size_t start, std::size_t length) const noexcept;
    /// Notes that the word was lost, so that the join is an error.
    void lose(std::size_t start, std::size_t length, Losses& losses) const;
    void tell(std::string_view expanded, const Losses& losses, ProblemList& problems) const;

private:
    struct Join {
        Spot taken; // what was taken out, where its file says so
        bool is_comment;
        bool is_in_string; // a directive, which is told of itself
    };

    std::vector<Join> joins_;
    std::vector<std::uint32_t> offsets_; // of the characters after them
};

} // namespace bk_parser
