#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

/// Files that were composed byte by byte, and that no test writes. Their names say what must happen.
namespace golden {

inline std::string path(std::string_view name) {
    return std::string(BK_PARSER_SOURCE_DIR "/tests/data/") + std::string(name);
}

inline std::string bytes(std::string_view name) {
    std::ifstream stream(path(name), std::ios::binary);
    EXPECT_TRUE(stream) << path(name);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

} // namespace golden
