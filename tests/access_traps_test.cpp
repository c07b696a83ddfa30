#include "document/document.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

// Calls that must not compile, because they would mean something else or refer to a destroyed object.

namespace {

template <class T, class Given>
concept SetsAs = requires(ParserGroup& group, ParserEntry& entry, const Given& given) {
    bk_parser::set<T>(group, "a", given);
    bk_parser::set<T>(entry, 0, given);
    bk_parser::add<T>(group, "a", given);
};
template <class T, class Given>
concept FallsBackTo = requires(const ParserGroup& group, const ParserEntry& entry, const Given& given) {
    bk_parser::get_or<T>(group, "a", given);
    bk_parser::get_or<T>(entry, 0, given);
};

template <class T, class Given>
inline constexpr bool is_taken = SetsAs<T, Given>&& FallsBackTo<T, Given>;
template <class T, class Given>
inline constexpr bool is_refused = !SetsAs<T, Given> && !FallsBackTo<T, Given>;

static_assert(is_refused<bool, char[3]> && is_refused<bool, const char*> && is_refused<bool, int*>);
static_assert(is_refused<bool, double> && is_refused<int, double> && is_refused<unsigned char, float>);
static_assert(is_refused<std::string, std::nullptr_t> && is_refused<bool, std::nullptr_t>);
static_assert(is_taken<bool, bool> && is_taken<bool, int> && is_taken<int, int> && is_taken<int, short>);
static_assert(is_taken<double, int> && is_taken<float, double> && is_taken<std::string, char[3]>);
static_assert(is_taken<std::string, const char*> && is_taken<std::string_view, std::string>);

template <class T>
concept HasRoot = requires(T&& document) {
    std::forward<T>(document).root();
};
static_assert(HasRoot<bk_parser::Document&> && HasRoot<const bk_parser::Document&>);
static_assert(!HasRoot<bk_parser::Document> && !HasRoot<const bk_parser::Document>);

template <class T>
concept HasBegin = requires(T&& range) {
    std::forward<T>(range).begin();
};
using Walk = decltype(bk_parser::walk(std::declval<const ParserGroup&>()));
static_assert(HasBegin<bk_parser::Entries&> && HasBegin<const bk_parser::Entries&> && HasBegin<Walk&>);
static_assert(!HasBegin<bk_parser::Entries> && !HasBegin<Walk>);

template <class T>
concept HasText = requires(T&& path) {
    std::forward<T>(path).text();
    std::forward<T>(path).error();
};
static_assert(HasText<bk_parser::Path&> && HasText<const bk_parser::Path&> && !HasText<bk_parser::Path>);

template <class Given>
concept IsAddedAsBool = requires(ParserEntry& entry, ParserValue& value, const Given& given) {
    entry.add_bool(given);
    entry.set_bool(given, 0);
    value.set_bool(given);
};
static_assert(IsAddedAsBool<bool> && IsAddedAsBool<int>);

} // namespace

TEST(access_traps, what_a_document_that_nobody_keeps_lists_is_the_callers) {
    const std::string text = "#include \"gone.bkd\"\na 1\n";
    unsigned int count = 0;
    for (const bk_parser::Include& include : bk_parser::parse(text).document.includes()) {
        EXPECT_EQ(include.name, "gone.bkd");
        ++count;
    }
    EXPECT_EQ(count, 1u);
    const std::vector<bk_parser::DocumentFile>& files = bk_parser::parse(text).document.files();
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].text_size, text.size());
    const std::filesystem::path& path = bk_parser::load("nowhere.bkd").document.path();
    EXPECT_EQ(path, "nowhere.bkd");
    EXPECT_TRUE(bk_parser::parse(text).document.dependencies().empty());
}

TEST(access_traps, a_bool_by_name_takes_what_is_one) {
    ParserGroup group("root");
    EXPECT_TRUE(bk_parser::set<bool>(group, "a", true));
    EXPECT_EQ(bk_parser::get<bool>(group, "a"), true);
    EXPECT_EQ(bk_parser::get_or<bool>(group, "b", true), true);
}
