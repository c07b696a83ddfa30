#include "parser/parser_group.h"
#include "parser/parser_value.h"

#include "tests/support/counted_objects.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"
#include "tests/support/value_type.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

using namespace std::literals;

namespace {

constexpr double largest = 1.7976931348623157e308;

/// A new value of each type and each way of storing it.
std::vector<std::unique_ptr<ParserValue>> every_value() {
    char bytes[] = "some bytes";
    std::vector<std::unique_ptr<ParserValue>> values;
    values.push_back(std::make_unique<ParserValue>(true));
    values.push_back(std::make_unique<ParserValue>('A'));
    values.push_back(std::make_unique<ParserValue>(12));
    values.push_back(std::make_unique<ParserValue>(1.5));
    values.push_back(std::make_unique<ParserValue>(CoreString("short")));
    values.push_back(std::make_unique<ParserValue>(CoreString("a text that stands in a block")));
    values.push_back(std::make_unique<ParserValue>(bytes, 10));
    values.push_back(std::make_unique<ParserValue>(new CountedGroup));
    for (unsigned int type = 0; type < 9; ++type) {
        values.push_back(std::make_unique<ParserValue>(static_cast<ParserValue::Type>(type),
                                                       CoreString("0x123456789ABCDEF0")));
    }
    return values;
}

TEST(value_setter, every_setter_replaces_every_value) {
    char bytes[] = "new bytes";
    const std::vector<std::pair<std::function<void(ParserValue&)>, std::pair<std::string, std::string>>>
        setters = {{[](ParserValue& value) { value.set_bool(true); }, {"TYPE_BOOL", "yes"}},
                   {[](ParserValue& value) { value.set_bool(false); }, {"TYPE_BOOL", "no"}},
                   {[](ParserValue& value) { value.set_char('A'); }, {"TYPE_CHAR", "65"}},
                   {[](ParserValue& value) { value.set_int(-7); }, {"TYPE_INT", "-7"}},
                   {[](ParserValue& value) { value.set_double(0.25); }, {"TYPE_DOUBLE", "0.25"}},
                   {[](ParserValue& value) { value.set_string(CoreString("x")); }, {"TYPE_STRING", "\"x\""}},
                   {[](ParserValue& value) { value.set_string(CoreString("a text of more than eleven")); },
                    {"TYPE_STRING", "\"a text of more than eleven\""}},
                   {[&](ParserValue& value) { value.set_binary_data(bytes, 2); },
                    {"TYPE_BINARY_DATA", "0x6E65D3000000"}}};
    for (const auto& [set, expected] : setters) {
        for (const std::unique_ptr<ParserValue>& value : every_value()) {
            set(*value);
            EXPECT_EQ(type_name(*value), expected.first);
            EXPECT_EQ(written(*value), expected.second);
            set(*value);
            EXPECT_EQ(written(*value), expected.second);
        }
    }
    EXPECT_EQ(CountedGroup::alive, 0);
}

TEST(value_setter, what_was_set_is_what_is_read) {
    ParserValue value(0);
    value.set_bool(true);
    EXPECT_TRUE(value.get_as_bool());
    value.set_char(static_cast<char>(0xE9));
    EXPECT_EQ(value.get_as_char(), static_cast<char>(0xE9));
    value.set_int(std::numeric_limits<int>::min());
    EXPECT_EQ(value.get_as_int(), std::numeric_limits<int>::min());
    value.set_double(-0.1);
    EXPECT_EQ(value.get_as_double(), -0.1);
    value.set_string(CoreString("a\0b", 3));
    EXPECT_EQ(plain(value.get_as_string()), "a\0b"s);
}

TEST(value_setter, a_set_double_is_brought_to_the_finite_range) {
    ParserValue value(0.0);
    value.set_double(std::numeric_limits<double>::infinity());
    EXPECT_EQ(value.get_as_double(), largest);
    value.set_double(-std::numeric_limits<double>::infinity());
    EXPECT_EQ(value.get_as_double(), -largest);
    value.set_double(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(value.get_as_double(), -largest);
    EXPECT_EQ(written(value), "-1.7976931348623157e+308");
}

TEST(value_setter, setting_gives_up_the_spelling) {
    ParserValue value(ParserValue::TYPE_DOUBLE, CoreString("1.50"));
    EXPECT_EQ(value.get_as_double(), 1.5);
    EXPECT_EQ(written(value), "1.50");
    value.set_double(1.5);
    EXPECT_EQ(written(value), "1.5");
    value.set_double(2.5);
    EXPECT_EQ(written(value), "2.5");
}

TEST(value_setter, a_string_is_set_to_its_own_string) {
    for (const char* text : {"short", "a text that stands in a block"}) {
        ParserValue value{CoreString(text)};
        value.set_string(value.get_as_string());
        EXPECT_EQ(plain(value.get_as_string()), text);
    }
}

TEST(value_setter, bytes_are_set_to_a_piece_of_the_own_bytes) {
    char bytes[] = "0123456789";
    ParserValue value(bytes, 10);
    unsigned int size = 0;
    char* own = static_cast<char*>(value.get_as_binary_data(size));
    value.set_binary_data(own + 2, 3);
    own = static_cast<char*>(value.get_as_binary_data(size));
    ASSERT_EQ(size, 3u);
    EXPECT_EQ(std::string(own, size), "234");
}

TEST(value_setter, a_scalar_is_set_to_what_stands_in_the_own_string) {
    for (const char* text : {"AB", "A text that stands in a block"}) {
        ParserValue value{CoreString(text)};
        value.set_char(value.get_as_string().get_data()[0]);
        EXPECT_EQ(value.get_as_int(), 'A');
    }
}

/// Binary data with the bytes of a number.
template <class Scalar>
ParserValue bytes_of(Scalar scalar) {
    return ParserValue(&scalar, sizeof(scalar));
}

template <class Scalar>
const Scalar& own(const ParserValue& value) {
    unsigned int size = 0;
    return *static_cast<const Scalar*>(value.get_as_binary_data(size));
}

TEST(value_setter, a_scalar_is_set_to_what_stands_in_the_own_bytes) {
    ParserValue value = bytes_of(true);
    value.set_bool(own<bool>(value));
    EXPECT_TRUE(value.get_as_bool());
    ParserValue character = bytes_of('x');
    character.set_char(own<char>(character));
    EXPECT_EQ(character.get_as_char(), 'x');
    ParserValue number = bytes_of(77);
    number.set_int(own<int>(number));
    EXPECT_EQ(number.get_as_int(), 77);
    ParserValue decimal = bytes_of(2.5);
    decimal.set_double(own<double>(decimal));
    EXPECT_EQ(decimal.get_as_double(), 2.5);
}

TEST(value_setter, set_bytes_are_copied_and_may_be_changed_in_place) {
    char bytes[] = "abc";
    ParserValue value(1);
    value.set_binary_data(bytes, 3);
    bytes[0] = '#';
    unsigned int size = 0;
    char* own = static_cast<char*>(value.get_as_binary_data(size));
    EXPECT_EQ(std::string(own, size), "abc");
    own[1] = 'X';
    EXPECT_EQ(std::string(static_cast<char*>(value.get_as_binary_data(size)), 3), "aXc");
}

TEST(value_setter, no_bytes_are_set_too) {
    char byte = 1;
    ParserValue value(1);
    value.set_binary_data(&byte, 0);
    unsigned int size = 77;
    value.get_as_binary_data(size);
    EXPECT_EQ(size, 0u);
    EXPECT_EQ(type_name(value), "TYPE_BINARY_DATA");
    EXPECT_EQ(written(value), "0x00000000");
}

TEST(value_setter, set_bytes_have_a_buffer_even_when_there_are_none) {
    char byte = 1;
    ParserValue value(1);
    value.set_binary_data(&byte, 0);
    unsigned int size = 77;
    EXPECT_NE(value.get_as_binary_data(size), nullptr);
}

TEST(value_clear, it_leaves_the_type_unchanged) {
    const char* names[] = {
        "TYPE_BOOL",        "TYPE_CHAR",   "TYPE_INT",         "TYPE_DOUBLE", "TYPE_STRING", "TYPE_STRING",
        "TYPE_BINARY_DATA", "TYPE_GROUP",  "TYPE_GROUP",       "TYPE_BOOL",   "TYPE_CHAR",   "TYPE_INT",
        "TYPE_DOUBLE",      "TYPE_STRING", "TYPE_BINARY_DATA", "TYPE_WORD",   "TYPE_UNKNOWN"};
    const auto values = every_value();
    ASSERT_EQ(values.size(), std::size(names));
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i]->clear();
        EXPECT_EQ(type_name(*values[i]), names[i]) << i;
        values[i]->clear();
        EXPECT_EQ(type_name(*values[i]), names[i]) << i;
    }
    EXPECT_EQ(CountedGroup::alive, 0);
}

TEST(value_clear, a_cleared_value_reads_as_the_empty_text) {
    RecordingLog log;
    const auto values = every_value();
    for (const auto& value : values) {
        value->clear();
    }
    for (const std::size_t scalar : {0u, 1u, 2u, 3u, 9u, 10u, 11u, 12u}) {
        EXPECT_FALSE(values[scalar]->get_as_bool());
        EXPECT_EQ(values[scalar]->get_as_char(), 0);
        EXPECT_EQ(values[scalar]->get_as_int(), 0);
        EXPECT_EQ(values[scalar]->get_as_double(), 0.0);
    }
    for (const std::size_t string : {4u, 5u, 13u}) {
        EXPECT_TRUE(values[string]->get_as_string().is_empty());
    }
    for (const std::size_t data : {6u, 14u}) {
        unsigned int size = 77;
        EXPECT_EQ(values[data]->get_as_binary_data(size), nullptr);
        EXPECT_EQ(size, 0u);
    }
    EXPECT_TRUE(log.is_empty());
}

TEST(value_clear, a_cleared_value_is_written_as_the_empty_text) {
    for (const auto& value : every_value()) {
        const std::string type = type_name(*value);
        value->clear();
        if (type == "TYPE_STRING") {
            EXPECT_EQ(written(*value), "\"\"");
        } else if (type != "TYPE_GROUP" && type != "TYPE_BINARY_DATA") {
            EXPECT_EQ(written(*value), "") << type;
        }
    }
}

TEST(value_clear, a_cleared_value_takes_new_content) {
    for (const auto& value : every_value()) {
        value->clear();
        value->set_int(5);
        EXPECT_EQ(written(*value), "5");
        value->clear();
        value->set_string(CoreString("again"));
        EXPECT_EQ(written(*value), "\"again\"");
    }
}

TEST(value_clear, a_cleared_group_is_deleted_at_once) {
    ParserValue value(new CountedGroup);
    EXPECT_EQ(CountedGroup::alive, 1);
    value.clear();
    EXPECT_EQ(CountedGroup::alive, 0);
}

TEST(value_clear, a_cleared_value_is_copied_as_cleared) {
    for (const auto& value : every_value()) {
        value->clear();
        const ParserValue copy(*value);
        EXPECT_EQ(type_name(copy), type_name(*value));
    }
}

} // namespace
