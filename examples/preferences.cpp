#include "document/document.h"

#include <iostream>

/// Preferences of a program: read with defaults, changed, and saved without losing what the user wrote beside them.
int main() {
    bk_parser::LoadResult preferences = bk_parser::load("preferences.bkd"); // there is none the first time
    ParserGroup& root = preferences.document.root();
    const int width = bk_parser::get_or(root, "window/width", 1280);
    const std::string theme = bk_parser::get_or(root, "theme", "dark");
    std::cout << width << " " << theme << "\n";
    bk_parser::set(root, "window/width", width + 20);
    bk_parser::set(root, "theme", theme);
    const bk_parser::SaveResult saved = bk_parser::save(preferences.document, "preferences.bkd");
    std::cout << (saved.ok() ? "saved" : saved.reason) << "\n";
}
