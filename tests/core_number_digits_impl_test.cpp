#include "core/numbers/core_number_digits_impl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace {

constexpr std::size_t most = bk::most_pointed_digits;

/// The conversion also reads the bytes before a text, which must not change the result.
std::string behind_margin(const std::string& text) {
    return "7.7.7.7.7.7.7.7.7.7.7.7.7.7.7.7." + text;
}

struct Way {
    const char* name;
    bool (*read)(const char* end, std::size_t count, bk::PointedDigits& digits);
};

constexpr Way ways[] = {
    {"portable", bk::portable::read_pointed_digits},
#if defined(BK_HAS_VECTORS)
    {"vector", bk::vector::read_pointed_digits},
#endif
    {"used", bk::read_pointed_digits},
};

void expect_digits(const std::string& text) {
    const std::string room = behind_margin(text);
    std::string digits_alone = text;
    const std::size_t point = text.find('.');
    if (point != std::string::npos) {
        digits_alone.erase(point, 1);
    }
    const std::uint64_t number = digits_alone.empty() ? 0 : std::stoull(digits_alone);
    const int places = point == std::string::npos ? -1 : static_cast<int>(text.size() - point - 1);
    for (const Way& way : ways) {
        bk::PointedDigits digits;
        ASSERT_TRUE(way.read(room.data() + room.size(), text.size(), digits)) << way.name << ' ' << text;
        ASSERT_EQ(digits.number, number) << way.name << ' ' << text;
        ASSERT_EQ(digits.places, places) << way.name << ' ' << text;
    }
}

void expect_refused(const std::string& text) {
    const std::string room = behind_margin(text);
    for (const Way& way : ways) {
        bk::PointedDigits digits;
        ASSERT_FALSE(way.read(room.data() + room.size(), text.size(), digits)) << way.name << ' ' << text;
    }
}

bool is_digit(char character) {
    return character >= '0' && character <= '9';
}

} // namespace

TEST(core_number_digits, eight_digits_are_read_and_any_other_character_is_refused_at_every_place) {
    for (std::size_t place = 0; place < bk::most_short_digits; ++place) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string text = "90817263";
            text[place] = static_cast<char>(byte);
            std::uint32_t number = 0;
            const bool is_read = bk::read_eight_digits(
                bk::load_le64(reinterpret_cast<const unsigned char*>(text.data())), number);
            ASSERT_EQ(is_read, is_digit(text[place])) << text;
            ASSERT_TRUE(!is_read || number == std::stoul(text)) << text;
        }
    }
}

TEST(core_number_digits, the_last_characters_are_kept_and_zeros_stand_for_the_others) {
    const std::string room = behind_margin("12345678");
    for (std::size_t count = 0; count <= bk::most_short_digits; ++count) {
        const std::string expected = std::string(8 - count, '0') + room.substr(room.size() - count);
        EXPECT_EQ(bk::eight_before(room.data() + room.size(), count),
                  bk::load_le64(reinterpret_cast<const unsigned char*>(expected.data())));
    }
}

TEST(core_number_digits, up_to_sixteen_digits_are_read_with_a_point_anywhere_or_without) {
    std::mt19937_64 random(20240720);
    for (int round = 0; round < 200; ++round) {
        for (std::size_t count = 1; count <= most; ++count) {
            std::string text(count, '0');
            std::generate(text.begin(), text.end(), [&] { return static_cast<char>('0' + random() % 10); });
            expect_digits(text);
            for (std::size_t place = 0; place < count; ++place) {
                std::string pointed = text;
                pointed[place] = '.';
                expect_digits(pointed);
            }
        }
    }
}

TEST(core_number_digits, any_other_character_is_refused_at_every_place_of_sixteen) {
    for (std::size_t count = 1; count <= most; ++count) {
        for (std::size_t place = 0; place < count; ++place) {
            for (int byte = 0; byte < 256; ++byte) {
                std::string text(count, '9');
                text[place] = static_cast<char>(byte);
                if (!is_digit(text[place]) && text[place] != '.') {
                    expect_refused(text);
                }
            }
        }
    }
}

TEST(core_number_digits, a_second_point_is_refused) {
    for (std::size_t first = 0; first < most; ++first) {
        for (std::size_t second = first + 1; second < most; ++second) {
            std::string text(most, '1');
            text[first] = '.';
            text[second] = '.';
            expect_refused(text);
        }
    }
}
