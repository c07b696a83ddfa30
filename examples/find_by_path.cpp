#include "document/document.h"

#include <iostream>

/// Lists what paths find in the example project.
int main() {
    bk_parser::LoadOptions options;
    options.search = {"project/library", "project/shots"};
    const bk_parser::LoadResult harbour = bk_parser::load("project/harbour.bkd", options);
    const ParserGroup& root = harbour.document.root();
    for (const char* path :
         {"project/title", "harbour/quay/bollard[2]", "buoys/buoy[light=yes]", "**/wind/speed"}) {
        std::cout << path << "\n";
        for (const ParserEntry& entry : bk_parser::find_all(root, path)) {
            std::cout << "  " << bk_parser::path_of(root, entry) << "\n";
        }
    }
}
