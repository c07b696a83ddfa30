#include "document/document.h"

#include <iostream>

/// Says what is wrong with a text, as a list of problems in an editor would.
int main() {
    constexpr std::string_view text = "lit true\n"
                                      "power 60.0// watts\n"
                                      "count 99999999999\n"
                                      "shade { material \"linen\"\n";
    const bk_parser::LoadResult result = bk_parser::parse(text);
    for (const bk_parser::Problem& problem : result.problems) {
        const bool is_error = problem.severity == bk_parser::Severity::error;
        std::cout << problem.line << ":" << problem.column << ": " << (is_error ? "error" : "warning") << ": "
                  << problem.message << " [" << problem.code << "]\n"
                  << "  " << problem.source_line << "\n";
    }
    std::cout << (result.ok() ? "read whole\n" : "something was lost\n");
}
