#include "document/document.h"

#include <iostream>
#include <vector>

int main() {
    bk_parser::LoadResult lamp = bk_parser::load("lamp.bkd");
    ParserGroup& root = lamp.document.root();

    bk_parser::set(root, "power", 25.0);
    bk_parser::set(root, "stand/height", 120); // makes the group stand
    bk_parser::set(root, "shade/colour", std::vector<double>{1.0, 0.5, 0.0});
    bk_parser::remove(root, "lit");

    std::cout << bk_parser::to_text(root);
}
