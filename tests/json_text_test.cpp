#include "document/document.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

// The text of each shape.

using namespace bk_parser;

namespace {

std::string json_of(std::string_view text, JsonShape shape = JsonShape::lossless, unsigned int indent = 2) {
    return to_json(parse(text).document, {shape, indent});
}

std::string plain_of(std::string_view text) {
    return json_of(text, JsonShape::plain, 0);
}

std::string line_of(std::string_view text) {
    return json_of(text, JsonShape::lossless, 0);
}

} // namespace

TEST(json_text, names_are_keys_while_they_differ) {
    EXPECT_EQ(json_of("title \"Harbour\"\nlight { power 60.0 on yes }\n"), R"({
  "title": "Harbour",
  "light": {
    "power": 60.0,
    "on": true
  }
}
)");
}

TEST(json_text, names_that_repeat_make_an_array_of_objects) {
    EXPECT_EQ(json_of("light \"a\" { power 1 }\nlight \"b\" { power 2 }\n"), R"([
  {"light": ["a", {
    "power": 1
  }]},
  {"light": ["b", {
    "power": 2
  }]}
]
)");
}

TEST(json_text, a_group_with_names_that_repeat_stands_in_an_array_of_values) {
    EXPECT_EQ(line_of("g { a 1 a 2 }"), R"({"g":[[{"a":1},{"a":2}]]})");
    EXPECT_EQ(line_of("g 1 { a 1 a 2 }"), R"({"g":[1,[{"a":1},{"a":2}]]})");
}

TEST(json_text, names_that_repeat_far_apart_are_noticed) {
    std::string text;
    for (int i = 0; i < 100; ++i) {
        text += "a" + std::to_string(i) + " 1\n";
    }
    EXPECT_TRUE(json_of(text).starts_with("{"));
    EXPECT_TRUE(json_of(text + "a50 2\n").starts_with("["));
}

TEST(json_text, an_entry_without_values_has_an_empty_array_and_an_empty_group_is_an_object) {
    EXPECT_EQ(line_of("a <empty> b { }"), R"({"a":[],"b":{}})");
    EXPECT_EQ(json_of("a <empty>\nb { }\n"), "{\n  \"a\": [],\n  \"b\": {}\n}\n");
    EXPECT_EQ(json_of(""), "{}\n");
    EXPECT_EQ(json_of("", JsonShape::lines), "");
}

TEST(json_text, numbers_keep_their_spelling) {
    EXPECT_EQ(line_of("a 1.50 -0 1e5 60.0 -12"), R"({"a":[1.50,-0,1e5,60.0,-12]})");
}

TEST(json_text, spellings_that_no_number_of_json_has_stand_as_strings) {
    EXPECT_EQ(line_of("a 007 1. 12ab"), R"({"a":[{"$int":"007"},{"$double":"1."},{"$int":"12ab"}]})");
}

TEST(json_text, templates_array_counts_and_calls_stand_beside_the_values) {
    EXPECT_EQ(line_of("lamp<spot> 1 points[2] 3 4 open[] 5 move(6, \"x\") reset()"),
              R"({"lamp":{"$template":"spot","$values":1},"points":{"$array":2,"$values":[3,4]},)"
              R"("open":{"$array":0,"$values":5},"move":{"$kind":"call","$values":[6,"x"]},)"
              R"("reset":{"$kind":"call","$values":[]}})");
}

TEST(json_text, a_keyword_is_known_by_its_name) {
    EXPECT_EQ(line_of("#unit \"metre\""), R"({"#unit":"metre"})");
    ParserGroup group{CoreString()};
    group.add_entry(*new ParserEntry(CoreString("#unit"), ParserEntry::TYPE_ENTRY, 0, 0));
    group.add_entry(*new ParserEntry(CoreString("unit"), ParserEntry::TYPE_RAW_TEXT, 0, 0));
    EXPECT_EQ(to_json(group, {JsonShape::lossless, 0}),
              R"({"#unit":{"$kind":"entry","$values":[]},"unit":{"$kind":"raw","$values":[]}})");
}

TEST(json_text, names_with_a_dollar_and_bytes_that_are_no_utf_8_are_escaped) {
    ParserGroup group{CoreString()};
    group.add_entry(*new ParserEntry(CoreString("$int"), ParserEntry::TYPE_ENTRY, 0, 0));
    group.add_entry(*new ParserEntry(CoreString("caf\xE9\\"), ParserEntry::TYPE_ENTRY, 0, 0));
    group.add_entry(*new ParserEntry(CoreString("caf\xC3\xA9\\"), ParserEntry::TYPE_ENTRY, 0, 0))
        ->add_string(CoreString("\xFF\\\n"));
    EXPECT_EQ(to_json(group, {JsonShape::lossless, 0}), R"({"$:$int":[],"$:caf\\xE9\\\\":[],"caf)"
                                                        "\xC3\xA9"
                                                        R"(\\":{"$string":"\\xFF\\\\\n"}})");
}

TEST(json_text, binary_data_are_base64) {
    EXPECT_EQ(line_of("a 0x00FF7F80FE010000 0x01020306000000 0x0101000000"),
              R"({"a":[{"$binary":"AP9/gA=="},{"$binary":"AQID"},{"$binary":"AQ=="}]})");
}

TEST(json_text, a_group_with_a_name_says_it) {
    ParserGroup group{CoreString()};
    ParserGroup* const named = new ParserGroup(CoreString("inner"));
    named->add_entry(CoreString("a"), 0, 0)->add_int(1);
    group.add_group(named);
    EXPECT_EQ(to_json(group, {JsonShape::lossless, 0}), R"({"inner":{"$group":"inner","$entries":{"a":1}}})");
}

TEST(json_text, characters_are_numbers_with_a_tag) {
    ParserGroup group{CoreString()};
    group.add_entry(CoreString("a"), 0, 0)->add_char('A');
    group.add_entry(CoreString("b"), 0, 0)->add_char('\xE9');
    EXPECT_EQ(to_json(group, {JsonShape::lossless, 0}), R"({"a":{"$char":65},"b":{"$char":-23}})");
    EXPECT_EQ(to_json(group, {JsonShape::plain, 0}), R"({"a":65,"b":-23})");
}

TEST(json_text, every_entry_of_the_document_has_a_line) {
    EXPECT_EQ(json_of("a 1\nb { c 2 d { e 3 } }\na 4\n", JsonShape::lines),
              "{\"a\":1}\n{\"b\":{\"c\":2,\"d\":{\"e\":3}}}\n{\"a\":4}\n");
}

TEST(json_text, an_empty_slot_is_left_out) {
    ParserGroup group{CoreString()};
    group.add_entry(CoreString("a"), 0, 0);
    group.add_entry(CoreString("b"), 0, 0);
    ParserEntry* const detached = group.get_entry(0u);
    group.detach_entry(0);
    for (const JsonShape shape : {JsonShape::lossless, JsonShape::lines}) {
        EXPECT_EQ(to_json(group, {shape, 0}), shape == JsonShape::lines ? "{\"b\":[]}\n" : "{\"b\":[]}");
    }
    EXPECT_EQ(to_json(group, {JsonShape::plain, 0}), R"({"b":null})");
    delete detached;
    group.remove_entry(0u);
}

TEST(json_text, the_plain_shape_gathers_names_that_repeat) {
    EXPECT_EQ(plain_of("light \"a\" { power 1 }\ntitle \"x\"\nlight \"b\" { power 2 }\n"),
              R"({"light":[["a",{"power":1}],["b",{"power":2}]],"title":"x"})");
    EXPECT_EQ(plain_of("a { b 1 b 2 }"), R"({"a":{"b":[1,2]}})");
}

TEST(json_text, the_plain_shape_has_what_is_read_not_what_is_spelled) {
    EXPECT_EQ(plain_of("a 1.50 007 99999999999 1e999 1E5"),
              R"({"a":[1.5,7,2147483647,1.7976931348623157e+308,1]})");
    EXPECT_EQ(plain_of("a 0x01020306000000 c <empty> d yes"), R"({"a":"AQID","c":null,"d":true})");
    EXPECT_EQ(plain_of("b<t> 1 c[3] 1 2 d(1)"), R"({"b":1,"c":[1,2],"d":1})");
    EXPECT_EQ(plain_of("a \"caf\xE9\""), "{\"a\":\"caf\xEF\xBF\xBD\"}");
}

TEST(json_text, the_plain_shape_is_laid_out) {
    EXPECT_EQ(json_of("a { b 1 }\na { b 2 }\nc { }\n", JsonShape::plain), R"({
  "a": [{
    "b": 1
  }, {
    "b": 2
  }],
  "c": {}
}
)");
}

TEST(json_text, a_sink_gets_pieces_of_bounded_size_and_may_end_the_writing) {
    std::string text;
    for (int i = 0; i < 50000; ++i) {
        text += "a { b 1 c \"some text\" }\n";
    }
    const LoadResult loaded = parse(text);
    for (const JsonShape shape : {JsonShape::lossless, JsonShape::lines, JsonShape::plain}) {
        const std::string whole = to_json(loaded.document, {shape, 2});
        std::string collected;
        std::size_t largest = 0;
        EXPECT_TRUE(write_json(loaded.document.root(),
                               [&](std::string_view piece) {
                                   collected += piece;
                                   largest = std::max(largest, piece.size());
                                   return true;
                               },
                               {shape, 2}));
        EXPECT_TRUE(collected == whole);
        EXPECT_LT(largest, std::size_t{70000});
        int calls = 0;
        EXPECT_FALSE(
            write_json(loaded.document.root(), [&](std::string_view) { return ++calls < 3; }, {shape, 2}));
        EXPECT_EQ(calls, 3);
    }
}

TEST(json_text, what_a_sink_throws_passes_through) {
    const LoadResult loaded = parse("a 1\n");
    EXPECT_THROW(write_json(loaded.document.root(), [](std::string_view) -> bool { throw 7; }), int);
}

TEST(json_text, a_string_is_escaped_by_one_rule) {
    std::string out = "x";
    append_json_string(out, std::string_view("\"\\\n\r\t\x01\x7F\0\xC3\xA9\xFF/", 12));
    EXPECT_EQ(out, R"(x"\"\\\n\r\t\u0001\u007F\u0000)"
                   "\xC3\xA9\xEF\xBF\xBD/\"");
}

TEST(json_text, deep_groups_are_indented_as_far_as_a_hundred_levels) {
    constexpr std::size_t depth = 20000;
    std::string text;
    for (std::size_t i = 0; i < depth; ++i) {
        text += "g { ";
    }
    const LoadResult deep = parse(text + std::string(depth, '}'), [] {
        LoadOptions options;
        options.limits = ParserLimits();
        return options;
    }());
    EXPECT_LT(to_json(deep.document).size(), depth * 2 * 220);
    EXPECT_LT(to_json(deep.document, {JsonShape::plain, 2}).size(), depth * 2 * 220);
}
