#include "parser/parser_group.h"
#include "parser/parser_value.h"

#include "tests/support/counted_objects.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"
#include "tests/support/value_type.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <type_traits>
#include <utility>

using namespace std::literals;

namespace {

constexpr double largest = 1.7976931348623157e308;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

ParserValue of_type(unsigned int type, const char* text) {
    return ParserValue(static_cast<ParserValue::Type>(type), CoreString(text));
}

TEST(value, the_types_have_their_numbers) {
    EXPECT_EQ(ParserValue::TYPE_GROUP, 0u);
    EXPECT_EQ(ParserValue::TYPE_BOOL, 1u);
    EXPECT_EQ(ParserValue::TYPE_CHAR, 2u);
    EXPECT_EQ(ParserValue::TYPE_INT, 3u);
    EXPECT_EQ(ParserValue::TYPE_DOUBLE, 4u);
    EXPECT_EQ(ParserValue::TYPE_STRING, 5u);
    EXPECT_EQ(ParserValue::TYPE_BINARY_DATA, 6u);
    EXPECT_EQ(ParserValue::TYPE_WORD, 7u);
}

TEST(value, the_types_have_their_names) {
    const char* names[] = {"TYPE_GROUP",  "TYPE_BOOL",   "TYPE_CHAR",        "TYPE_INT",
                           "TYPE_DOUBLE", "TYPE_STRING", "TYPE_BINARY_DATA", "TYPE_WORD"};
    for (unsigned int type = 0; type < 8; ++type) {
        EXPECT_EQ(plain(ParserValue::get_type_name(static_cast<ParserValue::Type>(type))), names[type]);
    }
    for (const unsigned int type : {8u, 9u, 255u, 256u, 0x01000003u, 0xFFFFFFFFu}) {
        EXPECT_EQ(plain(ParserValue::get_type_name(static_cast<ParserValue::Type>(type))), "TYPE_UNKNOWN");
    }
}

TEST(value, its_destructor_is_virtual_and_it_takes_thirty_two_bytes) {
    EXPECT_TRUE(std::has_virtual_destructor_v<ParserValue>);
    EXPECT_EQ(sizeof(ParserValue), 32u);
}

TEST(value, a_char_is_kept) {
    const ParserValue value('A');
    EXPECT_EQ(type_name(value), "TYPE_CHAR");
    EXPECT_EQ(value.get_as_char(), 'A');
}

TEST(value, an_int_is_kept_as_given) {
    for (const int number : {0, 1, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        const ParserValue value(number);
        EXPECT_EQ(type_name(value), "TYPE_INT");
        EXPECT_EQ(value.get_as_int(), number);
    }
}

TEST(value, a_double_is_kept) {
    const ParserValue value(-2.5);
    EXPECT_EQ(type_name(value), "TYPE_DOUBLE");
    EXPECT_EQ(value.get_as_double(), -2.5);
}

TEST(value, a_double_is_always_finite) {
    EXPECT_EQ(ParserValue(infinity).get_as_double(), largest);
    EXPECT_EQ(ParserValue(-infinity).get_as_double(), -largest);
    EXPECT_EQ(ParserValue(not_a_number).get_as_double(), -largest);
    EXPECT_EQ(ParserValue(-not_a_number).get_as_double(), -largest);
    EXPECT_EQ(ParserValue(largest).get_as_double(), largest);
    EXPECT_EQ(ParserValue(-largest).get_as_double(), -largest);
}

TEST(value, a_bool_is_kept) {
    EXPECT_EQ(type_name(ParserValue(true)), "TYPE_BOOL");
    EXPECT_TRUE(ParserValue(true).get_as_bool());
    EXPECT_FALSE(ParserValue(false).get_as_bool());
}

TEST(value, a_string_is_copied) {
    for (const std::string& text : {""s, "short"s, "a text that stands in a block"s, "with\0nul"s}) {
        CoreString source{std::string_view(text)};
        const ParserValue value(source);
        source.set_data("overwritten, and long enough for a block");
        EXPECT_EQ(type_name(value), "TYPE_STRING");
        EXPECT_EQ(plain(value.get_as_string()), text);
    }
}

TEST(value, bytes_are_copied) {
    char bytes[] = {1, 0, -1};
    const ParserValue value(bytes, 3);
    bytes[0] = 9;
    EXPECT_EQ(type_name(value), "TYPE_BINARY_DATA");
    unsigned int size = 77;
    const void* data = value.get_as_binary_data(size);
    ASSERT_EQ(size, 3u);
    EXPECT_NE(data, bytes);
    EXPECT_EQ(std::string(static_cast<const char*>(data), 3), "\x01\0\xFF"s);
}

TEST(value, no_bytes_give_a_null_pointer_and_no_size) {
    char byte = 1;
    for (void* source : {static_cast<void*>(nullptr), static_cast<void*>(&byte)}) {
        const ParserValue value(source, 0);
        unsigned int size = 77;
        EXPECT_EQ(value.get_as_binary_data(size), nullptr);
        EXPECT_EQ(size, 0u);
        EXPECT_EQ(type_name(value), "TYPE_BINARY_DATA");
    }
}

TEST(value, a_group_is_adopted_and_deleted_with_the_value) {
    ASSERT_EQ(CountedGroup::alive, 0);
    {
        auto* group = new CountedGroup;
        const ParserValue value(group);
        EXPECT_EQ(type_name(value), "TYPE_GROUP");
        group->add_entry(CoreString("a"), 0, 0)->add_int(1);
        EXPECT_EQ(written(value), "counted { a 1 }");
        EXPECT_EQ(CountedGroup::alive, 1);
    }
    EXPECT_EQ(CountedGroup::alive, 0);
}

TEST(value, a_null_group_gives_a_new_one_without_a_name) {
    const ParserValue value(static_cast<ParserGroup*>(nullptr));
    EXPECT_EQ(type_name(value), "TYPE_GROUP");
    EXPECT_EQ(written(value), "{ }");
}

TEST(value, a_value_read_from_text_keeps_its_type_and_its_spelling) {
    const std::pair<unsigned int, const char*> cases[] = {
        {ParserValue::TYPE_BOOL, "maybe"},   {ParserValue::TYPE_CHAR, "0065"},
        {ParserValue::TYPE_INT, "+007x"},    {ParserValue::TYPE_DOUBLE, "1.50"},
        {ParserValue::TYPE_WORD, "<empty>"}, {ParserValue::TYPE_DOUBLE, "nan"}};
    const char* names[] = {"TYPE_BOOL", "TYPE_CHAR", "TYPE_INT", "TYPE_DOUBLE", "TYPE_WORD", "TYPE_DOUBLE"};
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const ParserValue value = of_type(cases[i].first, cases[i].second);
        EXPECT_EQ(written(value), cases[i].second);
        EXPECT_EQ(type_name(value), names[i]);
        EXPECT_EQ(written(value), cases[i].second);
    }
}

TEST(value, a_string_read_from_text_is_that_text) {
    for (const std::string& text : {""s, "a\"b"s, "a text that stands in a block"s, "\"quoted\""s}) {
        const ParserValue value(ParserValue::TYPE_STRING, CoreString(std::string_view(text)));
        EXPECT_EQ(type_name(value), "TYPE_STRING");
        EXPECT_EQ(plain(value.get_as_string()), text);
    }
}

TEST(value, a_group_made_from_a_text_has_it_for_its_name) {
    EXPECT_EQ(written(of_type(ParserValue::TYPE_GROUP, "box")), "box { }");
    EXPECT_EQ(written(of_type(ParserValue::TYPE_GROUP, "")), "{ }");
    EXPECT_EQ(type_name(of_type(ParserValue::TYPE_GROUP, "box")), "TYPE_GROUP");
}

TEST(value, binary_data_made_from_a_text_is_decoded_at_once_and_the_text_is_not_kept) {
    const ParserValue value = of_type(ParserValue::TYPE_BINARY_DATA, "0x01ff99999999");
    EXPECT_EQ(written(value), "0x010001000000");
    unsigned int size = 0;
    EXPECT_EQ(std::string(static_cast<const char*>(value.get_as_binary_data(size)), 2), "\x01\0"s);
    EXPECT_EQ(size, 2u);
    EXPECT_EQ(written(of_type(ParserValue::TYPE_BINARY_DATA, "nonsense")), "0x00000000");
}

TEST(value, the_text_a_value_was_made_from_may_go) {
    for (const unsigned int type : {1u, 2u, 3u, 4u, 5u, 7u}) {
        CoreString text("12345678901234567890");
        const ParserValue value(static_cast<ParserValue::Type>(type), text);
        text.set_data("####################");
        EXPECT_EQ(written(value), type == 5u ? "\"12345678901234567890\"" : "12345678901234567890");
    }
}

TEST(value, a_type_of_another_number_stores_nothing) {
    for (const unsigned int type : {8u, 9u, 255u, 0x00FFFFFFu, 0x01000003u, 0x02000003u, 0x0F000005u,
                                    0x03000000u, 0x80000006u, 0xFFFFFFFFu}) {
        const ParserValue value = of_type(type, "12345678901234567890");
        EXPECT_EQ(type_name(value), "TYPE_UNKNOWN") << type;
        RecordingLog log;
        EXPECT_EQ(value.get_as_int(), 0) << type;
        EXPECT_TRUE(value.get_as_string().is_empty()) << type;
        EXPECT_EQ(written(value), "") << type;
        const ParserValue copy(value);
        EXPECT_EQ(written(copy), "") << type;
        EXPECT_EQ(type_name(copy), "TYPE_UNKNOWN") << type;
    }
}

TEST(value, a_plain_pointer_to_text_is_not_taken_for_a_bool) {
    EXPECT_FALSE((std::is_constructible_v<ParserValue, const char*>));
}

} // namespace
