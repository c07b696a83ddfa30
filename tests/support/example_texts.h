#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

/// A document with every construct of the syntax.
inline constexpr std::string_view every_syntax =
    "a 1 2.5 -3e4 yes no \"s t\" 0x01FF00010000\n#k = \"x\\ty\\\"z\\\\\" { b <empty>\n c[] 1, 2\n d[3] 4\n "
    "e<t> 5 "
    "f<t[2]> 6 g.h 7 }\ni(1, \"j\", yes) k() l( { m 1 } )\nn { } o \"\" p {q{r{s 1}}}\n";

/// The documents of the examples in a folder ("." for all) and below it, in a fixed order.
inline std::vector<std::string> example_texts(std::string_view folder) {
    std::vector<std::filesystem::path> paths;
    const std::filesystem::path root = std::filesystem::path(BK_PARSER_SOURCE_DIR "/examples") / folder;
    for (const auto& item : std::filesystem::recursive_directory_iterator(root)) {
        if (item.path().extension() == ".bkd") {
            paths.push_back(item.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    std::vector<std::string> texts;
    for (const std::filesystem::path& path : paths) {
        std::ifstream stream(path, std::ios::binary);
        texts.emplace_back(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    }
    return texts;
}
