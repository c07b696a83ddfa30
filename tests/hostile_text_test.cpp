#include "tests/support/counting_log.h"
#include "tests/support/parsed_text.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using Messages = std::vector<std::string>;

constexpr unsigned int million = 1000000;
constexpr unsigned int many = 100000;

std::string repeated(std::string_view part, unsigned int count = million) {
    std::string text;
    text.reserve(part.size() * count);
    for (unsigned int i = 0; i < count; ++i) {
        text += part;
    }
    return text;
}

/// Checks that a progress bar gets values from 0 to 1.
class CheckedProgress : public AppProgressBar {
public:
    void set_value(const float& value) override { is_sound = is_sound && value >= 0.0f && value <= 1.0f; }

    bool is_sound = true;
};

/// Parses, prints and parses again, with a progress bar and a log. Returns how many messages the first parse
/// logged.
unsigned int survive(const std::string& text) {
    CountingLog log;
    CheckedProgress progress;
    ParserGroup group("g");
    group.set_text(core(text), CoreVersion(1.2), &progress);
    const unsigned int messages = log.count;
    EXPECT_TRUE(progress.is_sound);
    CoreString printed;
    group.get_text(printed, true, false, 1);
    ParserGroup again("g");
    again.set_text(printed, CoreVersion(1.0), nullptr);
    return messages;
}

} // namespace

TEST(hostile_text, random_bytes_are_survived) {
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        std::string text;
        for (auto length = random() % 300; length > 0; --length) {
            text += static_cast<char>(random() % 256);
        }
        survive(text);
    }
}

TEST(hostile_text, random_bytes_of_the_syntax_are_survived) {
    static constexpr std::string_view alphabet = "ab19 \n\r\t{}(),:=\"\\'<>[].#_-+x0e/";
    std::mt19937 random(2);
    std::size_t messages = 0;
    for (int round = 0; round < 5000; ++round) {
        std::string text;
        for (auto length = random() % 100; length > 0; --length) {
            text += alphabet[random() % alphabet.size()];
        }
        messages += survive(text);
    }
    EXPECT_GT(messages, 5000u);
}

TEST(hostile_text, each_byte_alone_and_between_names_is_survived) {
    for (int code = 0; code < 256; ++code) {
        const std::string byte(1, static_cast<char>(code));
        survive(byte);
        survive("a 1 " + byte + " b 2 ");
        survive("a" + byte + "b 1 ");
        survive("a \"" + byte + "\" b 2 ");
        survive("a \"" + byte);
    }
}

TEST(hostile_text, nuls_are_words_and_characters_like_any_other) {
    using namespace std::string_literals;
    ParsedText parsed("a \"x\0y\" 1 b 2 "s);
    EXPECT_EQ(parsed.messages(), Messages{});
    ASSERT_EQ(parsed.count(), 2u);
    EXPECT_EQ(plain(parsed.entry(0).get_string(0)), "x\0y"s);
    EXPECT_EQ(ParsedText("a\0b 1 "s).messages().front(), fault_at(1, 1, "Unknown word type: 'a\0b'"s));
    EXPECT_EQ(survive(repeated("\0"s)), 1u);
}

TEST(hostile_text, bytes_from_0x80_up_are_no_letters) {
    for (int code = 0x80; code < 256; ++code) {
        const std::string name = std::string("a") + static_cast<char>(code);
        EXPECT_EQ(ParsedText(name + " ").messages(),
                  (Messages{fault_at(1, 1, "Unknown word type: '" + name + "'")}));
    }
}

TEST(hostile_text, bytes_from_0x80_up_stand_in_strings) {
    std::string text;
    for (int code = 0x80; code < 256; ++code) {
        text += static_cast<char>(code);
    }
    ParsedText parsed("a \"" + text + "\" ");
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_EQ(plain(parsed.entry(0).get_string(0)), text);
}

TEST(hostile_text, a_quote_left_open_takes_its_line_and_no_more) {
    ParsedText parsed("a \"" + repeated("x { ") + "\nb 1 c 2 ");
    EXPECT_EQ(parsed.messages().size(), 2u);
    EXPECT_EQ(parsed.messages().back(), fault_at(2, 1, "Entry 'b' has no value."));
    EXPECT_EQ(parsed.print(), " a 1 c 2");
}

TEST(hostile_text, a_quote_left_open_at_the_end_takes_the_rest) {
    ParsedText parsed("a 1 \"" + repeated("x { "));
    EXPECT_EQ(parsed.messages().size(), 1u);
    EXPECT_EQ(parsed.print(), " a 1");
    EXPECT_FALSE(parsed.result());
}

TEST(hostile_text, quotes_alone_are_words) {
    EXPECT_EQ(survive(repeated("\"")), 1u);
    EXPECT_EQ(survive(repeated("\"\n", many)), many);
    EXPECT_EQ(survive(repeated("\\\" ", many)), many);
}

TEST(hostile_text, a_million_backslashes_are_a_word) {
    EXPECT_EQ(survive(repeated("\\")), 1u);
    EXPECT_EQ(survive("a \"" + repeated("\\\\") + "\""), 0u);
}

TEST(hostile_text, a_million_open_braces_without_entries_are_faults) {
    ParsedText parsed(repeated("{"));
    ASSERT_EQ(parsed.messages().size(), million);
    EXPECT_EQ(parsed.messages().back(), fault_at(1, million - 1, "Group without entry"));
    EXPECT_EQ(parsed.count(), 0u);
    EXPECT_FALSE(parsed.result());
}

TEST(hostile_text, a_million_closing_braces_end_with_the_first) {
    ParsedText parsed(repeated("}"));
    EXPECT_EQ(parsed.messages(), Messages{});
    EXPECT_TRUE(parsed.result());
}

TEST(hostile_text, a_million_faults_are_reported_each_in_its_place) {
    ParsedText parsed(repeated(": \n"));
    ASSERT_EQ(parsed.messages().size(), million);
    EXPECT_EQ(parsed.messages().front(), fault_at(1, 0, "Unknown word type: ':'"));
    EXPECT_EQ(parsed.messages()[million / 2], fault_at(million / 2 + 1, 0, "Unknown word type: ':'"));
    EXPECT_EQ(parsed.messages().back(), fault_at(million, 0, "Unknown word type: ':'"));
}

TEST(hostile_text, many_refused_names_are_reported) {
    ParsedText parsed(repeated("yes[] ", many));
    EXPECT_EQ(parsed.messages().size(), many); // the last one has no text after it
    EXPECT_EQ(parsed.count(), 0u);
}

TEST(hostile_text, a_template_nested_a_million_deep_is_inside_a_template) {
    ParsedText parsed("p 0 " + repeated("a<") + "b" + repeated(">") + " 1 ");
    EXPECT_EQ(parsed.messages(),
              (Messages{fault_at(1, 5, "Entry 'a' has template inside template declaration.")}));
    EXPECT_EQ(parsed.print(), " p 0 1");
}

TEST(hostile_text, a_template_nested_a_million_deep_around_no_name_is_an_unknown_word) {
    ParsedText parsed("p 0 " + repeated("a<") + "1" + repeated(">") + " 1 ");
    ASSERT_EQ(parsed.messages().size(), 1u);
    EXPECT_TRUE(parsed.messages()[0].starts_with("ParserGroup.set_text: (1:5) Unknown word type: 'a"));
    EXPECT_EQ(parsed.print(), " p 0 1");
}

TEST(hostile_text, a_million_templates_that_do_not_close_are_an_unknown_word) {
    EXPECT_EQ(survive("p 0 " + repeated("a<") + " 1 "), 1u);
    EXPECT_EQ(survive("p 0 " + repeated("a<") + "> 1 "), 1u);
    EXPECT_EQ(survive("p 0 a" + repeated(">") + " 1 "), 1u);
}

TEST(hostile_text, a_million_brackets_are_an_unknown_word) {
    EXPECT_EQ(survive("p 0 a" + repeated("[") + " 1 "), 1u);
    EXPECT_EQ(survive("p 0 a" + repeated("[") + repeated("]") + " 1 "), 1u);
}

TEST(hostile_text, many_parentheses_are_faults) {
    EXPECT_EQ(survive(repeated("(", many)), many);
    EXPECT_EQ(survive(repeated(")", many)), many);
    EXPECT_EQ(survive("f" + repeated("(", many)), many - 1);
}

TEST(hostile_text, many_commas_or_operators_are_faults) {
    EXPECT_EQ(survive("a 1 " + repeated(",", many)), many - 1);
    EXPECT_EQ(survive("a " + repeated("=", many)), many - 1);
}

TEST(hostile_text, a_name_of_a_million_letters_is_a_name) {
    ParsedText parsed(repeated("n") + " 1 ");
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_EQ(parsed.entry(0).get_name().get_length(), million);
}

TEST(hostile_text, a_number_of_a_million_digits_is_the_nearest_number) {
    ParsedText parsed("a " + repeated("9") + " " + repeated("9") + ".5 -" + repeated("9") + " ");
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_EQ(parsed.entry(0).get_int(0), 2147483647);
    EXPECT_EQ(parsed.entry(0).get_double(1), 1.7976931348623157e308);
    EXPECT_EQ(parsed.entry(0).get_int(2), -2147483647 - 1);
}

TEST(hostile_text, a_million_values_belong_to_one_entry) {
    ParsedText parsed("a " + repeated("1,"));
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_EQ(parsed.entry(0).get_value_count(), million);
}

TEST(hostile_text, a_million_line_ends_are_counted) {
    ParsedText parsed(repeated("\r\n") + "a 1 ");
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_EQ(parsed.entry(0).get_line(), 2 * million + 1);
}

TEST(hostile_text, binary_data_of_a_million_digits_is_decoded) {
    ParsedText parsed("a 0x" + repeated("FF") + "00000000 0x" + repeated("g") + " ");
    ASSERT_EQ(parsed.count(), 1u);
    EXPECT_EQ(parsed.entry(0).get_binary_data_size(0), million);
    EXPECT_EQ(parsed.entry(0).get_binary_data_size(1), (million - 8) / 2);
}
