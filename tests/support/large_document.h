#pragma once

#include "parser/parser_group.h"

#include <memory>
#include <string>

// A document that has pages of its own, and its content.

/// A document of more bytes has pages of its own.
inline std::string text_with(unsigned int item_count) {
    std::string text = "#version 1 first \"a string longer than eleven\" ";
    for (unsigned int i = 0; i < item_count; ++i) {
        text += "item { name \"a string of item " + std::to_string(i) +
                "\" place 0.5 1.25 -3 inner { deep yes word \"short\" } #key 1 call(1, \"two\") } ";
    }
    text += "bytes 0x01FF00010000 row";
    for (unsigned int i = 0; i < 4000; ++i) {
        text += " " + std::to_string(i);
    }
    text += " many<template_of_a_long_name> { ";
    for (unsigned int i = 0; i < item_count + 300; ++i) {
        text += "e " + std::to_string(i) + " ";
    }
    return text + "} a_name_that_is_much_longer_than_eleven 1 last 2" + std::string(33000, ' ');
}

inline const std::string& large_text() {
    static const std::string all = text_with(1500);
    return all;
}

inline std::unique_ptr<ParserGroup> parsed(const std::string& text = large_text()) {
    auto root = std::make_unique<ParserGroup>(CoreString("root"));
    root->set_text(CoreString(text), CoreVersion(1.2), nullptr);
    return root;
}

inline ParserEntry* item(const ParserGroup& root, unsigned int i) {
    return root.get_entries(CoreString("item"), false)[i];
}

inline ParserGroup& inside(const ParserGroup& root, unsigned int i) {
    return *item(root, i)->get_group(0);
}

inline unsigned int position_of(const ParserGroup& root, const ParserEntry* entry) {
    unsigned int position = 0;
    while (root.get_entries()[position] != entry) {
        ++position;
    }
    return position;
}

inline unsigned int ordinal_of(const ParserGroup& root, const ParserEntry* entry) {
    unsigned int ordinal = 0;
    while (root.get_entry(ordinal) != entry) {
        ++ordinal;
    }
    return ordinal;
}

/// Too large for slabs, so that the sanitizer reports a leak.
inline CoreString outside() {
    return CoreString(std::string(20000, 'x'));
}

inline std::string text_of(const ParserGroup& group) {
    CoreString text;
    group.get_text(text, false, false, 0);
    return std::string(text.get_view());
}
