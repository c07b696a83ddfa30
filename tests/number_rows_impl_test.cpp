#include "document/problems/values/number_rows_impl.h"
#include "document/problems/values/value_checks_impl.h"
#include "parser/text/parser_entry_cutter_impl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

using bk_parser::are_plain_numbers;
using bk_parser::find_number_flaw;

namespace {

constexpr unsigned int documents = 20000;

unsigned int below(std::mt19937& random, unsigned int end) {
    return static_cast<unsigned int>(random() % end);
}

/// Numbers as they are and as they should not be, of which the cutter takes some.
std::string random_number(std::mt19937& random) {
    constexpr std::string_view characters = "00123456789012345678901234567890123456789.....-e;E+x/";
    std::string number = below(random, 4) == 0 ? "-" : "";
    number += characters[2 + below(random, 10)];
    for (unsigned int left = below(random, below(random, 8) == 0 ? 50 : 13); left != 0; --left) {
        number += characters[below(random, below(random, 8) == 0 ? 53 : 44)];
    }
    return number;
}

std::string random_row(std::mt19937& random) {
    std::string row = "name";
    for (unsigned int left = 1 + below(random, 9); left != 0; --left) {
        row.append(1 + (below(random, 8) == 0 ? below(random, 5) : 0), below(random, 16) == 0 ? '\n' : ' ');
        row += random_number(random);
    }
    return row + "\nnext 1\n";
}

/// What the rows of a text's first entry were found to be.
struct Seen {
    unsigned int plain = 0;
    unsigned int others = 0;
};

void compare_row(const bk::KnownEntry::Numbers& row, const std::string& text, Seen& seen) {
    bool has_flaw = false;
    bool is_easy = true; // what the check of a single number takes for plain, and no ten digits begin one
    const auto look = [&](std::string_view word, bool is_double) {
        has_flaw = has_flaw || !find_number_flaw(word, !is_double).code.empty();
        const std::size_t point = std::min(word.find('.'), word.size());
        const std::string padded = std::string(word) + std::string(64, ' ');
        is_easy = is_easy && point < 10 &&
                  bk_parser::is_plain_number(std::string_view(padded).substr(0, word.size()), !is_double,
                                             padded.data() + padded.size());
    };
    row.for_each(look);
    const bool is_plain = are_plain_numbers(row);
    EXPECT_FALSE(is_plain && has_flaw) << text;
    EXPECT_TRUE(is_plain || !is_easy) << text;
    ++(is_plain ? seen.plain : seen.others);
}

} // namespace

TEST(number_rows, a_row_is_plain_only_when_none_of_its_numbers_has_a_flaw) {
    std::mt19937 random(1);
    Seen seen;
    for (unsigned int i = 0; i < documents; ++i) {
        std::string text = random_row(random);
        text.append(i % 2 == 0 ? 100 : 0, ' '); // the last masks of a text have fewer characters
        bk::EntryCutter cutter(text);
        bk::KnownEntry known;
        if (cutter.seek(text.data()) && cutter.cut(known, false) && known.kind == bk::KnownEntry::numbers) {
            for (const bk::KnownEntry::Numbers& row : known.rows) {
                compare_row(row, text, seen);
            }
        }
    }
    EXPECT_GT(seen.plain, documents / 10);
    EXPECT_GT(seen.others, documents / 10);
}

TEST(number_rows, an_int_of_ten_digits_makes_no_plain_row) {
    for (const char* text : {"name 1234567890 ", "name 1 -1234567890 2.5 ", "name 1.5 1.5.5 "}) {
        const std::string padded = text + std::string("\nnext 1\n") + std::string(100, ' ');
        bk::EntryCutter cutter(padded);
        bk::KnownEntry known;
        ASSERT_TRUE(cutter.seek(padded.data()) && cutter.cut(known, false)) << text;
        EXPECT_FALSE(are_plain_numbers(known.rows.front())) << text;
    }
}
