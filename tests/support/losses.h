#pragma once

#include "document/document.h"

#include <functional>
#include <ostream>
#include <string_view>
#include <vector>

/// A tree that a form cannot carry completely.
struct Loss {
    const char* name;
    bk_parser::Form form;
    std::function<void(ParserGroup&)> make;
    std::string_view code;
};

inline std::ostream& operator<<(std::ostream& out, const Loss& loss) {
    return out << loss.name;
}

inline ParserEntry& add_named(ParserGroup& root, const char* name = "a") {
    return *root.add_entry(name, 0, 0);
}

inline void add_nul(ParserGroup& root) {
    add_named(root).add_string(CoreString("x\0y", 3));
}

inline const std::vector<Loss>& all_losses() {
    static const std::vector<Loss> all = {
        {"text_char", bk_parser::Form::text, [](ParserGroup& root) { add_named(root).add_char('x'); },
         "char-becomes-int"},
        {"text_backslash", bk_parser::Form::text,
         [](ParserGroup& root) {
             add_named(root).add_string("C:\\");
             root.get_entry(0)->add_int(1);
         },
         "string-ends-in-backslash"},
        {"text_backslash_in_arguments", bk_parser::Form::text,
         [](ParserGroup& root) {
             root.set_text("f(1) b 1", CoreVersion(1.2), nullptr);
             root.get_entry(0)->set_string("C:\\", 0);
         },
         "string-ends-in-backslash"},
        {"text_version_in_string", bk_parser::Form::text,
         [](ParserGroup& root) { add_named(root).add_string("#Brellwick_Serial_Version 1"); }, "directive"},
        {"text_include_in_string", bk_parser::Form::text,
         [](ParserGroup& root) { add_named(root).add_string("#include "); }, "directive"},
        {"text_include_as_entry", bk_parser::Form::text,
         [](ParserGroup& root) { add_named(root, "#include").add_string("x"); }, "directive"},
        {"text_version_as_entry", bk_parser::Form::text,
         [](ParserGroup& root) { add_named(root, "#Brellwick_Serial_Version").add_int(1); }, "directive"},
        {"text_group_name", bk_parser::Form::text,
         [](ParserGroup& root) { root.add_group(new ParserGroup("g")); }, "group-name-lost"},
        {"text_value_behind_group", bk_parser::Form::text,
         [](ParserGroup& root) {
             add_named(root).add_group(nullptr);
             root.get_entry(0)->add_int(1);
         },
         "value-behind-group"},
        {"text_group_in_arguments", bk_parser::Form::text,
         [](ParserGroup& root) {
             root.set_text("f(1) b 1", CoreVersion(1.2), nullptr);
             root.get_entry(0)->add_group(nullptr);
         },
         "group-in-arguments"},
        {"text_raw", bk_parser::Form::text,
         [](ParserGroup& root) {
             add_named(root).add_string("x");
             root.get_entry(0)->set_as_raw_text(true);
         },
         "raw-text"},
        {"text_template_and_array", bk_parser::Form::text,
         [](ParserGroup& root) {
             add_named(root).add_int(1);
             root.get_entry(0)->set_template("t");
             root.get_entry(0)->set_array(true, 1);
         },
         "template-with-array"},
        {"text_renamed_to_no_name", bk_parser::Form::text,
         [](ParserGroup& root) {
             add_named(root).add_int(1);
             root.get_entry(0)->rename("1x");
         },
         "name-changes"},
        {"text_renamed_to_a_keyword", bk_parser::Form::text,
         [](ParserGroup& root) {
             add_named(root).add_int(1);
             root.get_entry(0)->rename("#x");
         },
         "name-changes"},
        {"text_name_with_suffix", bk_parser::Form::text,
         [](ParserGroup& root) { add_named(root, "a[3]").add_int(1); }, "name-changes"},
        {"text_bad_template", bk_parser::Form::text,
         [](ParserGroup& root) {
             add_named(root).add_int(1);
             root.get_entry(0)->set_template("1 2");
         },
         "name-changes"},
        {"enciphered_char", bk_parser::Form::enciphered,
         [](ParserGroup& root) { add_named(root).add_char('x'); }, "char-becomes-int"},
        {"archive_char", bk_parser::Form::archive, [](ParserGroup& root) { add_named(root).add_char('x'); },
         "char-becomes-int"},
        {"archive_shift", bk_parser::Form::archive,
         [](ParserGroup& root) { add_named(root).add_string("\x0F"); }, "string-cut"},
        {"archive_backslash", bk_parser::Form::archive,
         [](ParserGroup& root) {
             add_named(root).add_string("\\");
             add_named(root, "b").add_int(1);
         },
         "string-ends-in-backslash"},
        {"binary_keyword", bk_parser::Form::binary,
         [](ParserGroup& root) { add_named(root, "#k").add_int(1); }, "kind-lost"},
        {"binary_call", bk_parser::Form::binary,
         [](ParserGroup& root) { root.set_text("f(1) b 1", CoreVersion(1.2), nullptr); }, "kind-lost"},
        {"binary_template", bk_parser::Form::binary,
         [](ParserGroup& root) { add_named(root).set_template("t"); }, "template-lost"},
        {"binary_array", bk_parser::Form::binary,
         [](ParserGroup& root) { add_named(root).set_array(true, 0); }, "array-lost"},
        {"binary_empty_name", bk_parser::Form::binary,
         [](ParserGroup& root) {
             add_named(root).add_int(1);
             root.get_entry(0)->rename("");
         },
         "name-changes"},
        {"binary_nul", bk_parser::Form::binary, add_nul, "string-cut"},
        {"binary_group_name", bk_parser::Form::binary,
         [](ParserGroup& root) { root.add_group(new ParserGroup("g")); }, "group-name-lost"},
    };
    return all;
}
