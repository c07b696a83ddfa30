#include "document/document.h"

#include <iostream>

/// Prints the names of a document's entries, indented by their depth. No recursion, however deep the tree.
int main() {
    const bk_parser::LoadResult lamp = bk_parser::load("lamp.bkd");
    for (const bk_parser::Visit& visit : bk_parser::walk(lamp.document.root())) {
        std::cout << std::string(4 * visit.depth(), ' ') << visit.entry().get_name() << ": "
                  << visit.entry().get_value_count() << " value(s)\n";
    }
}
