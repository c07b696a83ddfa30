#include "document/json/json_words_impl.h"
#include "document/json/read/json_reader_impl.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

// JSON as in RFC 8259: what is accepted, what is refused, and at which place.

using namespace bk_parser;
using namespace std::string_literals;
using namespace std::string_view_literals;

namespace {

using Event = JsonReader::Event;

/// The events on one line. An error ends with its place and length.
std::string events_of(std::string_view json, JsonReader::Count count = JsonReader::Count::one) {
    static constexpr std::string_view names[] = {"key", "string", "number", "true", "false", "null",
                                                 "{",   "}",      "[",      "]",    "end",   "fault"};
    JsonReader reader(json, count);
    std::string text;
    for (;;) {
        const Event event = reader.next();
        text += names[static_cast<int>(event)];
        if (event <= Event::number) {
            text += ":" + std::string(reader.text());
        }
        if (event == Event::fault) {
            return text + " " + std::string(reader.text()) + " at " + std::to_string(reader.offset()) + "+" +
                   std::to_string(reader.length());
        }
        if (event == Event::end) {
            return text;
        }
        text += " ";
    }
}

bool is_taken(std::string_view json) {
    return events_of(json).ends_with("end");
}

} // namespace

TEST(json_syntax_impl, values_of_every_kind_are_read) {
    EXPECT_EQ(events_of(R"( {"a" : [1, -2.5e+3, "x", true, false, null, {}, []] } )"),
              "{ key:a [ number:1 number:-2.5e+3 string:x true false null { } [ ] ] } end");
    EXPECT_EQ(events_of("3"), "number:3 end");
    EXPECT_EQ(events_of("\t\r\n\"\"\n"), "string: end");
}

TEST(json_syntax_impl, numbers_follow_the_grammar) {
    for (const std::string_view word : {"0"sv, "-0"sv, "10"sv, "0.5"sv, "1e1"sv, "1E+1"sv, "1.0e-10"sv,
                                        "0e0"sv, "123456789012345678901234567890"sv, "1e9999"sv}) {
        EXPECT_TRUE(is_taken(word)) << word;
        EXPECT_NE(json_number_of(word), JsonNumber::none) << word;
    }
    for (const std::string_view word :
         {"01"sv,        "-"sv,     "+1"sv,    ".5"sv,   "1."sv,  "1e"sv,  "1e+"sv,
          "0x1F"sv,      "1a"sv,    "-01"sv,   "1.e1"sv, "--1"sv, "NaN"sv, "Infinity"sv,
          "-Infinity"sv, "1_000"sv, "1.2.3"sv, "00"sv,   "-.5"sv, ""sv}) {
        EXPECT_FALSE(is_taken(word)) << word;
        EXPECT_EQ(json_number_of(word), JsonNumber::none) << word;
    }
    EXPECT_EQ(json_number_of("12"), JsonNumber::whole);
    EXPECT_EQ(json_number_of("1e2"), JsonNumber::broken);
    EXPECT_EQ(events_of("[01]"), "[ fault '01' is not a JSON number at 1+2");
    EXPECT_EQ(events_of("[1.]"), "[ fault '1.' is not a JSON number at 1+2");
}

TEST(json_syntax_impl, words_are_three) {
    for (const std::string_view word : {"True"sv, "nul"sv, "nulll"sv, "undefined"sv, "yes"sv}) {
        EXPECT_FALSE(is_taken(word)) << word;
    }
    EXPECT_EQ(events_of("[TRUE]"), "[ fault 'TRUE' is not a JSON word at 1+4");
}

TEST(json_syntax_impl, escapes_are_decoded) {
    EXPECT_EQ(events_of(R"("\"\\\/\b\f\n\r\t")"), "string:\"\\/\b\f\n\r\t end");
    EXPECT_EQ(events_of(R"("\u0041\u00e9\u20AC\u0000")"),
              "string:A\xC3\xA9\xE2\x82\xAC"s.append(1, '\0') + " end");
    EXPECT_EQ(events_of(R"("\uD83D\uDE00")"), "string:\xF0\x9F\x98\x80 end");
    EXPECT_EQ(events_of(R"("\uDBFF\uDFFF")"), "string:\xF4\x8F\xBF\xBF end");
    EXPECT_EQ(events_of(R"("\x41")"), "fault JSON does not have this escape at 1+2");
    EXPECT_EQ(events_of(R"("\u00g0")"), "fault four hexadecimal digits must follow \\u at 1+2");
    EXPECT_EQ(events_of(R"("\u12)"), "fault four hexadecimal digits must follow \\u at 1+2");
    EXPECT_EQ(events_of(R"("\)"), "fault JSON does not have this escape at 1+1");
}

TEST(json_syntax_impl, halves_of_surrogate_pairs_are_refused) {
    for (const std::string_view json :
         {R"("\uD800")"sv, R"("\uDC00")"sv, R"("\uD800x")"sv, R"("\uD800\n")"sv, R"("\uD800\uD800")"sv,
          R"("\uDC00\uD800")"sv, R"("\uD800\u0041")"sv, R"("\uD800\u12)"sv}) {
        EXPECT_EQ(events_of(json), "fault half of a surrogate pair is not a character at 1+6") << json;
    }
}

TEST(json_syntax_impl, strings_are_utf_8_without_control_characters) {
    EXPECT_EQ(events_of("\"a\xFF\""), "fault a byte that is not UTF-8 at 2+1");
    EXPECT_EQ(events_of("\"\xED\xA0\x80\""), "fault a byte that is not UTF-8 at 1+1"); // a surrogate
    EXPECT_EQ(events_of("\"\xC0\x80\""), "fault a byte that is not UTF-8 at 1+1");     // an over-long NUL
    EXPECT_EQ(events_of("\"a\tb\""), "fault a control character in a string has to be escaped at 2+1");
    EXPECT_EQ(events_of("\"a\0b\""sv), "fault a control character in a string has to be escaped at 2+1");
    EXPECT_EQ(events_of("\"a\nb\""), "fault the string is not closed on its line at 2+1");
    EXPECT_EQ(events_of("\"\x7F\""), "string:\x7F end");
    EXPECT_EQ(events_of("\"abc"), "fault the string is not closed at 0+4");
}

TEST(json_syntax_impl, commas_and_brackets_have_to_match) {
    EXPECT_EQ(events_of("[1 2]"), "[ number:1 fault ',' or ']' is missing at 3+1");
    EXPECT_EQ(events_of("[1,]"), "[ number:1 fault a value is missing at 3+1");
    EXPECT_EQ(events_of("[,1]"), "[ fault a value is missing at 1+1");
    EXPECT_EQ(events_of("{,}"), "{ fault a name in double quotes is missing at 1+1");
    EXPECT_EQ(events_of("{\"a\":1,}"), "{ key:a number:1 fault a name in double quotes is missing at 7+1");
    EXPECT_EQ(events_of("{\"a\" 1}"), "{ fault ':' is missing after the name at 5+1");
    EXPECT_EQ(events_of("{\"a\":}"), "{ key:a fault a value is missing at 5+1");
    EXPECT_EQ(events_of("{\"a\":1 \"b\":2}"), "{ key:a number:1 fault ',' or '}' is missing at 7+1");
    EXPECT_EQ(events_of("{a:1}"), "{ fault a name in double quotes is missing at 1+1");
    EXPECT_EQ(events_of("{1:1}"), "{ fault a name in double quotes is missing at 1+1");
    EXPECT_EQ(events_of("[}"), "[ fault a value is missing at 1+1");
    EXPECT_EQ(events_of("[1}"), "[ number:1 fault ',' or ']' is missing at 2+1");
    EXPECT_EQ(events_of("]"), "fault a value is missing at 0+1");
    EXPECT_EQ(events_of("['a']"), "[ fault a value is missing at 1+1");
    EXPECT_EQ(events_of("[1] // x"), "[ number:1 ] fault there is more after the end of the value at 4+1");
    EXPECT_EQ(events_of("/**/1"), "fault a value is missing at 0+1");
}

TEST(json_syntax_impl, a_text_that_ends_too_early_says_in_what) {
    EXPECT_EQ(events_of(""), "fault a value is missing at 0+0");
    EXPECT_EQ(events_of(" \n"), "fault a value is missing at 2+0");
    EXPECT_EQ(events_of("[1"), "[ number:1 fault the text ends inside an array at 2+0");
    EXPECT_EQ(events_of("[1,"), "[ number:1 fault the text ends inside an array at 3+0");
    EXPECT_EQ(events_of("{\"a\""), "{ fault the text ends inside an object at 4+0");
    EXPECT_EQ(events_of("[{\"a\":"), "[ { key:a fault the text ends inside an object at 6+0");
}

TEST(json_syntax_impl, what_stands_behind_the_value_is_refused) {
    EXPECT_EQ(events_of("1 2"), "number:1 fault there is more after the end of the value at 2+1");
    EXPECT_EQ(events_of("{}}"), "{ } fault there is more after the end of the value at 2+1");
    EXPECT_EQ(events_of("{}\0"sv), "{ } fault there is more after the end of the value at 2+1");
    EXPECT_EQ(events_of("{}\n{}"), "{ } fault there is more after the end of the value at 3+1");
}

TEST(json_syntax_impl, lines_have_a_value_each) {
    using Count = JsonReader::Count;
    EXPECT_EQ(events_of("1\n2\n", Count::lines), "number:1 number:2 end");
    EXPECT_EQ(events_of("", Count::lines), "end");
    EXPECT_EQ(events_of("1 2\n", Count::lines),
              "number:1 fault there is more after the end of the value at 2+1");
    EXPECT_EQ(events_of("[1,\n2]\n", Count::any), "[ number:1 number:2 ] end");
    EXPECT_EQ(events_of("1\n2\n", Count::any), "number:1 number:2 end");
    EXPECT_EQ(events_of("", Count::any), "fault a value is missing at 0+0");
}

TEST(json_syntax_impl, a_byte_order_mark_at_the_begin_is_skipped_and_refused_elsewhere) {
    EXPECT_EQ(events_of("\xEF\xBB\xBF[1]"), "[ number:1 ] end");
    EXPECT_EQ(events_of("[\xEF\xBB\xBF]"), "[ fault a value is missing at 1+1");
}

TEST(json_syntax_impl, a_fault_is_the_last_event) {
    JsonReader reader("]", JsonReader::Count::one);
    EXPECT_EQ(reader.next(), Event::fault);
    EXPECT_EQ(reader.next(), Event::fault);
}

TEST(json_syntax_impl, base64_comes_back_and_is_strict) {
    std::string bytes;
    for (int i = 0; i < 300; ++i) {
        std::string text;
        append_base64(text, bytes);
        std::string back;
        EXPECT_TRUE(resolve_base64(text, back));
        EXPECT_EQ(back, bytes);
        bytes += static_cast<char>(i * 7);
    }
    std::string out;
    append_base64(out, "\xFB\xFF\xFE");
    EXPECT_EQ(out, "+//+");
    for (const std::string_view text : {"A"sv, "AA"sv, "AAA"sv, "A==="sv, "===="sv, "AAAA===="sv, "AA=A"sv,
                                        "AB=="sv, "AAB="sv, "AA==AAAA"sv, "AA A"sv, "AA-_"sv, "AAA\n"sv}) {
        out.clear();
        EXPECT_FALSE(resolve_base64(text, out)) << text;
    }
}
