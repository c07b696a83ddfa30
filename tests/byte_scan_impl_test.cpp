#include "document/sources/byte_scan_impl.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace bk_parser {
namespace {

/// The same answer by one comparison a character.
std::size_t line_end_of(const std::string& text, std::size_t from) {
    while (from < text.size() && text[from] != '\n' && text[from] != '\r') {
        ++from;
    }
    return from;
}

TEST(byte_scan_impl, a_line_end_is_found_at_every_place_of_a_text) {
    for (std::size_t size = 0; size < 40; ++size) {
        for (std::size_t at = 0; at < size; ++at) {
            for (const char end : {'\n', '\r'}) {
                std::string text(size, 'x');
                text[at] = end;
                for (std::size_t from = 0; from <= size; ++from) {
                    ASSERT_EQ(find_line_end(text, from), from <= at ? at : size)
                        << size << ' ' << at << ' ' << from;
                }
            }
        }
    }
}

TEST(byte_scan_impl, the_first_of_several_line_ends_is_found) {
    std::mt19937 random(7);
    // Characters one below, one above and one bit beside a line end are none.
    const std::string characters = "\n\r\x0B\x0C\x0E\x09\x8A\x8D\x1A \xFF";
    for (int round = 0; round < 20000; ++round) {
        std::string text(random() % 60, ' ');
        for (char& character : text) {
            character = characters[random() % characters.size()];
        }
        const std::size_t from = random() % (text.size() + 1);
        ASSERT_EQ(find_line_end(text, from), line_end_of(text, from))
            << testing::PrintToString(text) << ' ' << from;
    }
}

} // namespace
} // namespace bk_parser
