#include "output/display/screen_column.h"

#include "output/display/code_points.h"
#include "output/display/text_display.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace bkdoc {

namespace {

constexpr unsigned int tab_stop = 8;

constexpr CodeRange combining[] = {{0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x064B, 0x065F},
                                   {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x200B, 0x200F}, {0x20D0, 0x20F0},
                                   {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF}};
constexpr CodeRange wide[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},  {0x3041, 0x33FF}, {0x3400, 0x4DBF},
                              {0x4E00, 0xA4CF},   {0xA960, 0xA97C},  {0xAC00, 0xD7A3}, {0xF900, 0xFAFF},
                              {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},  {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F},
                              {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};

unsigned int width_of(std::string_view character) noexcept {
    const char32_t code = code_point(character);
    return is_in(wide, code) ? 2 : is_in(combining, code) ? 0 : 1;
}

} // namespace

unsigned int screen_column(const bk_parser::Problem& problem) noexcept {
    const std::string_view line = problem.source_line;
    if (problem.column == 0 || problem.offset < problem.source_line_offset) {
        return problem.column;
    }
    const std::string_view before = line.substr(0, problem.offset - problem.source_line_offset);
    const auto characters = static_cast<unsigned int>(count_characters(before));
    unsigned int columns = problem.column - 1 - std::min(characters, problem.column - 1);
    for (std::size_t i = 0; i < before.size();) {
        const std::size_t length = utf8_length(before, i);
        columns += before[i] == '\t' ? tab_stop - columns % tab_stop
                   : length == 0     ? 1
                                     : width_of(before.substr(i, length));
        i += std::max<std::size_t>(length, 1);
    }
    return columns + 1;
}

} // namespace bkdoc
