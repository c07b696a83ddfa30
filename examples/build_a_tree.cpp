#include "document/strings.h"
#include "parser/parser_group.h"

#include <iostream>

/// Builds a tree with the application's own classes, and prints it.
int main() {
    ParserGroup root("root");
    ParserEntry* power = root.add_entry("power", 0, 0);
    power->add_double(60.0);
    ParserEntry* colour = root.add_entry("colour", 0, 0);
    colour->add_vec3d(GMathVec3<double>(0.93, 0.9, 0.82));
    ParserGroup* shade = root.add_group("shade");
    shade->add_entry("material", 0, 0)->add_string("linen");
    shade->add_entry("clean", 0, 0)->add_bool(true);
    CoreString text;
    root.get_text(text, false, true, 1);
    std::cout << text << "\n";
}
