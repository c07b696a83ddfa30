#pragma once

#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include <memory>
#include <random>
#include <string_view>

/// Random trees, with much that no text can give: names that repeat, need quotes or are empty, keys that repeat or are unreadable,
/// templates, keywords, function calls, raw text, several groups in one entry, and entries without values.
class NastyTree {
public:
    explicit NastyTree(unsigned int seed) : random_(seed) {}

    void fill(ParserGroup& group, unsigned int levels = 3) {
        for (unsigned int entries = below(7); entries > 0; --entries) {
            group.add_entry(*make_entry(levels).release());
        }
    }
    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random_() % limit); }

    std::string_view name() {
        using namespace std::string_view_literals;
        static constexpr std::string_view names[] = {
            "a"sv,    "b"sv,        "a"sv,        "light"sv, "a.b"sv, ""sv,       "odd name"sv, "a[0]"sv,
            "#key"sv, "#"sv,        "yes"sv,      "**"sv,    "x/y"sv, "a\"b\\"sv, "a\0b"sv,     "\n\t\x01"sv,
            "é"sv,    "\xFF\xC3"sv, "map<key>"sv, "@1"sv,    "1a"sv,  "a."sv};
        return names[below(std::size(names))];
    }

private:
    std::unique_ptr<ParserEntry> make_entry(unsigned int levels) {
        auto entry = std::make_unique<ParserEntry>(CoreString(name()), ParserEntry::Type(below(4)), 0, 0);
        if (below(3) == 0) {
            entry->set_template(CoreString(name()));
        }
        if (below(4) == 0) {
            entry->set_array(true, below(4));
        }
        if (below(2) == 0) {
            entry->add_string(CoreString(key()));
        }
        for (unsigned int values = below(3); values > 0; --values) {
            add_value(*entry, levels);
        }
        return entry;
    }

    std::string_view key() {
        using namespace std::string_view_literals;
        static constexpr std::string_view keys[] = {
            "010"sv,  "020"sv,
            "a"sv,    ""sv,
            "\n"sv,   "a\"]"sv,
            "\xFF"sv, "é"sv,
            "\0"sv,   "0123456789012345678901234567890123456789012345678901234567890123456789"sv};
        return keys[below(std::size(keys))];
    }

    void add_value(ParserEntry& entry, unsigned int levels) {
        switch (below(levels == 0 ? 4 : 8)) {
        case 0:
            return entry.add_int(static_cast<int>(below(4)) - 1);
        case 1:
            return entry.add_double(static_cast<double>(below(6)) / 2.0);
        case 2:
            return entry.add_bool(below(2) == 0);
        case 3:
            return entry.add_char(static_cast<char>(below(3)));
        default:
            return fill(*entry.add_group(nullptr), levels - 1);
        }
    }

    std::mt19937 random_;
};
