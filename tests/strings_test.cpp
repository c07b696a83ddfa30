#include "document/strings.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace {

const char* const texts[] = {"",     "a",    "ab",  "b", "B", "a text that is longer than eleven",
                             "\x7F", "\x80", "\xFF"};

} // namespace

TEST(strings, convert_to_and_from_those_of_the_standard_library) {
    const std::string_view text("with a \0 in it", 14);
    const CoreString core(text);
    EXPECT_EQ(bk_parser::to_string(core), text);
    EXPECT_EQ(core.get_view(), text);
    EXPECT_EQ(CoreString(std::string_view(std::string(text))), core);
}

TEST(strings, those_of_the_standard_library_are_appended) {
    CoreString text("a");
    text += std::string("b\0c", 3);
    (text += std::string_view("de").substr(0, 1)) += "f";
    EXPECT_EQ(text, std::string_view("ab\0cdf", 6));
    text += text.get_view();
    EXPECT_EQ(text, std::string_view("ab\0cdfab\0cdf", 12));
}

TEST(strings, are_ordered_as_std_string_is) {
    for (const char* left : texts) {
        for (const char* right : texts) {
            EXPECT_EQ(CoreString(left) <=> CoreString(right), std::string(left) <=> std::string(right));
            EXPECT_EQ(CoreString(left) < CoreString(right), std::string(left) < std::string(right));
            EXPECT_EQ(CoreString(left) < std::string_view(right), std::string(left) < right);
            EXPECT_EQ(std::string_view(left) >= CoreString(right), std::string(left) >= right);
            EXPECT_EQ(CoreString(left) == std::string(right), std::string(left) == right);
            EXPECT_EQ(std::string(left) != CoreString(right), std::string(left) != right);
            EXPECT_EQ(CoreString(left) == right, std::string(left) == right);
        }
    }
    EXPECT_NE(CoreString("a"), std::string_view("a\0", 2));
    std::set<CoreString> sorted(std::begin(texts), std::end(texts));
    EXPECT_EQ(sorted.size(), std::size(texts));
    EXPECT_EQ(*sorted.begin(), CoreString());
}

TEST(strings, are_hashed_by_their_bytes) {
    for (const char* text : texts) {
        EXPECT_EQ(std::hash<CoreString>()(CoreString(text)), std::hash<std::string_view>()(text));
    }
    std::unordered_set<CoreString> set(std::begin(texts), std::end(texts));
    EXPECT_EQ(set.size(), std::size(texts));
    EXPECT_TRUE(set.contains(CoreString("ab")));
}

TEST(strings, are_looked_up_by_any_kind_of_string) {
    std::unordered_map<CoreString, int, bk_parser::StringHash, bk_parser::StringEqual> hashed;
    std::map<CoreString, int, std::less<>> sorted;
    for (const char* text : texts) {
        hashed[text] = 1;
        sorted[text] = 1;
    }
    EXPECT_TRUE(hashed.contains(std::string_view("ab")));
    EXPECT_TRUE(hashed.contains("ab"));
    EXPECT_TRUE(hashed.contains(CoreString("ab")));
    EXPECT_FALSE(hashed.contains(std::string("abc")));
    EXPECT_TRUE(sorted.contains(std::string_view("ab")));
    EXPECT_FALSE(sorted.contains(std::string_view("abc")));
}

TEST(strings, are_printed_with_width_and_fill) {
    std::ostringstream out;
    out << CoreString("ab") << '|' << std::setw(5) << std::setfill('.') << CoreString("c") << '|' << std::left
        << std::setw(3) << CoreString("d");
    EXPECT_EQ(out.str(), "ab|....c|d..");
}

#if defined(__cpp_lib_format)
TEST(strings, are_formatted) {
    EXPECT_EQ(std::format("{:>4}|{}", CoreString("ab"), CoreString()), "  ab|");
}
#endif
