#include "document/document.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

// The library must write and read the examples of docs/json.md.

using namespace bk_parser;

namespace {

struct Block {
    std::string kind;
    std::string text;
};

std::vector<Block> blocks_of_page() {
    std::ifstream stream(std::string(BK_PARSER_SOURCE_DIR) + "/docs/json.md", std::ios::binary);
    std::vector<Block> blocks;
    bool is_open = false;
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with("```")) {
            if (!is_open) {
                blocks.push_back({line.substr(3), {}});
            }
            is_open = !is_open;
        } else if (is_open) {
            blocks.back().text += line + "\n";
        }
    }
    return blocks;
}

/// Replaces "‹E9›" by the byte 0xE9.
std::string with_byte(std::string text) {
    const std::string shown = "\xE2\x80\xB9"
                              "E9\xE2\x80\xBA";
    const std::size_t at = text.find(shown);
    return at == std::string::npos ? text : text.replace(at, shown.size(), "\xE9");
}

} // namespace

TEST(json_page, each_example_is_what_the_text_before_it_gives) {
    const std::vector<Block> blocks = blocks_of_page();
    unsigned int count = 0;
    for (std::size_t i = 1; i < blocks.size(); ++i) {
        const Block& json = blocks[i];
        if (blocks[i - 1].kind != "bkd") {
            continue;
        }
        const std::string text = "#Brellwick_Serial_Version 1.2\n" + with_byte(blocks[i - 1].text);
        const LoadResult loaded = parse(text);
        const JsonShape shape = json.kind == "ndjson"       ? JsonShape::lines
                                : json.kind == "json-plain" ? JsonShape::plain
                                                            : JsonShape::lossless;
        EXPECT_EQ(to_json(loaded.document, {shape}), json.text) << text;
        if (shape != JsonShape::plain) {
            const LoadResult back = from_json(json.text);
            EXPECT_TRUE(back.ok()) << json.text;
            EXPECT_EQ(to_json(back.document, {shape}), json.text);
        }
        ++count;
    }
    EXPECT_EQ(count, 8u);
}
