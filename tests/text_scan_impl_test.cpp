#include "parser/text/parser_text_block_impl.h"
#include "parser/text/parser_text_scan_impl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::size_t block = bk::TextMasks::width;

/// The masks, computed from the classes of each character.
bk::TextMasks expected_masks(const std::string& text) {
    bk::TextMasks masks;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto bit = [&](unsigned int classes) {
            return std::uint64_t{bk::is_char(text[i], classes)} << i;
        };
        masks.blanks |= bit(bk::CHAR_BLANK);
        masks.breaks |= bit(bk::CHAR_LINE_BREAK);
        masks.run_ends |= bit(bk::CHAR_ENDS_RUN);
        masks.double_marks |= bit(bk::CHAR_DOUBLE_MARK);
        masks.quotes |= bit(bk::CHAR_QUOTE);
        masks.names |= bit(bk::CHAR_NAME);
        masks.digits |= bit(bk::CHAR_DIGIT);
        masks.dashes |= std::uint64_t{text[i] == '-'} << i;
    }
    return masks;
}

std::vector<bk::MakeMasks> all_ways() {
    return {
        bk::portable::make_masks,
#if defined(BK_HAS_VECTORS)
            bk::vector::make_masks,
#endif
            bk::fastest_make_masks(),
    };
}

void expect_masks(const std::string& text) {
    const bk::TextMasks expected = expected_masks(text);
    for (const bk::MakeMasks make_masks : all_ways()) {
        bk::TextMasks masks;
        make_masks(text.data(), masks);
        ASSERT_EQ(masks.blanks, expected.blanks) << text;
        ASSERT_EQ(masks.breaks, expected.breaks) << text;
        ASSERT_EQ(masks.run_ends, expected.run_ends) << text;
        ASSERT_EQ(masks.double_marks, expected.double_marks) << text;
        ASSERT_EQ(masks.quotes, expected.quotes) << text;
        ASSERT_EQ(masks.names, expected.names) << text;
        ASSERT_EQ(masks.digits, expected.digits) << text;
        ASSERT_EQ(masks.dashes, expected.dashes) << text;
    }
}

/// The first quote or line break, found one character at a time.
const char* expected_string_stop(const char* p, const char* end) {
    return std::find_if(
        p, end, [](char character) { return bk::is_char(character, bk::CHAR_LINE_BREAK | bk::CHAR_QUOTE); });
}

/// Compares the searches from every place of a text with the slow ones.
void expect_same_from_everywhere(const std::string& text) {
    const char* const end = text.data() + text.size();
    for (const char* p = text.data(); p <= end; ++p) {
        ASSERT_EQ(bk::find_string_stop(p, end), expected_string_stop(p, end)) << text;
        ASSERT_EQ(bk::portable::find_string_stop(p, end), expected_string_stop(p, end)) << text;
        ASSERT_EQ(bk::find_escaped(p, end), bk::portable::find_escaped(p, end)) << text;
        ASSERT_EQ(bk::find_directive(p, end), bk::portable::find_directive(p, end)) << text;
        const auto left = static_cast<std::size_t>(end - p);
        for (const std::size_t size : {std::size_t{0}, left / 2, left}) {
            ASSERT_EQ(bk::are_name_characters(p, size, end), bk::portable::are_name_characters(p, size, end))
                << size << " from " << p - text.data() << " of " << text;
        }
    }
}

std::string random_text(std::mt19937& random, std::size_t size) {
    static const std::string alphabet =
        std::string("aez AEZ_0x59.-+#\"\\'{}(),:=<>[]/\t\n\r\v\f|~\x01\x7f\x80\xff") + '\0';
    // Some texts have few different characters, and so long runs of one.
    const std::size_t few = 1 + random() % alphabet.size();
    std::string text(size, ' ');
    for (char& character : text) {
        character = alphabet[random() % few];
    }
    return text;
}

} // namespace

TEST(text_block, every_byte_is_seen_at_every_place) {
    for (int byte = 0; byte < 256; ++byte) {
        for (std::size_t place = 0; place < block; ++place) {
            for (const char around : {'a', ' '}) {
                std::string text(block, around);
                text[place] = static_cast<char>(byte);
                expect_masks(text);
            }
        }
    }
}

TEST(text_block, random_blocks_have_the_masks_of_their_characters) {
    std::mt19937 random(20240611);
    for (int round = 0; round < 20000; ++round) {
        expect_masks(random_text(random, block));
    }
}

TEST(text_block, behind_the_end_of_a_text_stand_nuls) {
    for (std::size_t size = 0; size < block; ++size) {
        const std::string text(size, '.');
        bk::TextMasks masks;
        bk::make_last_masks(bk::fastest_make_masks(), text.data(), text.data() + size, masks);
        const bk::TextMasks expected = expected_masks(text + std::string(block - size, '\0'));
        EXPECT_EQ(masks.double_marks, expected.double_marks) << size;
        EXPECT_EQ(masks.run_ends, expected.run_ends) << size;
        EXPECT_EQ(masks.blanks, 0u) << size;
    }
}

TEST(text_scan, every_byte_is_seen_at_every_place) {
    for (int byte = 0; byte < 256; ++byte) {
        for (std::size_t place = 0; place < 20; ++place) {
            std::string text(40, 'a');
            text[place] = static_cast<char>(byte);
            expect_same_from_everywhere(text);
        }
    }
}

TEST(text_scan, texts_of_every_length_end_where_they_end) {
    for (std::size_t length = 0; length < 70; ++length) {
        for (const char character : {'7', ' ', '\\'}) {
            expect_same_from_everywhere(std::string(length, character));
        }
    }
}

TEST(text_scan, random_texts_are_searched_alike) {
    std::mt19937 random(20240607);
    for (int round = 0; round < 2000; ++round) {
        expect_same_from_everywhere(random_text(random, random() % 80));
    }
}
