#include "document/document.h"

#include <iostream>

int main() {
    const bk_parser::LoadResult result = bk_parser::parse("lit true\n"
                                                          "power 60.0// watts\n"
                                                          "colour 1 1 1\n");
    for (const bk_parser::Problem& problem : result.problems) {
        const bool is_error = problem.severity == bk_parser::Severity::error;
        std::cout << problem.line << ":" << problem.column << " " << (is_error ? "error" : "warning") << " ["
                  << problem.code << "]\n  " << problem.message << "\n";
    }
    std::cout << (result.ok() ? "read whole\n" : "something was lost\n");
}
