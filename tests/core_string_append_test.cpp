#include "core/core_string.h"

#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <random>
#include <string>

using namespace std::literals;

namespace {

/// Hides a size from the compiler, which would otherwise warn about calls that never happen.
std::size_t not_folded(unsigned long long size) {
    volatile unsigned long long hidden = size;
    return static_cast<std::size_t>(hidden);
}

template <class T>
std::string appended(const T& part) {
    CoreString text("<");
    text += part;
    return plain(text);
}

TEST(core_string_append, texts_strings_characters_and_bytes_are_appended) {
    CoreString text;
    text += "abc";
    text += CoreString("d\0e", 3);
    text += 'f';
    text += static_cast<unsigned char>(0xE9);
    text += '\0';
    text += "";
    text += CoreString();
    EXPECT_EQ(plain(text), "abcd\0ef\xE9\0"s);
}

TEST(core_string_append, a_byte_is_a_character_and_not_a_number) {
    EXPECT_EQ(appended(static_cast<unsigned char>(65)), "<A");
    EXPECT_EQ(appended('7'), "<7");
}

TEST(core_string_append, ints_are_appended_in_decimal_with_a_minus_and_nothing_else) {
    EXPECT_EQ(appended(0), "<0");
    EXPECT_EQ(appended(7), "<7");
    EXPECT_EQ(appended(-7), "<-7");
    EXPECT_EQ(appended(1000000), "<1000000");
    EXPECT_EQ(appended(INT_MAX), "<2147483647");
    EXPECT_EQ(appended(INT_MIN), "<-2147483648");
}

TEST(core_string_append, unsigned_numbers_of_every_width_are_appended_in_decimal) {
    EXPECT_EQ(appended(0u), "<0");
    EXPECT_EQ(appended(0xFFFFFFFFu), "<4294967295");
    EXPECT_EQ(appended(0ul), "<0");
    EXPECT_EQ(appended(ULONG_MAX), "<" + std::to_string(ULONG_MAX));
    EXPECT_EQ(appended(0ull), "<0");
    EXPECT_EQ(appended(ULLONG_MAX), "<18446744073709551615");
    EXPECT_EQ(appended(core_ulong{4294967295u}), "<4294967295");
}

TEST(core_string_append, doubles_are_appended_as_the_shortest_text_that_reads_back) {
    const std::pair<double, const char*> cases[] = {{0.0, "0.0"},
                                                    {-0.0, "-0.0"},
                                                    {1.0, "1.0"},
                                                    {1.2, "1.2"},
                                                    {0.1, "0.1"},
                                                    {-2.5, "-2.5"},
                                                    {0.1 + 0.2, "0.30000000000000004"},
                                                    {1.0 / 3.0, "0.3333333333333333"},
                                                    {100000.0, "1e+05"},
                                                    {10000.0, "10000.0"},
                                                    {123456.0, "123456.0"},
                                                    {1e22, "1e+22"},
                                                    {1e-7, "1e-07"},
                                                    {5e-324, "5e-324"},
                                                    {1.7976931348623157e308, "1.7976931348623157e+308"},
                                                    {-1.7976931348623157e308, "-1.7976931348623157e+308"}};
    for (const auto& [number, expected] : cases) {
        EXPECT_EQ(appended(number), "<"s + expected);
    }
}

TEST(core_string_append, appending_is_chained) {
    CoreString text;
    ((text += "a") += 1) += 'b';
    EXPECT_EQ(plain(text), "a1b");
}

TEST(core_string_append, every_step_across_the_boundary_keeps_the_text_and_its_closing_nul) {
    for (unsigned int before = 0; before <= 25; ++before) {
        for (unsigned int added = 0; added <= 25; ++added) {
            CoreString text{std::string_view(std::string(before, 'a'))};
            EXPECT_TRUE(text.append(std::string(added, 'b')));
            EXPECT_EQ(plain(text), std::string(before, 'a') + std::string(added, 'b'));
            EXPECT_EQ(text.get_data()[before + added], '\0');
        }
    }
}

TEST(core_string_append, a_string_is_appended_to_itself) {
    for (const unsigned int length : {0u, 1u, 5u, 6u, 11u, 12u, 100u}) {
        const std::string half = std::string(length, 'x') + (length != 0 ? "y" : "");
        CoreString text{std::string_view(half)};
        text += text;
        EXPECT_EQ(plain(text), half + half);
        text += text;
        EXPECT_EQ(plain(text), half + half + half + half);
    }
}

TEST(core_string_append, a_piece_of_the_string_itself_is_appended_even_when_the_string_has_to_move) {
    for (const unsigned int length : {6u, 9u, 11u, 12u, 15u, 16u, 31u, 32u, 1000u}) {
        std::string expected;
        for (unsigned int i = 0; i < length; ++i) {
            expected += static_cast<char>('a' + i % 26);
        }
        CoreString text{std::string_view(expected)};
        for (int round = 0; round < 6; ++round) {
            expected += expected.substr(2, expected.size() - 3);
            EXPECT_TRUE(text.append(text.get_data() + 2, text.get_length() - 3u));
            ASSERT_EQ(plain(text), expected);
        }
    }
}

TEST(core_string_append, the_own_text_is_appended_through_its_pointer) {
    CoreString text("0123456789");
    text += text.get_data();
    EXPECT_EQ(plain(text), "01234567890123456789");
    text += text.get_data() + 18;
    EXPECT_EQ(plain(text), "0123456789012345678989");
}

TEST(core_string_append, a_character_of_the_string_itself_is_appended) {
    CoreString text("abcdefghijk");
    for (int round = 0; round < 30; ++round) {
        text += text.get_data()[round];
    }
    EXPECT_EQ(plain(text), "abcdefghijkabcdefghijkabcdefghijkabcdefgh");
}

TEST(core_string_append, what_would_pass_the_largest_length_is_refused_and_changes_nothing) {
    // The sizes are refused before any byte is read.
    for (const char* before : {"ab", "a text that stands in a block"}) {
        for (const unsigned long long size :
             {0xFFFFFFFEull, 0xFFFFFFFFull, 0x100000000ull, 0xFFFFFFFFFFull}) {
            CoreString text(before);
            EXPECT_FALSE(text.append(text.get_data(), not_folded(size)));
            EXPECT_EQ(plain(text), before);
        }
    }
    CoreString empty;
    EXPECT_FALSE(empty.append("", not_folded(0xFFFFFFFFu)));
    EXPECT_TRUE(empty.is_empty());
}

TEST(core_string_append, room_made_in_advance_changes_nothing_and_keeps_the_text_where_it_is) {
    CoreString text("a text that stands in a block");
    text.reserve(1000);
    EXPECT_EQ(plain(text), "a text that stands in a block");
    const char* place = text.get_data();
    while (text.get_length() < 1000) {
        text += 'x';
    }
    EXPECT_EQ(text.get_data(), place);
    text.reserve(10);
    EXPECT_EQ(text.get_length(), 1000u);
}

TEST(core_string_append, many_small_pieces_make_a_large_text) {
    CoreString text;
    std::string expected;
    for (int i = 0; i < 300000; ++i) {
        text += i;
        text += ' ';
        expected += std::to_string(i) + " ";
    }
    EXPECT_EQ(plain(text), expected);
}

TEST(core_string_append, random_edits_give_what_the_standard_library_gives) {
    std::mt19937 random(20240501);
    const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };
    CoreString text;
    std::string model;
    for (int step = 0; step < 20000; ++step) {
        const std::string piece(below(30), static_cast<char>(below(256)));
        switch (below(8)) {
        case 0:
            text.set_data(piece.data(), static_cast<unsigned int>(piece.size()));
            model = piece;
            break;
        case 1: {
            const std::size_t start = below(model.size() + 2);
            const std::size_t length = below(40);
            text = text.sub_string(static_cast<unsigned int>(start), static_cast<unsigned int>(length));
            model = start < model.size() ? model.substr(start, length) : std::string();
            break;
        }
        case 2:
            text += static_cast<char>(step);
            model += static_cast<char>(step);
            break;
        case 3:
            text += step - 10000;
            model += std::to_string(step - 10000);
            break;
        case 4: {
            const std::size_t start = below(model.size() + 1);
            EXPECT_TRUE(text.append(text.get_data() + start, model.size() - start));
            model += std::string(model, start);
            break;
        }
        default:
            EXPECT_TRUE(text.append(piece));
            model += piece;
        }
        if (model.size() > 5000) {
            text.clear();
            model.clear();
        }
        ASSERT_EQ(plain(text), model) << "step " << step;
        ASSERT_EQ(text.get_data()[text.get_length()], '\0') << "step " << step;
    }
}

} // namespace
