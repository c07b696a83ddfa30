#include "core/core_string.h"

#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

namespace {

const std::string long_text = "a text of more than eleven characters";

class core_string_borrowed : public testing::Test {
protected:
    std::string kept = long_text;
    CoreString text;

    void SetUp() override { text.set_borrowed(kept.data(), static_cast<unsigned int>(kept.size())); }

    /// Expects that the string now owns its text, and that the borrowed bytes have not changed.
    void expect_owned(const std::string& expected) {
        EXPECT_EQ(plain(text), expected);
        EXPECT_NE(text.get_data(), kept.data());
        EXPECT_EQ(kept, long_text);
        kept.assign(kept.size(), '#');
        EXPECT_EQ(plain(text), expected);
    }
};

TEST_F(core_string_borrowed, a_long_text_is_read_where_it_lies) {
    EXPECT_EQ(text.get_data(), kept.data());
    EXPECT_EQ(plain(text), long_text);
    EXPECT_TRUE(text == CoreString(long_text.c_str()));
}

TEST_F(core_string_borrowed, a_short_text_is_copied_all_the_same) {
    std::string eleven = "12345678901";
    text.set_borrowed(eleven.data(), 11);
    EXPECT_NE(text.get_data(), eleven.data());
    eleven.assign(11, '#');
    EXPECT_EQ(plain(text), "12345678901");
}

TEST_F(core_string_borrowed, twelve_characters_are_borrowed) {
    const std::string twelve = "123456789012";
    text.set_borrowed(twelve.data(), 12);
    EXPECT_EQ(text.get_data(), twelve.data());
}

TEST_F(core_string_borrowed, a_copy_owns_its_text) {
    const CoreString copy(text);
    CoreString assigned("before");
    assigned = text;
    EXPECT_NE(copy.get_data(), kept.data());
    EXPECT_NE(assigned.get_data(), kept.data());
    kept.assign(kept.size(), '#');
    EXPECT_EQ(plain(copy), long_text);
    EXPECT_EQ(plain(assigned), long_text);
}

TEST_F(core_string_borrowed, moving_hands_the_loan_over) {
    CoreString moved(std::move(text));
    EXPECT_EQ(moved.get_data(), kept.data());
    EXPECT_TRUE(text.is_empty());
    CoreString assigned("what it held before, long enough for a block");
    assigned = std::move(moved);
    EXPECT_EQ(assigned.get_data(), kept.data());
    EXPECT_TRUE(moved.is_empty());
}

TEST_F(core_string_borrowed, the_string_outlives_the_loan_after_an_append) {
    text += "!";
    expect_owned(long_text + "!");
}

TEST_F(core_string_borrowed, the_string_outlives_the_loan_after_one_more_character) {
    text += '!';
    expect_owned(long_text + "!");
}

TEST_F(core_string_borrowed, the_string_outlives_the_loan_after_a_number) {
    text += 12;
    expect_owned(long_text + "12");
}

TEST_F(core_string_borrowed, the_string_is_appended_to_itself) {
    text += text;
    expect_owned(long_text + long_text);
}

TEST_F(core_string_borrowed, a_piece_of_the_loan_becomes_the_text) {
    text.set_data(text.get_data() + 2, 20);
    expect_owned(long_text.substr(2, 20));
}

TEST_F(core_string_borrowed, a_sub_string_owns_its_text) {
    text = text.sub_string(2, 20);
    expect_owned(long_text.substr(2, 20));
}

TEST_F(core_string_borrowed, room_for_writing_is_never_in_the_loan) {
    text.resize(15)[0] = 'A';
    expect_owned("A" + long_text.substr(1, 14));
}

TEST_F(core_string_borrowed, clearing_leaves_the_loan_alone) {
    text.clear();
    EXPECT_TRUE(text.is_empty());
    EXPECT_EQ(kept, long_text);
}

TEST_F(core_string_borrowed, another_loan_takes_the_place_of_the_first_and_of_an_own_text) {
    const std::string other = "another text that is kept elsewhere";
    text.set_borrowed(other.data(), static_cast<unsigned int>(other.size()));
    EXPECT_EQ(text.get_data(), other.data());
    text += "owned";
    text.set_borrowed(kept.data(), static_cast<unsigned int>(kept.size()));
    EXPECT_EQ(text.get_data(), kept.data());
}

TEST_F(core_string_borrowed, assigning_to_itself_keeps_the_text) {
    CoreString& same = text;
    text = same;
    EXPECT_EQ(plain(text), long_text);
}

TEST_F(core_string_borrowed, conversions_read_the_loan) {
    const std::string number = "123456789.25 and more";
    text.set_borrowed(number.data(), static_cast<unsigned int>(number.size()));
    EXPECT_EQ(static_cast<int>(text), 123456789);
    EXPECT_EQ(static_cast<double>(text), 123456789.25);
}

} // namespace
