#include "document/document.h"

#include <iostream>

int main() {
    bk_parser::LoadResult lamp = bk_parser::load("lamp.bkd");
    for (const bk_parser::Problem& problem : lamp.problems) {
        std::cerr << problem.file.string() << ":" << problem.line << ": " << problem.message << "\n";
    }
    if (!lamp.ok()) {
        return 1;
    }
    ParserGroup& root = lamp.document.root();
    const double power = bk_parser::get_or(root, "power", 0.0);
    std::cout << bk_parser::get_or(root, "name", "a lamp") << ": " << power << " watts\n";
    bk_parser::set(root, "power", power * 2);
    const bk_parser::SaveResult saved = bk_parser::save(lamp.document);
    std::cerr << saved.reason;
    return saved.ok() ? 0 : 1;
}
