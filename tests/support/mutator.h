#pragma once

#include "tests/support/bytes.h"

#include <algorithm>
#include <random>
#include <string>
#include <string_view>

/// Changes documents at random in ways that often break readers. Equal seeds give equal changes.
class Mutator {
public:
    explicit Mutator(unsigned int seed) : random_(seed) {}

    /// The changed document, which is at most a few bytes longer.
    std::string mutated(std::string_view document) {
        std::string bytes(document);
        for (auto changes = 1 + below(4); changes > 0; --changes) {
            change(bytes);
        }
        return bytes;
    }

    std::size_t below(std::size_t limit) { return limit == 0 ? 0 : random_() % limit; }

private:
    static constexpr std::string_view syntax = "{}()<>[],:=\"\\/#.0x19ay \n\r\t-+e";

    void change(std::string& bytes) {
        const std::size_t at = below(bytes.size());
        switch (below(9)) {
        case 0: // one bit
            overwrite(bytes, at, std::string(1, static_cast<char>(byte_at(bytes, at) ^ (1u << below(8)))));
            break;
        case 1: // one byte
            overwrite(bytes, at, std::string(1, static_cast<char>(random_())));
            break;
        case 2: // one byte, set to a value with a meaning in most forms
            overwrite(bytes, at, std::string(1, static_cast<char>(below(9))));
            break;
        case 3:
            overwrite(bytes, at, std::string(1, syntax[below(syntax.size())]));
            break;
        case 4: // a size
            overwrite(bytes, at, little(number(bytes.size()), below(2) == 0 ? 8 : 4));
            break;
        case 5:
            bytes.insert(at, 1, syntax[below(syntax.size())]);
            break;
        case 6:
            bytes.erase(at, 1 + below(8));
            break;
        case 7: // repeats a piece
            bytes.insert(at, bytes.substr(below(bytes.size()), 1 + below(16)));
            break;
        default:
            bytes.resize(bytes.size() - below(bytes.size() / 4));
        }
    }

    static unsigned int byte_at(const std::string& bytes, std::size_t at) {
        return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0;
    }
    static void overwrite(std::string& bytes, std::size_t at, std::string_view with) {
        for (std::size_t i = 0; i < with.size() && at + i < bytes.size(); ++i) {
            bytes[at + i] = with[i];
        }
    }

    /// A number near zero, near the size of the document, near the limit of a width, or any other one.
    core_uint64 number(std::size_t size) {
        const core_uint64 near = below(5);
        switch (below(6)) {
        case 0:
            return near;
        case 1:
            return size + 2 - near;
        case 2:
            return (core_uint64{1} << 31) + 2 - near;
        case 3:
            return (core_uint64{1} << 32) + 2 - near;
        case 4:
            return 2 - near;
        default:
            return core_uint64{random_()} << below(33);
        }
    }

    std::mt19937 random_;
};
