#include "document/access.h"
#include "parser/parser_file.h"
#include "tests/support/described.h"
#include "tests/support/nasty_tree.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <vector>

namespace {

using bk_parser::get;
using bk_parser::set;

class access_set : public testing::Test {
protected:
    void fill(std::string_view text) { root_.set_text(core(text), default_parser_serial_version, nullptr); }
    std::string text() const { return described(root_); }

    ParserGroup root_{"root"};
    RecordingLog log_;
};

} // namespace

TEST_F(access_set, a_number_keeps_the_type_that_the_value_has) {
    fill("real 60.0 whole 60 ");
    EXPECT_TRUE(set(root_, "real", 66));
    EXPECT_TRUE(set(root_, "whole", 66.0));
    EXPECT_EQ(text(), " real 66.0 whole 66");
    EXPECT_TRUE(set(root_, "whole", 66.5));
    EXPECT_EQ(text(), " real 66.0 whole 66.5");
    EXPECT_TRUE(set(root_, "whole", 66));
    EXPECT_EQ(text(), " real 66.0 whole 66.0") << "now it is a double";
}

TEST_F(access_set, an_int_that_is_no_int_becomes_a_double_when_that_is_exact) {
    fill("n 1 ");
    EXPECT_TRUE(set(root_, "n", 5000000000ll));
    EXPECT_EQ(get<long long>(root_, "n"), 5000000000ll);
    EXPECT_FALSE(set(root_, "n", 9007199254740993ll)) << "2^53 + 1 has no double";
    EXPECT_FALSE(set(root_, "n", std::numeric_limits<long long>::max()));
    EXPECT_FALSE(set(root_, "n", std::numeric_limits<unsigned long long>::max()));
    EXPECT_EQ(get<long long>(root_, "n"), 5000000000ll);
    EXPECT_TRUE(set(root_, "n", std::numeric_limits<long long>::min()));
    EXPECT_EQ(get<long long>(root_, "n"), std::numeric_limits<long long>::min());
    EXPECT_TRUE(set(root_, "n", 0x8000000000000800ull));
    EXPECT_EQ(get<unsigned long long>(root_, "n"), 0x8000000000000800ull);
}

TEST_F(access_set, a_negative_zero_is_no_int) {
    fill("n 1 ");
    EXPECT_TRUE(set(root_, "n", -0.0));
    EXPECT_EQ(text(), " n -0.0");
    EXPECT_TRUE(set(root_, "n", 0));
    EXPECT_EQ(text(), " n 0.0");
}

TEST_F(access_set, what_no_value_can_hold_is_refused) {
    fill("n 1.5 ");
    EXPECT_FALSE(set(root_, "n", std::nan("")));
    EXPECT_FALSE(set(root_, "n", std::numeric_limits<double>::infinity()));
    EXPECT_FALSE(set(root_, "new/n", -std::numeric_limits<float>::infinity()));
    EXPECT_EQ(text(), " n 1.5");
}

TEST_F(access_set, a_char_stays_a_char_where_it_fits) {
    ParserEntry& entry = *root_.add_entry("c", 0, 0);
    entry.add_char('A');
    EXPECT_TRUE(set(root_, "c", 66));
    EXPECT_TRUE(entry.is_value_char(0));
    EXPECT_EQ(get<char>(root_, "c"), 'B');
    EXPECT_TRUE(set(root_, "c", 300));
    EXPECT_TRUE(entry.is_value_int(0));
}

TEST_F(access_set, what_is_equal_keeps_its_spelling) {
    fill("a 1.50 b 007 c yes d 1e3 2.50 ");
    const std::string before = text();
    EXPECT_TRUE(set(root_, "a", 1.5));
    EXPECT_TRUE(set(root_, "b", 7));
    EXPECT_TRUE(set(root_, "c", true));
    EXPECT_TRUE(set(root_, "d", std::vector<double>{1000, 2.5}));
    EXPECT_EQ(text(), before);
    EXPECT_TRUE(set(root_, "d", std::vector<double>{1000, 2.5, 3}));
    EXPECT_EQ(text(), " a 1.50 b 007 c yes d 1e3 2.50 3.0");
}

TEST_F(access_set, other_types_are_replaced) {
    fill("a 1 b \"text\" ");
    EXPECT_TRUE(set(root_, "a", "no"));
    EXPECT_TRUE(set(root_, "b", false));
    EXPECT_EQ(text(), " a \"no\" b no");
    EXPECT_EQ(get<bool>(root_, "a"), std::nullopt);
    const std::array<std::byte, 2> bytes{std::byte{1}, std::byte{255}};
    EXPECT_TRUE(set(root_, "a", std::span<const std::byte>(bytes)));
    EXPECT_TRUE(set(root_, "b", std::vector<std::byte>()));
    EXPECT_EQ(text(), " a 0x01FF00010000 b 0x00000000");
    const char* const null_text = nullptr;
    EXPECT_TRUE(set(root_, "a", null_text));
    EXPECT_EQ(get<std::string>(root_, "a"), "");
    EXPECT_TRUE(set(root_, "a", CoreString("core")));
    EXPECT_TRUE(set(root_, "b", std::string_view("a\0b", 3)));
    EXPECT_EQ(get<std::string>(root_, "b"), std::string("a\0b", 3));
}

TEST_F(access_set, a_group_is_not_overwritten) {
    fill("g { a 1 } m 1 2 { } ");
    EXPECT_FALSE(set(root_, "g", 5));
    EXPECT_FALSE(set(root_, "m", std::vector<int>{1}));
    EXPECT_FALSE(set(root_, "m", GMathVec3<int>(1, 2, 3)));
    EXPECT_TRUE(set(root_, "m", GMathVec2<int>(3, 4)));
    EXPECT_EQ(text(), " g { a 1 } m 3 4 { }");
}

TEST_F(access_set, the_value_behind_the_last_is_added) {
    fill("a 1 ");
    EXPECT_TRUE(set(root_, "a@1", 2));
    EXPECT_FALSE(set(root_, "a@3", 4));
    EXPECT_TRUE(set(root_, "a@2", GMathVec2<double>(0.5, 1)));
    EXPECT_TRUE(set(*root_.get_entry("a"), 0, "x"));
    EXPECT_EQ(text(), " a \"x\" 2 0.5 1.0");
}

TEST_F(access_set, vectors_leave_what_is_behind_and_lists_do_not) {
    fill("a 1 2 3 4 5 ");
    EXPECT_TRUE(set(root_, "a@1", GMathVec3<double>(20, 30.5, 40)));
    EXPECT_EQ(text(), " a 1 20 30.5 40 5");
    EXPECT_TRUE(set(root_, "a@2", std::vector<int>{7}));
    EXPECT_EQ(text(), " a 1 20 7.0");
    EXPECT_TRUE(set(root_, "a", std::vector<std::string>{"x", "a longer text than eleven", "z", "w"}));
    EXPECT_EQ(text(), " a \"x\" \"a longer text than eleven\" \"z\" \"w\"");
    EXPECT_TRUE(set(root_, "a@1", std::array<std::string, 2>{"one", "two"}));
    EXPECT_EQ(text(), " a \"x\" \"one\" \"two\" \"w\"");
    EXPECT_TRUE(set(root_, "a", std::vector<int>()));
    EXPECT_EQ(root_.get_entry("a")->get_value_count(), 0u);
    const std::vector<float> floats{1.5f, 2};
    EXPECT_TRUE(set(root_, "a", std::span<const float>(floats)));
    EXPECT_EQ(text(), " a 1.5 2.0");
}

TEST_F(access_set, lists_may_be_written_out) {
    fill("a 1 2 3 ");
    EXPECT_TRUE(set(root_, "a@1", {20.5, 4.5}));
    EXPECT_EQ(text(), " a 1 20.5 4.5");
    EXPECT_TRUE(set(*root_.get_entry("a"), 0, {"x", "y"}));
    EXPECT_EQ(text(), " a \"x\" \"y\"");
    EXPECT_TRUE(set(root_, "a@0", {std::byte{7}, std::byte{8}}));
    EXPECT_EQ(get<std::vector<std::byte>>(root_, "a"), (std::vector{std::byte{7}, std::byte{8}}));
    EXPECT_NE(bk_parser::add(root_, "b", {true, false}), nullptr);
    EXPECT_EQ(get<std::vector<bool>>(root_, "b"), (std::vector{true, false}));
    EXPECT_FALSE(set(root_, "a@9", {1, 2}));
}

TEST_F(access_set, a_value_may_be_set_from_texts_of_the_same_entry) {
    fill("a \"short\" \"another that is longer\" ");
    const auto first = *get<std::string_view>(root_, "a@0");
    const auto second = *get<std::string_view>(root_, "a@1");
    EXPECT_TRUE(set(root_, "a", std::vector<std::string_view>{second, first, second, first, first}));
    EXPECT_EQ(get<std::vector<std::string>>(root_, "a"),
              (std::vector<std::string>{"another that is longer", "short", "another that is longer", "short",
                                        "short"}));
}

TEST_F(access_set, a_right_array_count_stays_right) {
    fill("a[2] 1 2 b[5] 1 c[] 1 ");
    EXPECT_TRUE(set(root_, "a@2", 3));
    EXPECT_TRUE(set(root_, "b@1", 2));
    EXPECT_TRUE(set(root_, "c@1", 2));
    EXPECT_EQ(text(), " a[3] 1 2 3 b[5] 1 2 c[0] 1 2");
    EXPECT_TRUE(bk_parser::remove(root_, "a@0"));
    EXPECT_EQ(text(), " a[2] 2 3 b[5] 1 2 c[0] 1 2");
}

TEST_F(access_set, groups_on_the_way_are_made) {
    EXPECT_TRUE(set(root_, "a/b/c", 1));
    EXPECT_TRUE(set(root_, "a/b/d", 2));
    EXPECT_TRUE(set(root_, "#k/x", 3));
    EXPECT_EQ(text(), " a { b { c 1 d 2 } } #k { x 3 }");
    EXPECT_EQ(root_.get_keyword("#k")->get_type(), ParserEntry::TYPE_KEYWORD);
    const ParserEntry* const b = bk_parser::find(root_, "a/b");
    EXPECT_EQ(b->get_group(0)->get_source_entry(), b);
}

TEST_F(access_set, keys_templates_and_next_numbers_are_made) {
    EXPECT_TRUE(set(root_, "shot[\"010\"]/light<spot>/power", 1));
    EXPECT_TRUE(set(root_, "shot[\"020\"]/light<>/power", 2));
    EXPECT_TRUE(set(root_, "shot[\"020\"]/light[1]/power", 3));
    EXPECT_TRUE(set(root_, "shot[\"010\"][0]@1/light<spot>/power", 4));
    EXPECT_TRUE(set(root_, "key[\"k\"]@1", 5));
    EXPECT_EQ(
        text(),
        " shot \"010\" { light<spot> { power 4 } } shot \"020\" { light { power 2 } light { power 3 } } "
        "key \"k\" 5");
}

TEST_F(access_set, no_keyword_gets_a_template) {
    EXPECT_FALSE(set(root_, "#k<t>", 1));
    EXPECT_FALSE(set(root_, "g/#k<t>/x", 1));
    EXPECT_EQ(bk_parser::add(root_, "#k<t>"), nullptr);
    EXPECT_EQ(text(), "");
    EXPECT_TRUE(set(root_, "#k<>", 1));
    EXPECT_EQ(text(), " #k 1");
}

TEST_F(access_set, a_group_is_made_behind_the_values_of_an_entry) {
    fill("a 5 b \"key\" ");
    EXPECT_TRUE(set(root_, "a/x", 1));
    EXPECT_TRUE(set(root_, "b@1/x", 2));
    EXPECT_EQ(text(), " a 5 { x 1 } b \"key\" { x 2 }");
    EXPECT_EQ(root_.get_entry("a")->get_group(1)->get_source_entry(), root_.get_entry("a"));
    EXPECT_FALSE(set(root_, "a@0/x", 1));
    EXPECT_FALSE(set(root_, "a@3/x", 1));
}

TEST_F(access_set, the_part_that_is_there_may_be_found_in_any_way) {
    fill("s { shot \"010\" { c { } } shot \"020\" { id 2 c { } } } ");
    EXPECT_TRUE(set(root_, "**/shot[id=2]/c/x/y", 1));
    EXPECT_EQ(text(), " s { shot \"010\" { c { } } shot \"020\" { id 2 c { x { y 1 } } } }");
    EXPECT_TRUE(set(root_, "*/*[1]/**/y/z", 2));
    EXPECT_EQ(text(), " s { shot \"010\" { c { } } shot \"020\" { id 2 c { x { y 1 { z 2 } } } } }");
}

TEST_F(access_set, what_a_path_does_not_say_is_not_made) {
    fill("a { } ");
    const std::string before = text();
    for (const char* path : {"b[0",           "",           "*x",
                             "b/*",           "b/**/c",     "**/c",
                             "b[1]/c",        "b[x=1]/c",   "b[\"k\"][\"l\"]/c",
                             "b[0][\"k\"]/c", "b@1/c",      "b[\"k\"]@0/c",
                             "b@1",           "yes",        "\"odd name\"",
                             "\"list[3]\"",   "\"map<k>\"", "b<\"odd one\">/c",
                             "b<#k>/c",       "#k./x",      "a/\"1\"/c",
                             "a/**/c/d",      "a/c/**/d/e", "*/c/d[5]/e"}) {
        EXPECT_FALSE(set(root_, path, 1)) << path;
        EXPECT_EQ(text(), before) << path;
    }
    EXPECT_TRUE(log_.messages.empty());
}

TEST_F(access_set, what_was_made_is_found_by_the_same_path) {
    for (unsigned int seed = 0; seed < 300; ++seed) {
        NastyTree random(seed);
        ParserGroup root("root");
        random.fill(root);
        std::string path;
        for (unsigned int steps = 1 + random.below(4); steps > 0; --steps) {
            path += path.empty() ? "" : "/";
            path += bk_parser::path_name(random.name());
            path += random.below(3) == 0 ? "[\"010\"]" : "";
            path += random.below(4) == 0 ? "[" + std::to_string(random.below(3)) + "]" : "";
        }
        ParserGroup before(root);
        const int value = static_cast<int>(seed);
        if (set(root, path + "@1", value)) {
            EXPECT_EQ(get<int>(root, path + "@1"), value) << path;
        } else {
            EXPECT_EQ(TreeComparison(before, root).run(), "") << path;
        }
        ParserEntry* const added = bk_parser::add(root, path, value);
        if (added != nullptr) {
            EXPECT_EQ(get<int>(*added, added->get_value_count() - 1), value);
            EXPECT_FALSE(bk_parser::path_of(root, *added).empty());
        }
    }
}

TEST_F(access_set, add_always_makes_another_entry) {
    EXPECT_NE(bk_parser::add(root_, "a/b", 1), nullptr);
    EXPECT_NE(bk_parser::add(root_, "a/b", "two"), nullptr);
    EXPECT_NE(bk_parser::add(root_, "a/shot[\"010\"]", 5.5), nullptr);
    EXPECT_NE(bk_parser::add(root_, "a/shot[1]", std::vector<int>{1, 2}), nullptr);
    EXPECT_NE(bk_parser::add(root_, "#k"), nullptr);
    EXPECT_EQ(text(), " a { b 1 b \"two\" shot \"010\" 5.5 shot 1 2 } #k");
    for (const char* path : {"a/shot[1]", "a/*", "a/1", "**", "a/b[x]", "yes", "a["}) {
        EXPECT_EQ(bk_parser::add(root_, path), nullptr) << path;
    }
    EXPECT_EQ(bk_parser::add(root_, "x", std::nan("")), nullptr);
    EXPECT_TRUE(log_.messages.empty());
}
