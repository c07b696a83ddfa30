#include "document/document.h"
#include "tests/support/json_trip.h"
#include "tests/support/nasty_tree.h"
#include "tests/support/random_tree.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

// The lossless shape gives every tree back unchanged.

using namespace bk_parser;

namespace {

/// Words of every type that an entry can have. Most have a spelling that no text gives.
class SpelledTree {
public:
    explicit SpelledTree(unsigned int seed) : random_(seed) {}

    void fill(ParserGroup& group, unsigned int levels = 2) {
        for (unsigned int entries = below(4); entries > 0; --entries) {
            ParserEntry* const entry = group.add_entry(CoreString(below(2) == 0 ? "a" : "b"), 0, 0);
            for (unsigned int values = below(6); values > 0; --values) {
                if (levels != 0 && below(6) == 0) {
                    auto* const nested = new ParserGroup(CoreString(std::string_view(word())));
                    fill(*nested, levels - 1);
                    entry->add_group(nested);
                } else {
                    entry->add_word(*OwnedWord(word()), ParserValue::Type(1 + below(9)));
                }
            }
        }
    }

private:
    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random_() % limit); }

    std::string_view word() {
        using namespace std::string_view_literals;
        static constexpr std::string_view words[] = {"yes"sv,
                                                     "no"sv,
                                                     "Yes"sv,
                                                     "true"sv,
                                                     "null"sv,
                                                     "1"sv,
                                                     "-0"sv,
                                                     "007"sv,
                                                     "+5"sv,
                                                     "1.50"sv,
                                                     "1."sv,
                                                     ".5"sv,
                                                     "1e5"sv,
                                                     "1E5"sv,
                                                     "-1e-5"sv,
                                                     "1e+05"sv,
                                                     "0x1F"sv,
                                                     "12ab"sv,
                                                     "1e999"sv,
                                                     "99999999999"sv,
                                                     ""sv,
                                                     "\"\""sv,
                                                     "\"a\""sv,
                                                     "inf"sv,
                                                     "a b"sv,
                                                     "\xFF"sv,
                                                     "\\"sv,
                                                     "$int"sv,
                                                     "$:"sv,
                                                     "a\0b"sv,
                                                     "\n\x7F\x01"sv,
                                                     "0x0102030000"sv,
                                                     "0x01FF00010000"sv,
                                                     "\"caf\xE9\\x\""sv,
                                                     "\xED\xA0\x80"sv};
        return words[below(std::size(words))];
    }

    std::mt19937 random_;
};

void expect_file_back(const std::filesystem::path& path) {
    SCOPED_TRACE(path.string());
    LoadOptions options;
    options.key = "lantern";
    const LoadResult loaded = load(path, options);
    json_trip::expect_back(loaded.document.root());
}

} // namespace

TEST(json_round_trip, every_stored_file_of_the_tests_comes_back) {
    unsigned int count = 0;
    for (const char* const folder : {"/tests/data", "/fuzz/corpus", "/examples"}) {
        for (const auto& file :
             std::filesystem::recursive_directory_iterator(std::string(BK_PARSER_SOURCE_DIR) + folder)) {
            if (file.is_regular_file()) {
                expect_file_back(file.path());
                ++count;
            }
        }
    }
    EXPECT_GT(count, 100u);
}

TEST(json_round_trip, random_trees_come_back) {
    for (unsigned int seed = 0; seed < 300 && !testing::Test::HasFailure(); ++seed) {
        ParserGroup group{CoreString()};
        RandomTree(seed).fill(group);
        json_trip::expect_back(group);
    }
}

TEST(json_round_trip, trees_that_no_text_gives_come_back) {
    for (unsigned int seed = 0; seed < 600 && !testing::Test::HasFailure(); ++seed) {
        ParserGroup group{CoreString()};
        NastyTree(seed).fill(group);
        json_trip::expect_back(group);
    }
}

TEST(json_round_trip, spellings_of_every_type_come_back) {
    for (unsigned int seed = 0; seed < 600 && !testing::Test::HasFailure(); ++seed) {
        ParserGroup group{CoreString()};
        SpelledTree(seed).fill(group);
        json_trip::expect_back(group);
    }
}

TEST(json_round_trip, kinds_that_have_no_name_come_back) {
    ParserGroup group{CoreString()};
    group.add_entry(*new ParserEntry(CoreString("a"), ParserEntry::Type(7), 0, 0));
    group.add_entry(*new ParserEntry(CoreString("b"), ParserEntry::Type(0xFFFFFFFF), 0, 0));
    json_trip::expect_back(group);
}

TEST(json_round_trip, every_byte_comes_back_in_names_strings_and_binary_data) {
    ParserGroup group{CoreString()};
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
        ParserEntry* const entry =
            new ParserEntry(CoreString(std::string_view(&bytes.back(), 1)), ParserEntry::TYPE_ENTRY, 0, 0);
        entry->add_string(CoreString(std::string_view(bytes)));
        entry->add_binary_data(bytes.data(), static_cast<unsigned int>(bytes.size()));
        entry->set_template(CoreString(std::string_view(&bytes.back(), 1)));
        group.add_entry(*entry);
    }
    json_trip::expect_back(group);
}

TEST(json_round_trip, strings_that_are_longer_than_a_piece_come_back) {
    ParserGroup group{CoreString()};
    std::string text;
    for (int i = 0; i < 60000; ++i) {
        text += "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    }
    ParserEntry* const entry = group.add_entry(CoreString("long"), 0, 0);
    entry->add_string(CoreString(std::string_view(text)));
    entry->add_string(CoreString(std::string_view(text + '\xFF')));
    entry->add_string(CoreString(std::string_view(std::string(200000, '\x80'))));
    entry->add_binary_data(text.data(), static_cast<unsigned int>(text.size()));
    json_trip::expect_back(group);
}

TEST(json_round_trip, a_million_nested_groups_come_back) {
    constexpr unsigned int depth = 1000000;
    ParserGroup root(CoreString("root"));
    ParserGroup* group = &root;
    for (unsigned int i = 0; i < depth; ++i) {
        group = group->add_group(CoreString("g"));
    }
    for (const JsonShape shape : {JsonShape::lossless, JsonShape::lines}) {
        const std::string json = to_json(root, {shape, 0});
        const LoadResult result = from_json(json);
        ASSERT_TRUE(result.ok());
        EXPECT_TRUE(to_json(result.document, {shape, 0}) == json);
        EXPECT_GT(json.size(), std::size_t{depth} * 6);
    }
    EXPECT_GT(to_json(root, {JsonShape::plain, 0}).size(), std::size_t{depth} * 6);
}

TEST(json_round_trip, places_of_entries_are_no_part_of_it) {
    const LoadResult loaded = parse("\n\n   a 1\n");
    const LoadResult back = from_json(to_json(loaded.document));
    EXPECT_EQ(back.document.root().get_entry(0u)->get_line(), 0u);
}

TEST(json_round_trip, groups_know_the_entry_that_holds_them) {
    const LoadResult back = from_json(R"({"a": [1, {"b": 2}, {"$group": "n", "$entries": {}}]})");
    const ParserEntry* const entry = back.document.root().get_entry(0u);
    EXPECT_EQ(entry->get_group(1)->get_source_entry(), entry);
    EXPECT_EQ(entry->get_group(2)->get_source_entry(), entry);
}
