#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace bkdoc {

/// The lines of a text, each with its line end, if it has one.
std::vector<std::string_view> lines_of(std::string_view text);

/// Lines of the first text that give way to lines of the second; one of both may be none.
struct LineChange {
    std::size_t old_begin;
    std::size_t old_end;
    std::size_t new_begin;
    std::size_t new_end;
};

/// How to make the second text of the first, in order. The smallest difference, where no more than 256 lines that differ
/// come together.
std::vector<LineChange> line_changes(const std::vector<std::string_view>& before,
                                     const std::vector<std::string_view>& after);

} // namespace bkdoc
