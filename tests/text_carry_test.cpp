#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

/// Prints a tree and parses the text. Returns the result on one line.
std::string read_back(const ParserGroup& group, bool pretty = true) {
    const RecordingLog quiet(0);
    CoreString text;
    group.get_text(text, false, pretty, 1);
    ParserGroup again("g");
    again.set_text(text, CoreVersion(1.2), nullptr);
    text.clear();
    again.get_text(text, false, false, 1);
    return plain(text);
}

/// Parses a text, prints the tree, and parses the print.
std::string read_back(const char* text, bool pretty = true) {
    const RecordingLog quiet(0);
    ParserGroup group("g");
    group.set_text(text, CoreVersion(1.2), nullptr);
    return read_back(group, pretty);
}

class BuiltTree : public testing::Test {
protected:
    BuiltTree() : group("g"), entry(*group.add_entry("a", 0, 0)) {}

    void expect_carried() const {
        for (const bool pretty : {true, false}) {
            const RecordingLog quiet(0);
            CoreString text;
            group.get_text(text, false, pretty, 1);
            ParserGroup again("g");
            again.set_text(text, CoreVersion(1.2), nullptr);
            EXPECT_EQ(tree_difference(group, again), "") << plain(text);
        }
    }

    ParserGroup group;
    ParserEntry& entry;
};

} // namespace

using text_carry = BuiltTree;

// What reads back unchanged

TEST_F(text_carry, bools_ints_and_strings_read_back) {
    entry.add_bool(true);
    entry.add_bool(false);
    entry.add_int(std::numeric_limits<int>::min());
    entry.add_int(std::numeric_limits<int>::max());
    entry.add_string("");
    entry.add_string("text { } ( ) , = : // yes <empty> 0x12");
    expect_carried();
}

TEST_F(text_carry, doubles_read_back) {
    for (const double number : {0.1, -1.5, 1e300, 5e-324, std::numeric_limits<double>::max(), 1.0 / 3.0, 1e22,
                                5.0, 0.0, -0.0, 2147483648.0, 1732284937123.0}) {
        entry.add_double(number);
    }
    expect_carried();
}

TEST_F(text_carry, strings_of_any_bytes_read_back) {
    std::string text;
    for (int code = 0; code < 256; ++code) {
        text += static_cast<char>(code);
        entry.add_string(core(std::string(1, static_cast<char>(code)) + "."));
    }
    entry.add_string(core(text));
    expect_carried();
}

TEST_F(text_carry, backslashes_and_quotes_inside_a_string_read_back) {
    entry.add_string(R"(\" \\" \\\" "\ '\' \n)");
    entry.add_string(R"("")");
    entry.add_string(R"(\")");
    expect_carried();
}

TEST_F(text_carry, binary_data_reads_back) {
    unsigned char bytes[256];
    for (unsigned int i = 0; i < 256; ++i) {
        bytes[i] = static_cast<unsigned char>(i);
    }
    entry.add_binary_data(bytes, 256);
    entry.add_binary_data(bytes, 1);
    entry.add_binary_data(nullptr, 0);
    expect_carried();
}

TEST_F(text_carry, entries_without_values_read_back) {
    group.add_entry("#k", 0, 0);
    group.add_group("b");
    group.add_entry("c", 0, 0)->set_array(true, 0);
    expect_carried();
}

TEST_F(text_carry, nested_groups_after_values_read_back) {
    entry.add_int(1);
    ParserGroup* inner = entry.add_group(nullptr);
    inner->add_group("b")->add_entry("#c", 0, 0)->add_string("x");
    inner->add_entry("d", 0, 0)->set_template("t");
    expect_carried();
}

TEST_F(text_carry, the_largest_array_count_that_reads_back_is_the_largest_int) {
    entry.set_array(true, 2147483647u);
    expect_carried();
    entry.set_array(true, 2147483648u);
    EXPECT_EQ(read_back(group), " a[2147483647] <empty>");
}

// What the syntax cannot carry back

TEST_F(text_carry, a_string_that_ends_in_a_backslash_takes_in_a_further_value) {
    entry.add_string("x\\");
    expect_carried(); // the end of the text ends the string
    entry.add_int(1);
    EXPECT_EQ(read_back(group), " a <empty>");
}

TEST_F(text_carry, a_string_that_ends_in_a_backslash_before_another_string_merges_with_it) {
    entry.add_string("x\\");
    entry.add_string("y");
    EXPECT_EQ(read_back(group), R"( a "x\\\" \"y")");
}

TEST_F(text_carry, a_string_that_ends_in_a_backslash_takes_in_the_rest_of_its_line) {
    entry.add_string("x\\");
    group.add_entry("b", 0, 0)->add_int(1);
    EXPECT_EQ(read_back(group, true), " a \"x\\\\\" b 1");
    EXPECT_EQ(read_back(group, false), " a <empty>");
}

TEST_F(text_carry, a_string_that_ends_in_a_backslash_takes_in_the_parenthesis_of_a_call) {
    EXPECT_EQ(read_back("f(\"x\\\\\"\n) b 1 "), " f(1)");
}

TEST_F(text_carry, a_number_whose_spelling_leaves_a_quote_open_takes_in_a_further_value) {
    EXPECT_EQ(read_back("a 1\"x\n"), " a 1\"x");
    EXPECT_EQ(read_back("a 1\"x\n 2\n"), " a 1\"x 2");
}

TEST_F(text_carry, a_name_of_a_group_reads_back_as_a_name_in_fault) {
    entry.add_group(new ParserGroup("inner"))->add_entry("b", 0, 0)->add_int(1);
    EXPECT_EQ(read_back(group), " a { b 1 }");
}

TEST_F(text_carry, a_name_of_a_group_after_a_value_reads_back_as_an_entry) {
    entry.add_int(1);
    entry.add_group(new ParserGroup("inner"))->add_entry("b", 0, 0)->add_int(2);
    EXPECT_EQ(read_back(group), " a 1 inner { b 2 }");
}

TEST_F(text_carry, a_char_reads_back_as_an_int) {
    entry.add_char('A');
    EXPECT_EQ(read_back(group), " a 65");
    ParserGroup again("g");
    again.set_text("a 65", CoreVersion(1.2), nullptr);
    EXPECT_EQ(tree_difference(group, again), "value type differs: '2' and '3'\n  in entry 'a'");
}

TEST_F(text_carry, raw_text_reads_back_as_what_it_says) {
    entry.add_string("b 1");
    entry.set_as_raw_text(true);
    EXPECT_EQ(read_back(group), " b 1");
}

TEST_F(text_carry, a_template_together_with_an_array_is_no_word) {
    entry.set_template("t");
    entry.set_array(true, 2);
    entry.add_int(1);
    EXPECT_EQ(read_back(group), "");
}

TEST_F(text_carry, a_template_that_is_no_name_is_no_word) {
    EXPECT_EQ(read_back("a<b.[2]> 1 "), "");
    EXPECT_EQ(read_back("a<yes[2]> 1 "), "");
    EXPECT_EQ(read_back("a<no[]> 1 "), "");
}

TEST_F(text_carry, values_after_a_group_read_back_without_an_entry) {
    entry.add_group(nullptr);
    entry.add_int(1);
    EXPECT_EQ(read_back(group), " a { }");
}

TEST_F(text_carry, a_suffix_inside_a_name_reads_back_as_a_suffix) {
    group.add_entry("list[3]", 0, 0)->add_int(1);
    group.add_entry("map<key>", 0, 0)->add_int(2);
    ParserGroup again("g");
    CoreString text;
    group.get_text(text, false, false, 1);
    again.set_text(text, CoreVersion(1.2), nullptr);
    EXPECT_NE(again.get_entry("list"), nullptr);
    EXPECT_NE(again.get_entry("map"), nullptr);
}

TEST_F(text_carry, a_bare_word_reads_back_as_whatever_it_looks_like) {
    const CoreString text("5");
    entry.add_word(ParserWord(text, true, CoreVersion(1.2)), ParserValue::TYPE_WORD);
    ParserGroup again("g");
    again.set_text("a 5", CoreVersion(1.2), nullptr);
    EXPECT_EQ(read_back(group), " a 5");
    EXPECT_EQ(tree_difference(group, again), "value type differs: '7' and '3'\n  in entry 'a'");
}
