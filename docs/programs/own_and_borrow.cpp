#include "document/document.h"

#include <iostream>

int main() {
    bk_parser::LoadResult lamp = bk_parser::load("lamp.bkd");
    ParserGroup& root = lamp.document.root(); // borrowed: the document owns it

    // A reference to a string stays good while other values of the tree change.
    const CoreString& name = bk_parser::find(root, "name")->get_string(0);
    bk_parser::set(root, "power", 100.0);
    std::cout << name << "\n";

    // take gives an entry to you; insert gives it to a group.
    std::unique_ptr<ParserEntry> shade = bk_parser::take(root, 3);
    ParserGroup spare("spare");
    ParserEntry& there = bk_parser::insert(spare, 0, std::move(shade));
    std::cout << there.get_name() << " moved, " << root.get_entry_count() << " entries stay\n";

    // The library's own classes: add_entry adopts a heap object, and then owns it.
    spare.add_entry(*new ParserEntry("bulb", ParserEntry::TYPE_ENTRY, 0, 0));
    std::cout << spare.get_entry_count() << " in spare\n";
} // the groups delete what they own
