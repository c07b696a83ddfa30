#include "parser/parser_file.h"

// Holds one object of each kind while a debugger looks at it.

namespace {

void look(const ParserFile& file, const ParserGroup& root, const ParserEntry& made, const ParserEntry& shared,
          const CoreString& text) {
    const volatile bool is_there =
        &file != nullptr && &root != nullptr && &made != nullptr && &shared != nullptr && &text != nullptr;
    static_cast<void>(is_there);
}

} // namespace

int main() {
    const CoreString text("a text that stands in a block of its own");
    ParserFile file("lamp.bkd");
    file.set_search_paths({"library", "shots"});
    ParserGroup& root = file.get_root();
    root.set_text("name \"reading \\\"lamp\\\"\" lit yes power 40.50 data 0x01FF00010000 #version 7 "
                  "shade { material \"linen\" colour 0.93 0.9 0.82 inner { deep { deeper { deepest 1 } } } }",
                  CoreVersion(1.2), nullptr);
    ParserEntry made("made", ParserEntry::TYPE_ENTRY, 1, 1);
    made.add_int(-5);
    made.add_double(0.25);
    made.add_bool(false);
    made.add_char('A');
    made.add_string("short");
    made.add_string(text);
    ParserEntry shared("shared", ParserEntry::TYPE_ENTRY, 1, 1);
    ParserEntry other("other", ParserEntry::TYPE_ENTRY, 1, 1);
    other.add_int(1);
    other.add_string("two");
    other.get_string(1); // from now on, this string keeps its address
    shared = other;
    look(file, root, made, shared, text);
}
