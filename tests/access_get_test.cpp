#include "document/access.h"
#include "parser/parser_file.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <vector>

namespace {

using bk_parser::get;

class access_get : public testing::Test {
protected:
    void SetUp() override {
        root_.set_text("power 60 exposure 60.5 whole -3.0 on yes name \"sun\" at 1 2.5 -3 4 big 300.0 "
                       "words \"a\" \"b\" data 0x01FF00010000 mixed \"m\" 1 2 group { power 7 } huge 1e300 "
                       "wide 5000000000.0 zero 0 ",
                       default_parser_serial_version, nullptr);
        root_.add_entry("none", 0, 0);
        root_.add_entry("letter", 0, 0)->add_char('A');
        root_.add_entry("negative", 0, 0)->add_char('\xE9');
    }

    ParserGroup root_{"root"};
    RecordingLog log_;
};

template <class T>
concept CanGet = requires(const ParserGroup& group) {
    get<T>(group, "a");
};
template <class T>
concept CanSet = requires(ParserGroup& group, const T& value) {
    bk_parser::set(group, "a", value);
};

static_assert(CanGet<bool> && CanGet<int> && CanGet<std::uint64_t> && CanGet<float> && CanGet<std::string>);
static_assert(CanGet<std::span<const std::byte>> && CanGet<std::vector<std::byte>> && CanGet<ParserGroup*>);
static_assert(CanGet<GMathVec3<double>> && CanGet<std::array<int, 4>> && CanGet<std::vector<std::string>>);
static_assert(!CanGet<const char*> && !CanGet<void*> && !CanGet<wchar_t> && !CanGet<char32_t> &&
              !CanGet<std::byte>);
static_assert(!CanGet<std::array<int, 0>> && !CanGet<std::vector<void*>> && !CanGet<ParserEntry*> &&
              !CanGet<long double>);

static_assert(!CanSet<char> && !CanSet<std::vector<char>> && CanSet<signed char> && CanSet<unsigned char>);
static_assert(CanSet<bool> && CanSet<unsigned short> && CanSet<double> && CanSet<std::string>);
static_assert(CanSet<char[3]> && CanSet<const char*> && CanSet<CoreString> && CanSet<std::string_view>);
static_assert(CanSet<std::vector<int>> && CanSet<std::vector<bool>> && CanSet<std::span<const float>> &&
              CanSet<GMathVec2<int>>);
static_assert(!CanSet<void*> && !CanSet<int*> && !CanSet<std::nullptr_t> && !CanSet<ParserGroup*> &&
              !CanSet<wchar_t>);
static_assert(!CanSet<std::vector<int*>> && !CanSet<const unsigned char*> &&
              !CanSet<std::vector<std::vector<int>>>);

template <class T>
concept CanGiveAnEntry = requires(ParserEntry& entry, T value) {
    bk_parser::set(entry, 0, value);
};
static_assert(CanGiveAnEntry<bool> && !CanGiveAnEntry<void*>);

} // namespace

TEST_F(access_get, a_number_is_read_as_any_type_that_loses_nothing) {
    EXPECT_EQ(get<int>(root_, "power"), 60);
    EXPECT_EQ(get<double>(root_, "power"), 60.0);
    EXPECT_EQ(get<float>(root_, "power"), 60.0f);
    EXPECT_EQ(get<unsigned char>(root_, "power"), 60);
    EXPECT_EQ(get<signed char>(root_, "power"), 60);
    EXPECT_EQ(get<char>(root_, "power"), '<');
    EXPECT_EQ(get<std::uint64_t>(root_, "power"), 60u);
    EXPECT_EQ(get<int>(root_, "whole"), -3);
    EXPECT_EQ(get<long long>(root_, "wide"), 5000000000ll);
    EXPECT_EQ(get<double>(root_, "exposure"), 60.5);
    EXPECT_EQ(get<float>(root_, "exposure"), 60.5f);
    EXPECT_EQ(get<int>(root_, "letter"), 65);
    EXPECT_EQ(get<int>(root_, "negative"), -23);
    EXPECT_EQ(get<char>(root_, "negative"), '\xE9');
    EXPECT_EQ(get<double>(root_, "group/power"), 7.0);
    EXPECT_TRUE(log_.messages.empty());
}

TEST_F(access_get, a_number_that_would_lose_something_is_nothing) {
    EXPECT_EQ(get<int>(root_, "exposure"), std::nullopt);
    EXPECT_EQ(get<unsigned int>(root_, "whole"), std::nullopt);
    EXPECT_EQ(get<unsigned char>(root_, "big"), std::nullopt);
    EXPECT_EQ(get<signed char>(root_, "big"), std::nullopt);
    EXPECT_EQ(get<char>(root_, "big"), std::nullopt);
    EXPECT_EQ(get<short>(root_, "big"), 300);
    EXPECT_EQ(get<int>(root_, "wide"), std::nullopt);
    EXPECT_EQ(get<long long>(root_, "huge"), std::nullopt);
    EXPECT_EQ(get<std::uint64_t>(root_, "huge"), std::nullopt);
    EXPECT_EQ(get<float>(root_, "huge"), std::nullopt);
    EXPECT_EQ(get<double>(root_, "huge"), 1e300);
    EXPECT_EQ(get<std::uint64_t>(root_, "negative"), std::nullopt);
    EXPECT_TRUE(log_.messages.empty());
}

TEST_F(access_get, the_limits_of_wide_integers_are_exact) {
    ParserEntry& entry = *root_.add_entry("limit", 0, 0);
    entry.add_double(0x1p63);
    entry.add_double(-0x1p63);
    entry.add_double(0x1p64);
    entry.add_double(0x1.fffffffffffffp63);
    EXPECT_EQ(get<long long>(entry, 0), std::nullopt);
    EXPECT_EQ(get<unsigned long long>(entry, 0), 0x8000000000000000ull);
    EXPECT_EQ(get<long long>(entry, 1), std::numeric_limits<long long>::min());
    EXPECT_EQ(get<unsigned long long>(entry, 1), std::nullopt);
    EXPECT_EQ(get<unsigned long long>(entry, 2), std::nullopt);
    EXPECT_EQ(get<unsigned long long>(entry, 3), 0xFFFFFFFFFFFFF800ull);
}

TEST_F(access_get, a_value_of_another_type_is_nothing_and_logs_nothing) {
    EXPECT_EQ(get<bool>(root_, "name"), std::nullopt);
    EXPECT_EQ(get<bool>(root_, "power"), std::nullopt);
    EXPECT_EQ(get<int>(root_, "on"), std::nullopt);
    EXPECT_EQ(get<int>(root_, "name"), std::nullopt);
    EXPECT_EQ(get<int>(root_, "group"), std::nullopt);
    EXPECT_EQ(get<std::string>(root_, "power"), std::nullopt);
    EXPECT_EQ(get<std::string>(root_, "data"), std::nullopt);
    EXPECT_EQ(get<std::vector<std::byte>>(root_, "name"), std::nullopt);
    EXPECT_EQ(get<ParserGroup*>(root_, "name"), std::nullopt);
    EXPECT_TRUE(log_.messages.empty());
}

TEST_F(access_get, what_is_not_there_is_nothing) {
    EXPECT_EQ(get<int>(root_, "absent"), std::nullopt);
    EXPECT_EQ(get<int>(root_, "none"), std::nullopt);
    EXPECT_EQ(get<int>(root_, "power@1"), std::nullopt);
    EXPECT_EQ(get<int>(root_, "power["), std::nullopt);
    EXPECT_EQ(get<int>(root_, "none/a"), std::nullopt);
    EXPECT_EQ(root_.get_entry("none")->get_value_count(), 0u);
    EXPECT_TRUE(log_.messages.empty());
}

TEST_F(access_get, booleans_strings_bytes_and_groups) {
    EXPECT_EQ(get<bool>(root_, "on"), true);
    EXPECT_EQ(get<std::string>(root_, "name"), "sun");
    EXPECT_EQ(get<std::string_view>(root_, "name"), "sun");
    EXPECT_EQ(get<CoreString>(root_, "name"), CoreString("sun"));
    const auto bytes = get<std::span<const std::byte>>(root_, "data");
    ASSERT_TRUE(bytes);
    ASSERT_EQ(bytes->size(), 2u);
    EXPECT_EQ((*bytes)[1], std::byte{0xFF});
    EXPECT_EQ(get<std::vector<std::byte>>(root_, "data")->size(), 2u);
    EXPECT_EQ(get<ParserGroup*>(root_, "group"), root_.get_entry("group")->get_group(0));
}

TEST_F(access_get, the_path_names_the_value) {
    EXPECT_EQ(get<double>(root_, "at@1"), 2.5);
    EXPECT_EQ(get<int>(root_, "at@2"), -3);
    EXPECT_EQ(get<int>(*root_.get_entry("at"), 3), 4);
    EXPECT_EQ(get<int>(root_, bk_parser::Path("mixed[\"m\"]@2")), 2);
}

TEST_F(access_get, vectors_and_arrays_are_so_many_values) {
    EXPECT_EQ((get<GMathVec3<double>>(root_, "at")), (GMathVec3<double>(1, 2.5, -3)));
    EXPECT_EQ((get<GMathVec2<int>>(root_, "at@2")), (GMathVec2<int>(-3, 4)));
    EXPECT_EQ((get<GMathVec4<float>>(root_, "at")), (GMathVec4<float>(1, 2.5f, -3, 4)));
    EXPECT_EQ((get<std::array<double, 2>>(root_, "at@1")), (std::array<double, 2>{2.5, -3}));
    EXPECT_EQ((get<GMathVec4<double>>(root_, "at@1")), std::nullopt) << "a value is missing";
    EXPECT_EQ((get<GMathVec2<int>>(root_, "at")), std::nullopt) << "2.5 is no int";
    EXPECT_EQ((get<std::array<int, 5>>(root_, "at")), std::nullopt);
}

TEST_F(access_get, lists_are_all_values_from_there) {
    EXPECT_EQ(get<std::vector<double>>(root_, "at"), (std::vector<double>{1, 2.5, -3, 4}));
    EXPECT_EQ(get<std::vector<int>>(root_, "at"), std::nullopt);
    EXPECT_EQ(get<std::vector<int>>(root_, "at@2"), (std::vector<int>{-3, 4}));
    EXPECT_EQ(get<std::vector<std::string>>(root_, "words"), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(get<std::vector<bool>>(root_, "on"), (std::vector<bool>{true}));
    EXPECT_EQ(get<std::vector<int>>(root_, "none"), std::vector<int>());
    EXPECT_EQ(get<std::vector<int>>(*root_.get_entry("at"), 4), std::vector<int>());
    EXPECT_EQ(get<std::vector<int>>(*root_.get_entry("at"), 5), std::nullopt);
    const auto view = get<bk_parser::Values<double>>(root_, "at@1");
    ASSERT_TRUE(view);
    EXPECT_EQ(std::ranges::distance(*view), 3);
    EXPECT_FALSE(get<bk_parser::Values<int>>(root_, "at"));
    EXPECT_FALSE(get<bk_parser::Values<int>>(*root_.get_entry("at"), 5));
    EXPECT_FALSE(get<bk_parser::Values<double>>(root_, "mixed"));
    EXPECT_TRUE(get<bk_parser::Values<double>>(root_, "mixed@1"));
}

TEST_F(access_get, a_fallback_stands_in) {
    EXPECT_EQ(bk_parser::get_or(root_, "power", 5), 60);
    EXPECT_EQ(bk_parser::get_or(root_, "absent", 5), 5);
    EXPECT_EQ(bk_parser::get_or(root_, "exposure", 5), 5);
    EXPECT_EQ(bk_parser::get_or(root_, "name", "nobody"), "sun");
    EXPECT_EQ(bk_parser::get_or(root_, "absent", "nobody"), "nobody");
    EXPECT_EQ(bk_parser::get_or(root_, "absent", std::string("nobody")), "nobody");
    EXPECT_FALSE(bk_parser::get_or(root_, "zero", false)) << "0 is no bool";
}

TEST_F(access_get, a_view_of_a_string_points_into_the_tree) {
    const auto view = get<std::string_view>(root_, "name");
    EXPECT_EQ(view->data(), root_.get_entry("name")->get_string(0).get_data());
}
