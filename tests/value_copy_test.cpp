#include "parser/parser_group.h"
#include "parser/parser_value.h"

#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"
#include "tests/support/value_type.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

const char* const long_text = "a text that stands in a block";

TEST(value_copy, a_copy_of_a_scalar_has_its_type_content_and_spelling) {
    for (unsigned int type : {1u, 2u, 3u, 4u, 7u}) {
        for (const bool converted : {false, true}) {
            for (const char* spelling : {"0065", "65.50 and more than eleven"}) {
                auto source =
                    std::make_unique<ParserValue>(static_cast<ParserValue::Type>(type), CoreString(spelling));
                if (converted) {
                    source->make_value();
                }
                const ParserValue copy(*source);
                source.reset();
                EXPECT_EQ(type_name(copy),
                          plain(ParserValue::get_type_name(static_cast<ParserValue::Type>(type))));
                EXPECT_EQ(written(copy), spelling);
                if (type == ParserValue::TYPE_INT) {
                    EXPECT_EQ(copy.get_as_int(), 65);
                }
                EXPECT_EQ(written(copy), spelling);
            }
        }
    }
}

TEST(value_copy, a_copy_of_a_set_value_is_independent) {
    ParserValue source(12);
    ParserValue copy(source);
    source.set_int(13);
    EXPECT_EQ(copy.get_as_int(), 12);
    copy.set_string(CoreString("changed"));
    EXPECT_EQ(source.get_as_int(), 13);
}

TEST(value_copy, a_copy_of_a_string_has_a_string_of_its_own) {
    for (const char* text : {"short", long_text}) {
        auto source = std::make_unique<ParserValue>(CoreString(text));
        const ParserValue copy(*source);
        EXPECT_NE(&copy.get_as_string(), &source->get_as_string());
        EXPECT_NE(copy.get_as_string().get_data(), source->get_as_string().get_data());
        source.reset();
        EXPECT_EQ(plain(copy.get_as_string()), text);
    }
}

TEST(value_copy, a_copy_of_binary_data_has_bytes_of_its_own) {
    char bytes[] = {1, 2, 3};
    ParserValue source(bytes, 3);
    EXPECT_EQ(written(source), "0x01020306000000");
    const ParserValue copy(source);
    unsigned int size = 0;
    char* original = static_cast<char*>(source.get_as_binary_data(size));
    const char* copied = static_cast<const char*>(copy.get_as_binary_data(size));
    EXPECT_EQ(size, 3u);
    EXPECT_NE(original, copied);
    original[0] = 9;
    EXPECT_EQ(copied[0], 1);
    EXPECT_EQ(written(copy), "0x01020306000000");
}

TEST(value_copy, a_copy_of_no_bytes_has_none) {
    ParserValue source(nullptr, 0);
    const ParserValue copy(source);
    unsigned int size = 77;
    EXPECT_EQ(copy.get_as_binary_data(size), nullptr);
    EXPECT_EQ(size, 0u);
}

TEST(value_copy, a_copy_of_a_group_is_deep) {
    auto* group = new ParserGroup(CoreString("g"));
    group->add_entry(CoreString("a"), 0, 0)->add_int(1);
    group->add_group(CoreString("inner"))->add_entry(CoreString("b"), 0, 0)->add_string(CoreString("x"));
    auto source = std::make_unique<ParserValue>(group);
    const ParserValue copy(*source);
    group->get_entry(0u)->set_int(2, 0);
    EXPECT_EQ(written(*source), "g { a 2 inner { b \"x\" } }");
    source.reset();
    EXPECT_EQ(written(copy), "g { a 1 inner { b \"x\" } }");
}

/// A value whose storage is freed without its destructor. When two values share their content, only one of
/// them may release it.
class UnreleasedValue {
public:
    explicit UnreleasedValue(int number) : value_(new ParserValue(number)) {}
    ~UnreleasedValue() { ParserValue::operator delete(value_, sizeof(ParserValue)); }
    UnreleasedValue(const UnreleasedValue&) = delete;
    UnreleasedValue& operator=(const UnreleasedValue&) = delete;
    ParserValue& operator*() { return *value_; }
    ParserValue* operator->() { return value_; }

private:
    ParserValue* value_;
};

TEST(value_assignment, both_values_refer_to_the_same_string) {
    for (const char* text : {"short", long_text}) {
        const ParserValue source{CoreString(text)};
        UnreleasedValue target(1);
        EXPECT_EQ(&(*target = source), &*target);
        EXPECT_EQ(type_name(*target), "TYPE_STRING");
        EXPECT_EQ(plain(target->get_as_string()), text);
        EXPECT_EQ(plain(source.get_as_string()), text);
        EXPECT_EQ(&target->get_as_string(), &source.get_as_string());
    }
}

TEST(value_assignment, a_string_is_shared_by_three_values_too) {
    const ParserValue source{CoreString("short")};
    UnreleasedValue second(1);
    UnreleasedValue third(2);
    *second = source;
    *third = *second;
    EXPECT_EQ(&third->get_as_string(), &source.get_as_string());
    const ParserValue copy(*third);
    EXPECT_NE(&copy.get_as_string(), &source.get_as_string());
    EXPECT_EQ(plain(copy.get_as_string()), "short");
}

TEST(value_assignment, both_values_refer_to_the_same_bytes) {
    char bytes[] = "abc";
    ParserValue source(bytes, 3);
    UnreleasedValue target(1);
    *target = source;
    unsigned int size = 0;
    void* data = target->get_as_binary_data(size);
    EXPECT_EQ(size, 3u);
    EXPECT_EQ(data, source.get_as_binary_data(size));
}

TEST(value_assignment, both_values_refer_to_the_same_group) {
    auto* group = new ParserGroup(CoreString("g"));
    ParserValue source(group);
    UnreleasedValue target(1);
    *target = source;
    group->add_entry(CoreString("a"), 0, 0);
    EXPECT_EQ(written(*target), "g { a <empty> }");
    EXPECT_EQ(type_name(*target), "TYPE_GROUP");
}

TEST(value_assignment, scalars_and_spellings_come_along) {
    const ParserValue number(2.5);
    UnreleasedValue target(1);
    *target = number;
    EXPECT_EQ(target->get_as_double(), 2.5);
    for (const char* spelling : {"1.50", "1.500000000000000000000"}) {
        const ParserValue spelled(ParserValue::TYPE_DOUBLE, CoreString(spelling));
        UnreleasedValue other(1);
        *other = spelled;
        EXPECT_EQ(written(*other), spelling);
        EXPECT_EQ(other->get_as_double(), 1.5);
        EXPECT_EQ(written(spelled), spelling);
    }
}

TEST(value_assignment, the_source_may_be_the_one_that_is_not_released) {
    UnreleasedValue source(1);
    source->set_string(CoreString(long_text));
    ParserValue target(2);
    target = *source;
    EXPECT_EQ(plain(target.get_as_string()), long_text);
    EXPECT_EQ(&target.get_as_string(), &source->get_as_string());
}

TEST(value_assignment, a_value_assigned_to_itself_stays_as_it_was) {
    for (const char* text : {"short", long_text}) {
        ParserValue value{CoreString(text)};
        ParserValue& same = value;
        value = same;
        EXPECT_EQ(plain(value.get_as_string()), text);
        value.set_int(1);
        EXPECT_EQ(written(value), "1");
    }
}

TEST(value_copy, a_group_nested_a_million_deep_is_copied_cleared_and_destroyed) {
    auto* root = new ParserGroup(CoreString("g"));
    ParserGroup* group = root;
    for (int level = 0; level < 1000000; ++level) {
        group = group->add_group(CoreString("g"));
    }
    group->add_entry(CoreString("bottom"), 0, 0);
    ParserValue value(root);
    {
        const ParserValue copy(value);
        EXPECT_EQ(type_name(copy), "TYPE_GROUP");
    }
    ParserValue second(value);
    second.set_int(5);
    EXPECT_EQ(second.get_as_int(), 5);
    ParserValue third(value);
    third.clear();
    EXPECT_EQ(type_name(third), "TYPE_GROUP");
    EXPECT_EQ(group->get_entries().get_count(), 1u);
}

} // namespace
