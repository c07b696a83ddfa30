#pragma once

#include "document/problems/list/losses_impl.h"
#include "document/problems/list/problem_list_impl.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace bk_parser {

/// The places of the expanded text where a comment or directive was removed, so that the words around it became one word. Leaves out
/// comments inside strings: the problem of the string explains these.
class Joins {
public:
    /// Linear in the pieces that begin inside a word.
    Joins(std::string_view expanded, const SourceMap& sources);

    /// Whether one of these places is inside the word, which explains what is wrong with it.
    bool is_inside(std::size_t start, std::size_t length) const noexcept {
        return find_inside(start, length) != nullptr;
    }
    /// The comment or directive that was removed at the first such place; null when there is none.
    const Spot* find_inside(std::size_t start, std::size_t length) const noexcept;
    /// Notes that the word was lost, so that the join is an error.
    void lose(std::size_t start, std::size_t length, Losses& losses) const;
    void tell(std::string_view expanded, const Losses& losses, ProblemList& problems) const;

private:
    struct Join {
        Spot taken; // the comment or directive that was removed
        bool is_comment;
        bool is_in_string; // a directive in a string, which has a problem of its own
    };

    std::vector<Join> joins_;
    std::vector<std::uint32_t> offsets_; // of the first character after each join, in the expanded text
};

} // namespace bk_parser
