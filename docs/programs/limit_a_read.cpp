#include "document/document.h"

#include <iostream>

int main() {
    bk_parser::LoadOptions options;
    options.limits = ParserLimits::untrusted(); // the default of load; ParserFile has wider ones
    options.limits.nesting_depth = 2;
    const bk_parser::LoadResult result = bk_parser::parse("a { b { c { d 1 } } }\n", options);
    std::cout << result.problems.at(0).message << "\n";
}
