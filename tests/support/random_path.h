#pragma once

#include "document/path.h"

#include <random>
#include <string>
#include <string_view>

/// Well-formed paths with names that a NastyTree has.
class RandomPath {
public:
    explicit RandomPath(unsigned int seed) : random_(seed) {}

    std::string make() {
        std::string path = step();
        for (unsigned int steps = below(4); steps > 0; --steps) {
            path += '/' + step();
        }
        return path;
    }

private:
    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random_() % limit); }

    std::string name() {
        static constexpr std::string_view names[] = {"a",        "b",    "light", "a.b", "",
                                                     "odd name", "#key", "yes",   "é"};
        return bk_parser::path_name(names[below(std::size(names))]);
    }

    std::string step() {
        if (below(4) == 0) {
            return "**";
        }
        std::string text = below(3) != 0 ? "*" : name();
        if (below(8) == 0) {
            text += below(3) == 0 ? "<>" : '<' + name() + '>';
        }
        for (unsigned int selectors = below(3); selectors > 0; --selectors) {
            text += '[' + selector() + ']';
        }
        return below(8) == 0 ? text + '@' + std::to_string(below(3)) : text;
    }

    std::string selector() {
        static constexpr std::string_view keys[] = {"\"010\"", "\"a\"", "\"\""};
        static constexpr std::string_view operators[] = {"=", "!=", "<", "<=", ">", ">="};
        static constexpr std::string_view literals[] = {"0", "1.5", "-1", "\"010\"", "\"a\""};
        switch (below(6)) {
        case 0:
        case 1:
            return std::to_string(below(3));
        case 2:
            return std::string(keys[below(3)]);
        case 3:
            return operand() + (below(2) == 0 ? "=yes" : "!=no");
        default:
            return operand() + std::string(operators[below(6)]) + std::string(literals[below(5)]);
        }
    }

    std::string operand() {
        const std::string value = '@' + std::to_string(below(3));
        switch (below(4)) {
        case 0:
            return value;
        case 1:
            return name() + '/' + name();
        case 2:
            return name() + value;
        default:
            return name();
        }
    }

    std::mt19937 random_;
};
