#include "tests/support/parsed_text.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

namespace {

struct Example {
    const char* text;
    const char* message;
};

/// One text for each message. The text gives no other message.
const Example examples[] = {
    {"= ", "ParserGroup.set_text: (1:0) Entry '=' wrongly placed.\n"},
    {", ", "ParserGroup.set_text: (1:0) Entry ',' wrongly placed.\n"},
    {"a", "ParserGroup.set_text: (1:0) Entry 'a' has no value.\n"},
    {"x<y<z>> ", "ParserGroup.set_text: (1:1) Entry 'x' has template inside template declaration.\n"},
    {"12 ", "ParserGroup.set_text: (1:1) Value without entry: 12\n"},
    {"{ ", "ParserGroup.set_text: (1:0) Group without entry\n"},
    {"( ", "ParserGroup.set_text: (1:0) Argument list without entry\n"},
    {"a 1 ( ", "ParserGroup.set_text: (1:4) Cannot mix argument list with entry values\n"},
    {"f(( ", "ParserGroup.set_text: (1:2) Argument list inside an argument list\n"},
    {"#k ( ", "ParserGroup.set_text: (1:3) Function call on keyword\n"},
    {") ", "ParserGroup.set_text: (1:0) Closing an argument list without entry\n"},
    {"a ) ", "ParserGroup.set_text: (1:2) Closing an argument list in a non function call\n"},
    {"?! ", "ParserGroup.set_text: (1:1) Unknown word type: '?!'\n"},
    {"yes[1]  ", "ParserGroup.add_entry: 'yes' is not a valid entry name\n"},
};

std::string print_with_verbosity(const char* text, int verbosity, std::vector<LoggedMessage>& messages) {
    RecordingLog log(verbosity);
    ParserGroup group("g");
    group.set_text(text, CoreVersion(1.2), nullptr);
    messages = log.take();
    return written(group);
}

} // namespace

TEST(text_parser_messages, each_has_its_exact_text_and_level) {
    for (const Example& example : examples) {
        std::vector<LoggedMessage> messages;
        print_with_verbosity(example.text, 2, messages);
        EXPECT_EQ(messages, one_warning(example.message)) << example.text;
    }
}

TEST(text_parser_messages, none_is_composed_below_verbosity_2) {
    for (const Example& example : examples) {
        for (const int verbosity : {-1, 0, 1}) {
            std::vector<LoggedMessage> messages;
            print_with_verbosity(example.text, verbosity, messages);
            EXPECT_TRUE(messages.empty()) << example.text;
        }
    }
}

TEST(text_parser_messages, a_higher_verbosity_takes_them_too) {
    std::vector<LoggedMessage> messages;
    print_with_verbosity("= ", 7, messages);
    EXPECT_EQ(messages.size(), 1u);
}

TEST(text_parser_messages, the_tree_does_not_depend_on_whether_they_are_taken) {
    const char* text =
        "a 1 = 2 b 3 : 4 x<y<z>> 5 , , 6 c (7) d 8 (9) #k (10) ) { e 11 } f { g 12 } (13) yes[1] 14 ";
    std::vector<LoggedMessage> messages;
    const std::string loud = print_with_verbosity(text, 2, messages);
    EXPECT_GT(messages.size(), 5u);
    EXPECT_EQ(print_with_verbosity(text, 0, messages), loud);
}

TEST(text_parser_messages, they_come_in_the_order_of_the_text) {
    ParsedText parsed("1\n{\n)\n:\n=\n");
    EXPECT_EQ(parsed.messages(),
              (std::vector<std::string>{
                  fault_at(1, 1, "Value without entry: 1"), fault_at(2, 0, "Group without entry"),
                  fault_at(3, 0, "Closing an argument list without entry"),
                  fault_at(4, 0, "Unknown word type: ':'"), fault_at(5, 0, "Entry '=' wrongly placed.")}));
}

TEST(text_parser_messages, a_word_is_quoted_without_its_suffixes) {
    EXPECT_EQ(ParsedText("a<b>").messages().front(), fault_at(1, 0, "Entry 'a' has no value."));
    EXPECT_EQ(ParsedText("a[3]").messages().front(), fault_at(1, 0, "Entry 'a' has no value."));
}

TEST(text_parser_messages, a_string_is_quoted_decoded_with_its_quotes) {
    EXPECT_EQ(ParsedText("\"a\\tb\\\"\" ").messages().front(),
              fault_at(1, 1, "Value without entry: \"a\tb\"\""));
}

TEST(text_parser_messages, a_nul_in_a_word_is_quoted) {
    const std::string text("?\0! ", 4);
    EXPECT_EQ(ParsedText(text).messages().front(),
              fault_at(1, 1, std::string("Unknown word type: '?\0!'", 24)));
}

TEST(text_parser_messages, bytes_from_0x80_up_in_a_word_are_quoted_as_they_are) {
    EXPECT_EQ(ParsedText("\xC3\xA9 ").messages().front(), fault_at(1, 1, "Unknown word type: '\xC3\xA9'"));
}
