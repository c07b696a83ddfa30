#include "document/access.h"
#include "parser/parser_file.h"
#include "tests/support/described.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

// Texts as arguments: literals and null pointers.

namespace {

class access_texts : public testing::Test {
protected:
    void SetUp() override { root_.set_text("a 1 s \"text\" ", default_parser_serial_version, nullptr); }

    ParserGroup root_{"root"};
    const char* null_ = nullptr;
};

template <class T>
concept IsPath = requires(const ParserGroup& group, T text) {
    bk_parser::find(group, text);
};
template <class T>
concept IsName = requires(ParserEntry& entry, T text) {
    bk_parser::rename(entry, text);
};
template <class T>
concept IsParsed = requires(T text) {
    bk_parser::Path(text);
    bk_parser::path_error(text);
};
template <class T>
concept IsFallback = requires(const ParserGroup& group, const ParserEntry& entry, T text) {
    bk_parser::get_or(group, "a", text);
    bk_parser::get_or(entry, 0, text);
};

static_assert(IsPath<const char*> && IsPath<char*> && IsPath<std::string> && IsPath<std::string_view>);
static_assert(IsName<const char*> && IsParsed<const char*> && IsParsed<std::string> &&
              IsFallback<const char*> && IsFallback<int>);
static_assert(!IsPath<std::nullptr_t> && !IsName<std::nullptr_t> && !IsParsed<std::nullptr_t> &&
              !IsFallback<std::nullptr_t>);

} // namespace

TEST_F(access_texts, a_fallback_of_an_entry_may_be_a_literal) {
    ParserEntry& entry = *bk_parser::find(root_, "s");
    EXPECT_EQ(bk_parser::get_or(entry, 0, "fallback"), "text");
    EXPECT_EQ(bk_parser::get_or(entry, 1, "fallback"), "fallback");
    EXPECT_EQ(bk_parser::get_or(entry, 1, std::string("fallback")), "fallback");
}

TEST_F(access_texts, a_null_pointer_is_an_empty_text) {
    EXPECT_EQ(bk_parser::get_or(root_, "absent", null_), "");
    EXPECT_EQ(bk_parser::get_or(*bk_parser::find(root_, "s"), 1, null_), "");
    EXPECT_TRUE(bk_parser::set(root_, "x", null_));
    EXPECT_EQ(described(root_), " a 1 s \"text\" x \"\"");
}

TEST_F(access_texts, a_null_pointer_is_no_path_and_no_name) {
    char* const null_characters = nullptr;
    EXPECT_EQ(bk_parser::find(root_, null_), nullptr);
    EXPECT_EQ(bk_parser::find(root_, null_characters), nullptr);
    EXPECT_EQ(bk_parser::get<int>(root_, null_), std::nullopt);
    EXPECT_FALSE(bk_parser::set(root_, null_, 1));
    EXPECT_FALSE(bk_parser::move(root_, "a", null_));
    EXPECT_FALSE(bk_parser::rename(root_, "a", null_));
    EXPECT_FALSE(bk_parser::rename(*root_.get_entry("a"), null_));
    const bk_parser::Path path(null_);
    EXPECT_FALSE(path.ok());
    EXPECT_EQ(path.text(), "");
    const auto error = bk_parser::path_error(null_);
    ASSERT_TRUE(error);
    EXPECT_EQ(bk_parser::to_text(*error, null_), error->message + "\n\n^\n");
    EXPECT_EQ(bk_parser::to_problem(*error, null_).source_line, "");
    EXPECT_EQ(bk_parser::path_name(null_), "\"\"");
    EXPECT_EQ(bk_parser::path_string(null_), "\"\"");
    EXPECT_EQ(std::ranges::distance(bk_parser::entries(root_, null_)), 0);
    EXPECT_EQ(described(root_), " a 1 s \"text\"");
}

TEST_F(access_texts, a_core_string_is_a_name_and_a_path) {
    const CoreString name("b");
    EXPECT_TRUE(bk_parser::rename(*root_.get_entry("a"), name));
    EXPECT_TRUE(bk_parser::rename(*root_.get_entry("b"), CoreString("c")));
    EXPECT_TRUE(bk_parser::rename(root_, CoreString("c"), name));
    EXPECT_EQ(bk_parser::get<int>(root_, name), 1);
    EXPECT_EQ(bk_parser::path_name(name), "b");
    EXPECT_EQ(std::ranges::distance(bk_parser::entries(root_, name)), 1);
}
