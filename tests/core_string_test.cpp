#include "core/core_string.h"

#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>

using namespace std::literals;

namespace {

// Lengths on both sides of the limit below which a string stores its text inside the object.
const std::string boundary_texts[] = {
    "", "a", "1234567890", "12345678901", "123456789012", "1234567890123", std::string(300, 'x')};

TEST(core_string, a_new_string_is_empty_and_ends_with_a_nul) {
    const CoreString text;
    EXPECT_EQ(text.get_length(), 0u);
    EXPECT_TRUE(text.is_empty());
    EXPECT_EQ(*text.get_data(), '\0');
}

TEST(core_string, a_text_is_taken_up_to_its_nul) {
    const CoreString text("abc\0def");
    EXPECT_EQ(plain(text), "abc");
    EXPECT_FALSE(text.is_empty());
}

TEST(core_string, a_null_text_gives_the_empty_string) {
    EXPECT_TRUE(CoreString(static_cast<const char*>(nullptr)).is_empty());
    EXPECT_TRUE(CoreString(static_cast<const char*>(nullptr), 0).is_empty());
}

TEST(core_string, a_null_text_equals_the_empty_string) {
    const char* const null = nullptr;
    EXPECT_TRUE(CoreString() == null);
    EXPECT_FALSE(CoreString("a") == null);
}

TEST(core_string, a_text_with_a_size_is_taken_whole_with_its_nul_bytes) {
    const std::string bytes = "ab\0cd\0"s;
    const CoreString text(bytes.data(), static_cast<unsigned int>(bytes.size()));
    EXPECT_EQ(text.get_length(), 6u);
    EXPECT_EQ(plain(text), bytes);
}

TEST(core_string, every_length_around_the_boundary_is_kept_exactly_and_closed_by_a_nul) {
    for (const std::string& expected : boundary_texts) {
        const CoreString text{std::string_view(expected)};
        EXPECT_EQ(plain(text), expected);
        EXPECT_EQ(text.get_data()[text.get_length()], '\0');
    }
}

TEST(core_string, the_longest_text_inside_the_object_has_eleven_characters) {
    const CoreString inside("12345678901");
    const CoreString outside("123456789012");
    const auto lies_in = [](const CoreString& text) {
        const char* object = reinterpret_cast<const char*>(&text);
        return text.get_data() >= object && text.get_data() < object + sizeof(text);
    };
    EXPECT_TRUE(lies_in(inside));
    EXPECT_FALSE(lies_in(outside));
}

TEST(core_string, a_string_takes_at_most_twenty_four_bytes) {
    EXPECT_LE(sizeof(CoreString), 24u);
}

TEST(core_string, a_copy_is_independent_of_its_source) {
    for (const std::string& expected : boundary_texts) {
        CoreString source{std::string_view(expected)};
        const CoreString copy(source);
        source += "changed";
        EXPECT_EQ(plain(copy), expected);
        EXPECT_NE(copy.get_data(), source.get_data());
    }
}

TEST(core_string, assignment_replaces_any_text_by_any_other) {
    for (const std::string& before : boundary_texts) {
        for (const std::string& after : boundary_texts) {
            const CoreString source{std::string_view(after)};
            CoreString target{std::string_view(before)};
            target = source;
            EXPECT_EQ(plain(target), after);
            EXPECT_EQ(plain(source), after);
        }
    }
}

TEST(core_string, moving_hands_the_text_over_and_leaves_the_source_empty) {
    for (const std::string& expected : boundary_texts) {
        CoreString source{std::string_view(expected)};
        CoreString constructed(std::move(source));
        EXPECT_EQ(plain(constructed), expected);
        EXPECT_TRUE(source.is_empty());

        CoreString assigned("what it held before, long enough for a block");
        assigned = std::move(constructed);
        EXPECT_EQ(plain(assigned), expected);
        EXPECT_TRUE(constructed.is_empty());
        constructed += "reused";
        EXPECT_EQ(plain(constructed), "reused");
    }
}

TEST(core_string, assigning_a_string_to_itself_keeps_it) {
    for (const std::string& expected : boundary_texts) {
        CoreString text{std::string_view(expected)};
        CoreString& same = text;
        text = same;
        EXPECT_EQ(plain(text), expected);
        text = std::move(same);
        EXPECT_EQ(plain(text), expected);
    }
}

TEST(core_string, set_data_replaces_any_text_by_exactly_the_bytes_given) {
    for (const std::string& before : boundary_texts) {
        for (const std::string& after : boundary_texts) {
            CoreString text{std::string_view(before)};
            text.set_data(after.data(), static_cast<unsigned int>(after.size()));
            EXPECT_EQ(plain(text), after);
            EXPECT_EQ(text.get_data()[text.get_length()], '\0');
        }
    }
}

TEST(core_string, set_data_without_a_size_or_with_all_bits_set_reads_up_to_the_nul) {
    CoreString text;
    text.set_data("one\0two");
    EXPECT_EQ(plain(text), "one");
    text.set_data("three\0four", 0xFFFFFFFF);
    EXPECT_EQ(plain(text), "three");
    text.set_data("five\0six", 8);
    EXPECT_EQ(plain(text), "five\0six"s);
}

TEST(core_string, set_data_takes_bytes_that_lie_in_the_string_itself) {
    for (const std::string& before : {"0123456789"s, "0123456789abcdef"s}) {
        CoreString text{std::string_view(before)};
        text.set_data(text.get_data() + 2, 5);
        EXPECT_EQ(plain(text), "23456");
    }
    CoreString long_to_long("0123456789abcdefghijklmnop");
    long_to_long.set_data(long_to_long.get_data() + 3, 20);
    EXPECT_EQ(plain(long_to_long), "3456789abcdefghijklm");
    CoreString to_its_end("0123456789abcdef");
    to_its_end.set_data(to_its_end.get_data() + 4);
    EXPECT_EQ(plain(to_its_end), "456789abcdef");
}

TEST(core_string, clear_makes_it_empty_and_usable_again) {
    for (const std::string& before : boundary_texts) {
        CoreString text{std::string_view(before)};
        text.clear();
        EXPECT_TRUE(text.is_empty());
        EXPECT_EQ(*text.get_data(), '\0');
        text += "123456789012";
        EXPECT_EQ(plain(text), "123456789012");
    }
}

TEST(core_string, the_null_string_is_one_shared_empty_string) {
    EXPECT_TRUE(CoreString::get_null_string().is_empty());
    EXPECT_EQ(&CoreString::get_null_string(), &CoreString::get_null_string());
}

TEST(core_string, sub_string_gives_length_characters_from_start) {
    const CoreString text("0123456789abcdef");
    EXPECT_EQ(plain(text.sub_string(0, 16)), "0123456789abcdef");
    EXPECT_EQ(plain(text.sub_string(3, 4)), "3456");
    EXPECT_EQ(plain(text.sub_string(1, 12)), "123456789abc");
    EXPECT_EQ(plain(text.sub_string(5, 0)), "");
    EXPECT_EQ(plain(CoreString("a\0b\0c", 5).sub_string(1, 3)), "\0b\0"s);
}

TEST(core_string, sub_string_gives_fewer_characters_where_the_string_ends_before) {
    const CoreString text("0123456789");
    EXPECT_EQ(plain(text.sub_string(7, 100)), "789");
    EXPECT_EQ(plain(text.sub_string(7, 0xFFFFFFFFu)), "789");
    EXPECT_EQ(plain(text.sub_string(10, 1)), "");
    EXPECT_EQ(plain(text.sub_string(11, 1)), "");
    EXPECT_EQ(plain(text.sub_string(0xFFFFFFFFu, 0xFFFFFFFFu)), "");
    EXPECT_EQ(plain(CoreString().sub_string(0, 1)), "");
}

TEST(core_string, equality_is_byte_wise_and_counts_the_length) {
    EXPECT_TRUE(CoreString("abc") == CoreString("abc"));
    EXPECT_FALSE(CoreString("abc") != CoreString("abc"));
    EXPECT_TRUE(CoreString("abc") != CoreString("abd"));
    EXPECT_TRUE(CoreString("abc") != CoreString("ABC"));
    EXPECT_FALSE(CoreString("abc") == CoreString("ab"));
    EXPECT_FALSE(CoreString("a") == CoreString("a\0", 2));
    EXPECT_FALSE(CoreString("a\0b", 3) == CoreString("a\0c", 3));
    EXPECT_TRUE(CoreString("a\0b", 3) == CoreString("a\0b", 3));
    EXPECT_TRUE(CoreString() == CoreString(""));
}

TEST(core_string, strings_compare_through_their_read_only_face_and_with_plain_text) {
    const CoreString text("a text that stands in a block");
    const CoreString same("a text that stands in a block");
    const CoreBasicString& face = text;
    EXPECT_TRUE(face == same);
    EXPECT_TRUE(text == "a text that stands in a block");
    EXPECT_TRUE(text != "a text");
    EXPECT_FALSE(CoreString("a\0", 2) == "a");
}

TEST(core_string, the_leading_integer_is_what_the_conversion_to_int_gives) {
    const std::pair<const char*, int> cases[] = {{"", 0},
                                                 {"42", 42},
                                                 {"-42", -42},
                                                 {"+7", 7},
                                                 {" \t\n\v\f\r9", 9},
                                                 {"12ab", 12},
                                                 {"1.9", 1},
                                                 {"1e5", 1},
                                                 {"0x10", 0},
                                                 {"007", 7},
                                                 {"abc", 0},
                                                 {"-", 0},
                                                 {"+-3", 0},
                                                 {"- 3", 0},
                                                 {"2147483647", 2147483647},
                                                 {"2147483648", 2147483647},
                                                 {"-2147483648", -2147483647 - 1},
                                                 {"-2147483649", -2147483647 - 1},
                                                 {"99999999999999999999999999", 2147483647},
                                                 {"-99999999999999999999999999", -2147483647 - 1}};
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(static_cast<int>(CoreString(text)), expected) << "'" << text << "'";
    }
}

TEST(core_string, the_leading_number_is_what_the_conversion_to_double_gives) {
    const std::pair<const char*, double> cases[] = {
        {"", 0.0},   {"1.2", 1.2}, {"-0.5e1x", -5.0}, {" 1e", 1.0},  {"1e+", 1.0}, {".5", 0.5},
        {"5.", 5.0}, {".", 0.0},   {"0x1p4", 16.0},   {"0x", 0.0},   {"1,5", 1.0}, {"1.2.3", 1.2},
        {"e5", 0.0}, {"+3", 3.0},  {"1.20\n", 1.2},   {"1e-2", 0.01}};
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(static_cast<double>(CoreString(text)), expected) << "'" << text << "'";
    }
}

TEST(core_string, conversions_stop_at_a_nul_and_at_the_end_of_the_string) {
    EXPECT_EQ(static_cast<int>(CoreString("12\0"
                                          "34",
                                          5)),
              12);
    EXPECT_EQ(static_cast<int>(CoreString("1234", 2)), 12);
    EXPECT_EQ(static_cast<double>(CoreString("1.2\0"
                                             "5",
                                             5)),
              1.2);
    EXPECT_EQ(static_cast<double>(CoreString("1.25", 3)), 1.2);
}

TEST(core_string, numbers_are_asked_for_explicitly) {
    EXPECT_FALSE((std::is_convertible_v<CoreString, int>));
    EXPECT_FALSE((std::is_convertible_v<CoreString, double>));
}

TEST(core_string, resizing_keeps_the_first_characters_on_both_sides_of_the_boundary) {
    for (const unsigned int before : {0u, 5u, 11u, 12u, 40u}) {
        for (const unsigned int after : {0u, 5u, 11u, 12u, 40u}) {
            const std::string source = "0123456789abcdefghijklmnopqrstuvwxyzABCD"s.substr(0, before);
            CoreString text{std::string_view(source)};
            char* room = text.resize(after);
            for (unsigned int i = before; i < after; ++i) {
                room[i] = '.';
            }
            std::string expected = source;
            expected.resize(after, '.');
            EXPECT_EQ(plain(text), expected) << before << " to " << after;
            EXPECT_EQ(text.get_data()[after], '\0');
        }
    }
}

} // namespace
