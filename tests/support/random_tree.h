#pragma once

#include "parser/parser_entry.h"
#include "parser/parser_group.h"
#include "tests/support/plain_text.h"

#include <cmath>
#include <random>
#include <string>
#include <string_view>

/// Random trees with values of every type that can be stored. Equal seeds give equal trees.
class RandomTree {
public:
    /// Leaves out what the text syntax cannot carry: values after a group, and a backslash at the end of a string.
    enum Form { any_form, text_form };

    explicit RandomTree(unsigned int seed, Form form = any_form) : random_(seed), form_(form) {}

    void fill(ParserGroup& group, unsigned int levels = 3) {
        for (auto entries = below(5); entries > 0; --entries) {
            ParserEntry* const entry = group.add_entry(core(name()), 0, 0);
            for (auto values = below(4); values > 0; --values) {
                add_value(*entry, levels);
                if (form_ == text_form && entry->is_value_group(entry->get_value_count() - 1)) {
                    break;
                }
            }
        }
    }

    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random_() % limit); }

    /// A string with bytes of every kind except NUL, which ends a string in binary documents.
    std::string text() {
        std::string result;
        for (auto length = below(20); length > 0; --length) {
            result += static_cast<char>(1 + below(255));
        }
        if (form_ == text_form && result.ends_with('\\')) {
            result.back() = '/';
        }
        return result;
    }

private:
    std::string name() {
        static constexpr std::string_view letters = "abcXYZ_019";
        std::string result(1, letters[below(7)]);
        for (auto length = below(14); length > 0; --length) {
            result += letters[below(10)];
        }
        return result;
    }

    void add_value(ParserEntry& entry, unsigned int levels) {
        switch (below(levels == 0 ? 6 : 7)) {
        case 0:
            return entry.add_bool(below(2) != 0);
        case 1:
            return entry.add_char(static_cast<char>(random_()));
        case 2:
            return entry.add_int(static_cast<int>(random_()));
        case 3:
            return entry.add_double(std::ldexp(static_cast<double>(static_cast<int>(random_())),
                                               static_cast<int>(below(200)) - 100));
        case 4:
            return entry.add_string(core(text()));
        case 5: {
            std::string bytes = text() + std::string(below(3), '\0');
            return entry.add_binary_data(bytes.data(), static_cast<unsigned int>(bytes.size()));
        }
        default:
            return fill(*entry.add_group(nullptr), levels - 1);
        }
    }

    std::mt19937 random_;
    Form form_;
};
