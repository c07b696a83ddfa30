#include "tests/support/parsed_text.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* escapes = R"(a "x\ny\rz\tw\'v\\u\q" )";

std::string string_read(const char* text, double version) {
    ParsedText parsed(text, version);
    return parsed.count() == 0 ? "no entry" : plain(parsed.entry(0).get_string(0));
}

} // namespace

TEST(text_parser_versions, strings_from_version_1_1_on_have_their_escapes_resolved) {
    EXPECT_EQ(string_read(escapes, 1.1), "x\ny\rz\tw'v\\uq");
    EXPECT_EQ(string_read(escapes, 1.2), "x\ny\rz\tw'v\\uq");
    EXPECT_EQ(string_read(escapes, 2.0), "x\ny\rz\tw'v\\uq");
}

TEST(text_parser_versions, strings_of_older_versions_keep_their_backslashes) {
    EXPECT_EQ(string_read(escapes, 1.0), R"(x\ny\rz\tw\'v\\u\q)");
    EXPECT_EQ(string_read(escapes, 1.05), R"(x\ny\rz\tw\'v\\u\q)");
    EXPECT_EQ(string_read(escapes, 0.0), R"(x\ny\rz\tw\'v\\u\q)");
}

TEST(text_parser_versions, a_version_a_hair_below_1_1_counts_as_1_1) {
    EXPECT_EQ(string_read(escapes, 1.1 - CoreVersion::epsilon / 2), "x\ny\rz\tw'v\\uq");
    EXPECT_NE(string_read(escapes, 1.1 - CoreVersion::epsilon * 2), "x\ny\rz\tw'v\\uq");
}

TEST(text_parser_versions, words_are_cut_the_same_way_in_every_version) {
    EXPECT_EQ(string_read(R"(a "x\" y" 1 )", 1.0), R"(x\" y)");
    EXPECT_EQ(string_read(R"(a "x\" y" 1 )", 1.2), R"(x" y)");
    EXPECT_EQ(ParsedText(R"(a "x\" y" 1 )", 1.0).messages(), ParsedText(R"(a "x\" y" 1 )", 1.2).messages());
}

TEST(text_parser_versions, messages_quote_words_by_the_rule_of_the_version) {
    EXPECT_EQ(ParsedText(R"("a\tb" )", 1.0).messages().front(),
              fault_at(1, 1, R"(Value without entry: "a\tb")"));
    EXPECT_EQ(ParsedText(R"("a\tb" )", 1.2).messages().front(),
              fault_at(1, 1, "Value without entry: \"a\tb\""));
}

TEST(text_parser_versions, everything_but_strings_reads_the_same_in_every_version) {
    const char* text = "a<t> 1 2.5 yes b[3] 0x0102030000000000 #k { c <empty> } f(1, 2) ";
    const ParsedText older(text, 1.0);
    const ParsedText newer(text, 1.2);
    EXPECT_EQ(older.print(), newer.print());
    EXPECT_EQ(older.messages(), newer.messages());
    EXPECT_EQ(older.print(), " a<t> 1 2.5 yes b[3] 0x0102030006000000 #k { c <empty> } f(1, 2)");
}

TEST(text_parser_versions, groups_follow_the_version_of_their_text) {
    ParsedText older(R"(a { b "x\n" } )", 1.0);
    EXPECT_EQ(plain(older.entry(0).get_group(0)->get_entry(0u)->get_string(0)), R"(x\n)");
    ParsedText newer(R"(a { b "x\n" } )", 1.2);
    EXPECT_EQ(plain(newer.entry(0).get_group(0)->get_entry(0u)->get_string(0)), "x\n");
}
