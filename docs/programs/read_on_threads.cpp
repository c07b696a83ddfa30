#include "document/document.h"

#include <atomic>
#include <iostream>
#include <thread>
#include <vector>

int main() {
    const bk_parser::LoadResult lamp = bk_parser::load("lamp.bkd");
    const ParserGroup& root = lamp.document.root();
    bk_parser::freeze(root); // converts every number now: a first typed read stores what it converts

    std::atomic<int> sum = 0;
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i) {
        readers.emplace_back([&] { sum += static_cast<int>(bk_parser::get_or(root, "power", 0.0)); });
    }
    for (std::thread& reader : readers) {
        reader.join();
    }
    std::cout << sum << "\n";
}
