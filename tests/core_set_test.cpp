#include "core/core_containers.h"

#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

using namespace std::literals;

namespace {

std::vector<std::string> texts(const CoreSet<CoreString>& set) {
    std::vector<std::string> result;
    for (const CoreString& element : set) {
        result.push_back(plain(element));
    }
    return result;
}

TEST(core_set, an_empty_set_holds_nothing) {
    const CoreSet<CoreString> set;
    EXPECT_EQ(set.get_count(), 0u);
    EXPECT_FALSE(set.exists(core("")));
    EXPECT_FALSE(set.exists(core("a")));
    EXPECT_EQ(set.begin(), set.end());
}

TEST(core_set, an_element_is_kept_once_however_often_it_is_added) {
    CoreSet<CoreString> set;
    for (int i = 0; i < 3; ++i) {
        set.add(core("b"));
        set.add(core("a"));
    }
    EXPECT_EQ(set.get_count(), 2u);
    EXPECT_EQ(texts(set), (std::vector<std::string>{"b", "a"}));
    EXPECT_TRUE(set.exists(core("a")));
    EXPECT_FALSE(set.exists(core("c")));
}

TEST(core_set, strings_differ_by_every_byte_and_by_length) {
    CoreSet<CoreString> set;
    for (const std::string& text : {""s, "\0"s, "\0\0"s, "a"s, "a\0"s, "A"s}) {
        EXPECT_FALSE(set.exists(core(text)));
        set.add(core(text));
        EXPECT_TRUE(set.exists(core(text)));
    }
    EXPECT_EQ(set.get_count(), 6u);
}

TEST(core_set, clearing_forgets_everything_and_the_set_is_used_again) {
    CoreSet<CoreString> set;
    set.add(core("a"));
    set.clear();
    EXPECT_EQ(set.get_count(), 0u);
    EXPECT_FALSE(set.exists(core("a")));
    set.add(core("b"));
    EXPECT_EQ(texts(set), (std::vector<std::string>{"b"}));
}

TEST(core_set, a_copy_is_independent) {
    CoreSet<CoreString> set;
    set.add(core("a"));
    CoreSet<CoreString> copy(set);
    copy.add(core("b"));
    set.clear();
    EXPECT_TRUE(copy.exists(core("a")));
    EXPECT_EQ(copy.get_count(), 2u);
    EXPECT_EQ(set.get_count(), 0u);
}

TEST(core_set, an_own_element_is_added_without_effect) {
    CoreSet<CoreString> set;
    for (int i = 0; i < 5; ++i) {
        set.add(core("element " + std::to_string(i)));
    }
    set.add(*set.begin());
    EXPECT_EQ(set.get_count(), 5u);
}

TEST(core_set, texts_whose_hashes_all_agree_are_still_told_apart) {
    // NUL bytes leave the hash at 0, so all of these texts collide.
    CoreSet<CoreString> set;
    for (std::size_t length = 0; length < 200; ++length) {
        ASSERT_EQ(core_set_hash(core(std::string(length, '\0'))), 0u);
        set.add(core(std::string(length, '\0')));
    }
    EXPECT_EQ(set.get_count(), 200u);
    EXPECT_TRUE(set.exists(core(std::string(199, '\0'))));
    EXPECT_FALSE(set.exists(core(std::string(200, '\0'))));
}

TEST(core_set, numbers_enumerators_and_pointers_are_elements_too) {
    enum class Colour { red, green };
    int places[2] = {};
    CoreSet<int> numbers;
    CoreSet<Colour> colours;
    CoreSet<int*> pointers;
    numbers.add(-1);
    colours.add(Colour::green);
    pointers.add(&places[0]);
    EXPECT_TRUE(numbers.exists(-1));
    EXPECT_FALSE(numbers.exists(1));
    EXPECT_TRUE(colours.exists(Colour::green));
    EXPECT_FALSE(colours.exists(Colour::red));
    EXPECT_TRUE(pointers.exists(&places[0]));
    EXPECT_FALSE(pointers.exists(&places[1]));
}

TEST(core_set, random_adds_give_what_the_standard_library_gives) {
    std::mt19937 random(7);
    CoreSet<int> set;
    std::set<int> model;
    for (int step = 0; step < 20000; ++step) {
        const int number = static_cast<int>(random() % 5000);
        EXPECT_EQ(set.exists(number), model.count(number) == 1);
        set.add(number);
        model.insert(number);
        ASSERT_EQ(set.get_count(), model.size());
    }
    EXPECT_EQ(std::set<int>(set.begin(), set.end()), model);
}

} // namespace
