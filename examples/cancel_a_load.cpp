#include "document/document.h"

#include <iostream>

/// Stops a load half way, as a button would.
int main() {
    std::string text;
    for (int i = 0; i < 100000; ++i) {
        text += "value " + std::to_string(i) + "\n";
    }
    bk_parser::LoadOptions options;
    options.progress = [](double done) { return done < 0.5; };
    const bk_parser::LoadResult result = bk_parser::parse(text, options);
    std::cout << (result.cancelled ? "cancelled, " : "loaded, ")
              << result.document.root().get_entries().get_count() << " entries\n";
}
