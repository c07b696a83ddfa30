#pragma once

#include "document/problems/list/losses_impl.h"
#include "document/problems/list/problem_list_impl.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace bk_parser {

/// The places of the expanded text where a comment or directive was taken out and the words around it have become one.
/// Those that a comment made inside a string are left out: what is told of the string is the reason.
class Joins {
public:
    /// Linear in the pieces.
    Joins(std::string_view expanded, const SourceMap& sources);

    /// Whether one of them is inside a word: what is wrong with it comes of that.
    bool is_inside(std::size_t start, std::size_t length) const noexcept {
        return find_inside(start, length) != nullptr;
    }
    /// What was taken out of the first of them, or null.
    const Spot* find_inside(std::size_t start, std::size_t length) const noexcept;
    /// The word was lost: what joined it is an error.
    void lose(std::size_t start, std::size_t length, Losses& losses) const;
    void tell(std::string_view expanded, const Losses& losses, ProblemList& problems) const;

private:
    struct Join {
        Spot taken; // what was taken out, where its file says so
        bool is_comment;
        bool is_in_string; // a directive, which is told of itself
    };

    std::vector<Join> joins_;
    std::vector<std::uint32_t> offsets_; // of the characters behind them
};

} // namespace bk_parser
