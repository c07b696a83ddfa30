#include "document/document.h"

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <string>

/// Says what is wrong with a text, as a list of problems in an editor would, with a mark below each place.
namespace {

/// A character of UTF-8 begins with any byte but these.
bool is_continuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// Columns count characters, `offset` and `length` count bytes. Tabs are kept, so that they are as wide as those of the line above.
std::string mark_below(const bk_parser::Problem& problem) {
    const std::string& line = problem.source_line;
    const std::size_t begin = std::min(problem.offset - problem.source_line_offset, line.size());
    const std::size_t end =
        begin + std::min(problem.length, line.size() - begin); // a place may go on in the next line
    std::string mark;
    for (std::size_t i = 0; i < end; ++i) {
        if (!is_continuation(line[i]) && i != begin) {
            mark += i > begin ? '~' : line[i] == '\t' ? '\t' : ' ';
        } else if (i == begin) {
            mark += '^';
        }
    }
    return end > begin ? mark : mark + '^'; // what is missing has no length
}

} // namespace

int main() {
    constexpr std::string_view text = "lit true\n"
                                      "power 60.0// watts\n"
                                      "\tcount 99999999999\n"
                                      "caf\xC3\xA9 1\n"
                                      "shade { material \"linen\"\n";
    const bk_parser::LoadResult result = bk_parser::parse(text);
    for (const bk_parser::Problem& problem : result.problems) {
        const bool is_error = problem.severity == bk_parser::Severity::error;
        std::cout << problem.line << ":" << problem.column << ": " << (is_error ? "error" : "warning") << ": "
                  << problem.message << " [" << problem.code << "]\n";
        if (problem.line != 0) { // a file that cannot be read has no place
            std::cout << problem.source_line << "\n" << mark_below(problem) << "\n";
        }
    }
    std::cout << (result.ok() ? "read whole\n" : "something was lost\n");
}
