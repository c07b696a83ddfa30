#include "document/document.h"

#include <array>
#include <iostream>

int main() {
    const bk_parser::LoadResult lamp = bk_parser::load("lamp.bkd");
    const ParserGroup& root = lamp.document.root();

    const double power = bk_parser::get_or(root, "power", 25.0);
    const std::string plug = bk_parser::get_or(root, "plug", "type F");
    std::cout << power << " watts, " << plug << "\n";

    if (const auto colour = bk_parser::get<std::array<double, 3>>(root, "shade/colour")) {
        std::cout << "green " << (*colour)[1] << "\n";
    }
    if (!bk_parser::get<int>(root, "name")) {
        std::cout << "name is no int\n";
    }
}
