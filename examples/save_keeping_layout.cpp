#include "document/document.h"

#include <fstream>
#include <iostream>

/// Changes one number of a document with comments, and shows the file before and after.
int main() {
    std::ofstream("light.bkd") << "#Brellwick_Serial_Version 1.2\n"
                                  "// Key light: do not move.\n"
                                  "light {\n"
                                  "    power = 60.00   // watts\n"
                                  "    colour 1, 0.9, 0.8\n"
                                  "}\n";
    bk_parser::LoadResult light = bk_parser::load("light.bkd");
    bk_parser::set(light.document.root(), "light/power", 75.5);
    const bk_parser::SaveResult saved = bk_parser::save(light.document);
    std::cout << (saved.ok() ? "saved\n" : saved.reason + "\n") << std::ifstream("light.bkd").rdbuf();
}
