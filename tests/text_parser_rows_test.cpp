// The parser cuts words in blocks, and numbers in rows. The ends of blocks and rows must not change a result.

#include "parser/parser_group.h"
#include "tests/support/recording_log.h"
#include "tests/support/recording_progress.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr const char* words[] = {
    "1",
    "-2",
    "0.5",
    "-300.25",
    "1e5",
    "12x",
    "-",
    "-x",
    "0x1F",
    "-0x2",
    "0x",
    "12345678901234567890",
    "0.12345678901234567890123456789012345678901234567890123456789012345678",
    "7\"8 9\"",
    "3,",
    "4)",
    "5}",
    "yes",
    "no",
    "name",
    "a_much_longer_name_of_an_entry",
    "list[3]",
    "kind<other>",
    "#key",
    "<empty>",
    "\"\"",
    "\"a string\"",
    "\"an \\\"escaped\\\" string\"",
    "\"cut off\n",
    "\"a string that is so long that no block of sixty-four characters can hold it\"",
    "{",
    "}",
    "(",
    ",",
    "=",
    ":"};
constexpr const char* gaps[] = {" ", " ", " ", "  ", "\n", "\r\n", "\t", "\n    ", ""};

template <class T, std::size_t N>
const T& pick(const T (&choices)[N], std::mt19937& random) {
    return choices[random() % N];
}

/// Words in an order that nobody would write. About every second one is a plain number.
std::string random_text(std::mt19937& random) {
    std::string text = "first { ";
    for (int i = 0; i < 40; ++i) {
        text += random() % 2 == 0 ? pick(words, random)
                                  : std::to_string(static_cast<int>(random() % 2000) - 1000);
        text += pick(gaps, random);
    }
    return text;
}

/// The results of reading a text. Subtracts `lines_before` from the line numbers.
class Reading {
public:
    Reading(const std::string& text, AppProgressBar* progress, core_ulong lines_before = 0) {
        RecordingLog log;
        ParserGroup root("root");
        result_ = root.set_text(CoreString(text), CoreVersion(1.2), progress);
        for (const LoggedMessage& message : log.messages) {
            messages_.push_back(moved_up(message.text, lines_before));
        }
        CoreString printed;
        root.get_text(printed, false, true, 1);
        tree_ = printed.get_view();
        add_places(root, lines_before);
    }

    bool operator==(const Reading&) const = default;

private:
    static std::string moved_up(const std::string& message, core_ulong lines) {
        const std::size_t begin = message.find('(') + 1;
        const std::size_t end = message.find(':', begin);
        if (message.rfind("ParserGroup.set_text: (", 0) != 0 || end == std::string::npos) {
            return message;
        }
        const unsigned long line = std::stoul(message.substr(begin, end - begin)) - lines;
        return message.substr(0, begin) + std::to_string(line) + message.substr(end);
    }

    void add_places(const ParserGroup& root, core_ulong lines_before) {
        std::vector<const ParserGroup*> groups = {&root};
        while (!groups.empty()) {
            const ParserGroup* const group = groups.back();
            groups.pop_back();
            for (const ParserEntry* entry : group->get_entries()) {
                places_.push_back(entry->get_line() - lines_before);
                places_.push_back(entry->get_column());
                for (unsigned int i = 0; i < entry->get_value_count(); ++i) {
                    if (entry->is_value_group(i)) {
                        groups.push_back(entry->get_group(i));
                    }
                }
            }
        }
    }

    bool result_ = false;
    std::vector<std::string> messages_;
    std::string tree_;
    std::vector<core_ulong> places_;
};

} // namespace

TEST(text_parser_rows, numbers_of_the_outermost_group_are_taken_alike_one_by_one_for_a_bar) {
    std::mt19937 random(20261122);
    for (int round = 0; round < 20000; ++round) {
        std::string text = random_text(random);
        text = "a " + text.substr(text.find('{') + 1);
        RecordingProgress progress;
        ASSERT_TRUE(Reading(text, &progress) == Reading(text, nullptr)) << text;
    }
}

TEST(text_parser_rows, a_text_says_the_same_wherever_blocks_begin) {
    std::mt19937 random(20261123);
    for (int round = 0; round < 400; ++round) {
        const std::string text = random_text(random);
        const Reading expected(text, nullptr);
        for (std::size_t lines = 1; lines <= 66; ++lines) {
            ASSERT_TRUE(Reading(std::string(lines, '\n') + text, nullptr, static_cast<core_ulong>(lines)) ==
                        expected)
                << lines << '\n'
                << text;
        }
    }
}

TEST(text_parser_rows, a_row_ends_at_whatever_is_no_number) {
    ParserGroup root("root");
    ASSERT_TRUE(root.set_text("a 1 2.5 -3 0xFF 4 yes 5 \"x\" 6 b 7 8", CoreVersion(1.2), nullptr));
    const ParserEntry& entry = *root.get_entries()[0];
    constexpr ParserValue::Type types[] = {
        ParserValue::TYPE_INT,         ParserValue::TYPE_DOUBLE, ParserValue::TYPE_INT,
        ParserValue::TYPE_BINARY_DATA, ParserValue::TYPE_INT,    ParserValue::TYPE_BOOL,
        ParserValue::TYPE_INT,         ParserValue::TYPE_STRING, ParserValue::TYPE_INT};
    ASSERT_EQ(entry.get_value_count(), std::size(types));
    for (unsigned int i = 0; i < std::size(types); ++i) {
        EXPECT_EQ(entry.get_value_type(i), types[i]) << i;
    }
    EXPECT_EQ(entry.get_int(2), -3);
    EXPECT_EQ(root.get_entries()[1]->get_int(1), 8);
}

TEST(text_parser_rows, numbers_without_an_entry_are_faults_each) {
    RecordingLog log;
    ParserGroup root("root");
    root.set_text("1 2 a 3 4 ) 5 6 b 7", CoreVersion(1.2), nullptr);
    EXPECT_EQ(log.messages.size(), 5u);
}
