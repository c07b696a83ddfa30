#include "document/document.h"

#include <iostream>
#include <vector>

/// Makes, renames, moves and removes entries by path.
int main() {
    bk_parser::Document document;
    ParserGroup& root = document.root();
    bk_parser::set(root, "camera[\"main\"]/focal_length", 35.0); // makes the groups on the way
    bk_parser::set(root, "camera[\"main\"]/aspect", std::vector<int>{16, 9});
    bk_parser::set(root, "camera[\"main\"]/active", true);
    bk_parser::set(root, "note", "to be removed");
    bk_parser::rename(root, "camera/aspect", "ratio");
    bk_parser::move(root, "camera/active", "active");
    bk_parser::remove(root, "note");
    std::cout << bk_parser::to_text(root);
}
