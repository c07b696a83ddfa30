#include "parser/parser_file.h"

#include <cstdio>

int main(int argc, char** argv) {
    ParserFile file(argc > 1 ? argv[1] : "lamp.bkd");
    if (!file.read("", "", nullptr)) {
        return 1;
    }
    for (const ParserEntry* entry : file.get_root().get_entries()) {
        std::printf("%s: %u value(s)\n", entry->get_name().get_data(), entry->get_value_count());
    }
    if (ParserEntry* power = file.get_root().get_entry("power")) {
        power->set_double(power->get_double(0) * 2.0, 0);
    }
    return file.write(ParserFile::MODE_TEXT, "", "") ? 0 : 1;
}
