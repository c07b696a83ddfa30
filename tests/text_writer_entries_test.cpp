#include "parser/parser_entry.h"
#include "parser/parser_group.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

namespace {

ParserEntry make(const char* name, ParserEntry::Type type = ParserEntry::TYPE_ENTRY) {
    return ParserEntry(name, type, 0, 0);
}

std::string values_of(const ParserEntry& entry) {
    CoreString text;
    entry.get_value_text(text, false, 1);
    return plain(text);
}

} // namespace

TEST(text_writer_entries, a_blank_stands_before_each_value) {
    ParserEntry entry = make("a");
    entry.add_int(1);
    entry.add_bool(true);
    entry.add_string("s");
    EXPECT_EQ(written(entry), "a 1 yes \"s\"");
    EXPECT_EQ(values_of(entry), " 1 yes \"s\"");
}

TEST(text_writer_entries, no_values_are_the_empty_tag) {
    EXPECT_EQ(written(make("a")), "a <empty>");
    EXPECT_EQ(written(make("#k", ParserEntry::TYPE_KEYWORD)), "#k <empty>");
    EXPECT_EQ(values_of(make("a")), " <empty>");
}

TEST(text_writer_entries, a_keyword_is_written_as_an_entry) {
    ParserEntry entry = make("#k", ParserEntry::TYPE_KEYWORD);
    entry.add_int(1);
    entry.add_int(2);
    EXPECT_EQ(written(entry), "#k 1 2");
}

TEST(text_writer_entries, a_template_stands_in_angle_brackets) {
    ParserEntry entry = make("map");
    entry.set_template("key");
    entry.add_int(1);
    EXPECT_EQ(written(entry), "map<key> 1");
}

TEST(text_writer_entries, an_array_count_stands_in_brackets) {
    ParserEntry entry = make("list");
    entry.add_int(1);
    entry.set_array(true, 3);
    EXPECT_EQ(written(entry), "list[3] 1");
    entry.set_array(true, 4294967294u);
    EXPECT_EQ(written(entry), "list[4294967294] 1");
}

TEST(text_writer_entries, an_array_count_of_0_is_empty_brackets) {
    ParserEntry entry = make("list");
    entry.add_int(1);
    entry.set_array(true, 0);
    EXPECT_EQ(written(entry), "list[] 1");
}

TEST(text_writer_entries, an_array_count_that_means_no_array_writes_nothing) {
    ParserEntry entry = make("list");
    entry.add_int(1);
    entry.set_array(true, ParserEntry::not_an_array);
    EXPECT_EQ(written(entry), "list 1");
    entry.set_array(false, 5);
    EXPECT_EQ(written(entry), "list 1");
}

TEST(text_writer_entries, the_template_stands_before_the_array_count) {
    ParserEntry entry = make("a");
    entry.set_template("t");
    entry.set_array(true, 2);
    EXPECT_EQ(written(entry), "a<t>[2] <empty>");
}

TEST(text_writer_entries, the_name_is_written_as_it_is) {
    ParserEntry entry = make("a");
    entry.rename("any name, { even this");
    entry.add_int(1);
    EXPECT_EQ(written(entry), "any name, { even this 1");
}

TEST(text_writer_entries, a_suffix_inside_the_name_is_written_with_it) {
    ParserGroup group("g");
    group.add_entry("list[3]", 0, 0)->add_int(1);
    EXPECT_EQ(written(group), "g { list[3] 1 }");
}

TEST(text_writer_entries, the_values_of_a_call_stand_in_parentheses_right_after_the_name) {
    ParserEntry entry = make("f", ParserEntry::TYPE_FUNCTION_CALL);
    entry.add_int(1);
    EXPECT_EQ(written(entry), "f(1)");
    entry.add_int(2);
    entry.add_string("s");
    EXPECT_EQ(written(entry), "f(1, 2, \"s\")");
    EXPECT_EQ(values_of(entry), "(1, 2, \"s\")");
}

TEST(text_writer_entries, a_call_without_values_is_two_parentheses) {
    EXPECT_EQ(written(make("f", ParserEntry::TYPE_FUNCTION_CALL)), "f()");
}

TEST(text_writer_entries, a_call_keeps_its_template_and_array_count) {
    ParserEntry entry = make("f", ParserEntry::TYPE_FUNCTION_CALL);
    entry.set_template("t");
    entry.set_array(true, 0);
    entry.add_int(1);
    EXPECT_EQ(written(entry), "f<t>[](1)");
}

TEST(text_writer_entries, a_group_in_a_call_is_laid_out_like_any_other) {
    ParserEntry entry = make("f", ParserEntry::TYPE_FUNCTION_CALL);
    entry.add_int(1);
    entry.add_group(nullptr)->add_entry("a", 0, 0)->add_int(2);
    EXPECT_EQ(written(entry), "f(1, { a 2 })");
    CoreString text;
    entry.get_text(text, true, 1);
    EXPECT_EQ(plain(text), "f(1, {\n    a 2\n})");
}

TEST(text_writer_entries, raw_text_is_its_strings_and_nothing_else) {
    ParserEntry entry = make("name");
    entry.set_template("t");
    entry.set_array(true, 2);
    entry.add_string("a");
    entry.add_string("b");
    entry.set_as_raw_text(true);
    EXPECT_EQ(written(entry), "ab");
    EXPECT_EQ(values_of(entry), "ab");
}

TEST(text_writer_entries, raw_text_is_not_escaped) {
    ParserEntry entry = make("name");
    entry.add_string("x \"y\"\n\t'z\\ { 1 }");
    entry.set_as_raw_text(true);
    EXPECT_EQ(written(entry), "x \"y\"\n\t'z\\ { 1 }");
}

TEST(text_writer_entries, raw_text_without_values_is_the_empty_tag) {
    ParserEntry entry = make("name");
    entry.set_as_raw_text(true);
    EXPECT_EQ(written(entry), " <empty>");
}

TEST(text_writer_entries, raw_text_in_a_group_has_the_place_of_an_entry) {
    ParserGroup group("g");
    ParserEntry* entry = group.add_entry("name", 0, 0);
    entry->add_string("a 1");
    entry->set_as_raw_text(true);
    EXPECT_EQ(written(group), "g { a 1 }");
    CoreString text;
    group.get_text(text, true, true, 1);
    EXPECT_EQ(plain(text), "g {\n    a 1\n}");
}

TEST(text_writer_entries, a_group_of_an_entry_is_laid_out_at_the_level_of_the_entry) {
    ParserEntry entry = make("a");
    entry.add_group(nullptr)->add_entry("b", 0, 0)->add_int(1);
    CoreString text;
    entry.get_text(text, true, 1);
    EXPECT_EQ(plain(text), "a {\n    b 1\n}");
    text.clear();
    entry.get_text(text, true, 3);
    EXPECT_EQ(plain(text), "a {\n            b 1\n        }");
    text.clear();
    entry.get_text(text, false, 3);
    EXPECT_EQ(plain(text), "a { b 1 }");
}

TEST(text_writer_entries, level_0_is_laid_out_as_level_1) {
    ParserEntry entry = make("a");
    entry.add_group(nullptr)->add_entry("b", 0, 0)->add_int(1);
    CoreString text;
    entry.get_text(text, true, 0);
    EXPECT_EQ(plain(text), "a {\n    b 1\n}");
}

TEST(text_writer_entries, a_deep_copy_is_written_the_same) {
    ParserEntry entry = make("a");
    entry.set_template("t");
    entry.add_char('A');
    entry.add_double(0.5);
    unsigned char bytes[] = {0x10, 0x20};
    entry.add_binary_data(bytes, 2);
    entry.add_group(nullptr)->add_entry("#k", 0, 0);
    EXPECT_EQ(written(entry), "a<t> 65 0.5 0x102030000000 { #k <empty> }");
    EXPECT_EQ(written(ParserEntry(entry)), written(entry));
}

TEST(text_writer_entries, text_is_appended) {
    CoreString text("before ");
    ParserEntry entry = make("a");
    entry.add_int(1);
    entry.get_text(text, false, 1);
    entry.get_value_text(text, false, 1);
    EXPECT_EQ(plain(text), "before a 1 1");
}
