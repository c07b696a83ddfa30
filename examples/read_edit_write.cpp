#include "parser/parser_file.h"

#include <cstdio>

/// Walks the entries of a document with the application's own classes, reads them by type, changes one and writes the file.
int main(int argc, char** argv) {
    ParserFile file(argc > 1 ? argv[1] : "lamp.bkd");
    if (!file.read("", "", nullptr)) {
        return 1;
    }
    for (const ParserEntry* entry : file.get_root().get_entries()) {
        std::printf("%s: ", entry->get_name().get_data());
        if (entry->is_value_string(0)) {
            std::printf("\"%s\"\n", entry->get_string(0).get_data());
        } else if (entry->is_value_double(0)) {
            std::printf("%g\n", entry->get_double(0));
        } else if (entry->is_value_bool(0)) {
            std::printf("%s\n", entry->get_bool(0) ? "yes" : "no");
        } else {
            std::printf("a group of %u\n", entry->get_group(0)->get_entry_count());
        }
    }
    if (ParserEntry* power = file.get_root().get_entry("power")) {
        power->set_double(power->get_double(0) * 2.0, 0);
    }
    return file.write(ParserFile::MODE_TEXT, "", "") ? 0 : 1;
}
