#include "document/strings.h"
#include "module/lamp_entry.h"

#include <iostream>

/// Another module derives the class of these entries. The group owns them and calls their own destructors when it dies.
int main() {
    {
        ParserGroup root("root");
        lamp_module::add_lamp(root, "reading_lamp", 60.0);
        root.add_entry("note", 0, 0)->add_string("a plain entry");
        for (const ParserEntry* entry : root.get_entries()) {
            std::cout << entry->get_name() << ": " << lamp_module::yearly_cost(*entry) << "\n";
        }
        std::cout << lamp_module::living() << " alive\n";
    }
    std::cout << lamp_module::living() << " alive\n";
}
