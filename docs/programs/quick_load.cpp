#include "document/document.h"

#include <iostream>

int main() {
    const bk_parser::LoadResult lamp = bk_parser::load("lamp.bkd");
    if (!lamp.ok()) {
        std::cout << "something was lost\n";
        return 1;
    }
    for (const ParserEntry& entry : bk_parser::entries(lamp.document.root())) {
        std::cout << entry.get_name() << "\n";
    }
}
