#include "document/sources/byte_facts_impl.h"
#include "document/sources/byte_scan_impl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <string>

namespace bk_parser {
namespace {

/// Searches one character at a time, as a reference.
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
    // Includes characters that differ from a line end by 1 or by one bit, and are none.
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

/// The facts of a text that arrives in pieces.
ByteFacts facts_of(const std::string& text, std::mt19937& random) {
    ByteFacts facts;
    for (std::size_t have = 0; have < text.size();) {
        const std::size_t next = std::min(text.size(), have + 1 + random() % 9000);
        facts.add(std::string_view(text).substr(0, next), have);
        have = next;
    }
    return facts;
}

TEST(byte_facts_impl, do_not_depend_on_how_the_bytes_are_cut) {
    std::mt19937 random(5);
    const std::string_view rare[] = {"\r",   "\xC3\xA4",    "\xE2\x82\xAC", "\xF0\x9F\x98\x80",
                                     "\xC3", "\xEF\xBB\xBF"};
    for (int round = 0; round < 3000; ++round) {
        std::string text(random() % 20000, 'x');
        for (std::size_t at = 0; at < text.size(); at += 1 + random() % 40) {
            text[at] = '\n';
        }
        for (unsigned int left = random() % 4; left != 0; --left) {
            text.insert(random() % (text.size() + 1), rare[random() % std::size(rare)]);
        }
        if (random() % 8 == 0) {
            text.insert(random() % (text.size() + 1), 1, '\0');
        }
        const ByteFacts facts = facts_of(text, random);
        ASSERT_EQ(facts.line_feeds(), static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')));
        ASSERT_EQ(facts.have_returns(), text.find('\r') != std::string::npos);
        const StrayBytes stray = find_stray_bytes(text);
        ASSERT_EQ(facts.are_clean(), stray.are_none()) << round;
    }
}

TEST(byte_facts_impl, each_byte_counts_at_every_place) {
    std::mt19937 random(6);
    for (const std::size_t size : {1u, 31u, 32u, 33u, 300u, 8300u}) {
        for (std::size_t at = 0; at<size; at += size> 1000 ? 37 : 1) {
            for (const char byte : {'\n', '\r', '\0', '\x80'}) {
                std::string text(size, ' ');
                text[at] = byte;
                const ByteFacts facts = facts_of(text, random);
                ASSERT_EQ(facts.line_feeds(), byte == '\n' ? 1u : 0u) << size << ' ' << at;
                ASSERT_EQ(facts.have_returns(), byte == '\r') << size << ' ' << at;
                ASSERT_EQ(facts.are_clean(), byte == '\n' || byte == '\r') << size << ' ' << at;
            }
        }
    }
}

} // namespace
} // namespace bk_parser
