#include "document/document.h"

#include <fstream>
#include <iostream>

int main() {
    std::ofstream("desk.bkd") << "#Brellwick_Serial_Version 1.2\n"
                                 "power = 40.0   // watts\n";

    bk_parser::LoadResult desk = bk_parser::load("desk.bkd");
    bk_parser::set(desk.document.root(), "power", 60.0);
    const bk_parser::SaveResult saved = bk_parser::save(desk.document);

    if (!saved.ok()) {
        std::cout << saved.reason << "\n";
        return 1;
    }
    std::cout << std::ifstream("desk.bkd").rdbuf();
}
