#include "document/document.h"

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <string>

/// Prints the problems of a text as an editor lists them, with a mark below each place.
namespace {

/// A byte of a UTF-8 character other than its first.
bool is_continuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// Columns count characters; `offset` and `length` count bytes. Keeps tabs, so that the mark lines up.
std::string mark_below(const bk_parser::Problem& problem) {
    const std::string& line = problem.source_line;
    const std::size_t begin = std::min(problem.offset - problem.source_line_offset, line.size());
    const std::size_t end =
        begin + std::min(problem.length, line.size() - begin); // a place can extend to the next line
    std::string mark;
    for (std::size_t i = 0; i < end; ++i) {
        if (!is_continuation(line[i]) && i != begin) {
            mark += i > begin ? '~' : line[i] == '\t' ? '\t' : ' ';
        } else if (i == begin) {
            mark += '^';
        }
    }
    return end > begin ? mark : mark + '^'; // a problem about missing text has length 0
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
