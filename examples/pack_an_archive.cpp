#include "document/strings.h"
#include "parser/parser_archive.h"
#include "parser/parser_file.h"

#include <iostream>

/// Packs a tree into an archive file, which keeps each distinct word once, and unpacks it.
int main() {
    ParserFile harbour("project/harbour.bkd");
    harbour.set_search_paths({"project/library", "project/shots"});
    if (!harbour.read("", "", nullptr)) {
        return 1;
    }
    ParserArchive archive;
    ParserImpl::archive_group(harbour.get_root(), archive, false, nullptr);
    std::cout << archive.indices.get_count() << " words, " << archive.strings.get_count() << " distinct\n";
    if (const CoreString error = ParserImpl::save_archive(archive, "harbour.kwaf", nullptr);
        !error.is_empty()) {
        std::cout << error << "\n";
        return 1;
    }

    ParserArchive loaded;
    if (const CoreString error = ParserImpl::load_archive(loaded, "harbour.kwaf", nullptr);
        !error.is_empty()) {
        std::cout << error << "\n";
        return 1;
    }
    ParserGroup root("root");
    ParserImpl::group_set_archive(root, loaded, nullptr);
    std::cout << root.get_entries().get_count() << " entries are back\n";
}
