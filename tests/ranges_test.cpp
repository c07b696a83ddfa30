#include "document/access.h"
#include "parser/parser_file.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <ranges>
#include <vector>

namespace {

class ranges : public testing::Test {
protected:
    void SetUp() override {
        root_.set_text("#k 1 a { b { c 1 } d 2 } a 3 e { } ", default_parser_serial_version, nullptr);
    }

    std::string walked() const {
        std::string names;
        for (const bk_parser::Visit& visit : bk_parser::walk(root_)) {
            names += plain(visit.entry().get_name()) + std::to_string(visit.depth()) + ' ';
        }
        return names;
    }

    ParserGroup root_{"root"};
};

// The concepts of the standard library that the ranges of the library satisfy.
static_assert(std::forward_iterator<bk_parser::Entries::Iterator>);
static_assert(std::ranges::forward_range<bk_parser::Entries> && std::ranges::view<bk_parser::Entries>);
static_assert(std::ranges::forward_range<bk_parser::Values<double>> &&
              std::ranges::view<bk_parser::Values<double>>);
using Walk = decltype(bk_parser::walk(std::declval<const ParserGroup&>()));
static_assert(std::ranges::input_range<Walk> && std::ranges::view<Walk> && !std::copyable<Walk>);
using Found = decltype(bk_parser::find_all(std::declval<const ParserGroup&>(), ""));
static_assert(std::ranges::input_range<Found> && std::ranges::view<Found>);
static_assert(std::same_as<std::ranges::range_reference_t<Found>, ParserEntry&>);

} // namespace

TEST_F(ranges, a_walk_is_depth_first_an_entry_before_what_it_holds) {
    EXPECT_EQ(walked(), "#k0 a0 b1 c2 d1 a0 e0 ");
    EXPECT_EQ(std::ranges::distance(bk_parser::walk(ParserGroup("empty"))), 0);
}

TEST_F(ranges, a_walk_gives_the_group_and_the_position_of_each_entry) {
    for (const bk_parser::Visit& visit : bk_parser::walk(root_)) {
        EXPECT_EQ(visit.parent().get_entries()[visit.position()], &visit.entry());
        EXPECT_EQ(visit.value(), bk_parser::Visit::whole_entry);
    }
}

TEST_F(ranges, a_walk_may_leave_out_what_an_entry_holds) {
    bk_parser::Walker walker(root_);
    std::string names;
    while (walker.next()) {
        names += plain(walker.visit().entry().get_name());
        if (walker.visit().entry().get_name() == "a") {
            walker.skip_groups();
        }
    }
    EXPECT_EQ(names, "#kaae");
}

#if !defined(__clang__) || __clang_major__ >= 16 // older versions cannot compile the views of g++'s library
TEST_F(ranges, work_with_the_views_of_the_standard_library) {
    std::string names;
    const auto has_number = [](const ParserEntry& entry) {
        return entry.has_value() && entry.is_value_double(0);
    };
    const auto name_of = [](const ParserEntry& entry) { return plain(entry.get_name()); };
    for (const std::string& name : bk_parser::find_all(root_, "**") | std::views::filter(has_number) |
                                       std::views::transform(name_of) | std::views::drop(1)) {
        names += name;
    }
    EXPECT_EQ(names, "cda");
    auto deep = bk_parser::walk(root_) |
                std::views::filter([](const bk_parser::Visit& visit) { return visit.depth() > 0; });
    EXPECT_EQ(std::ranges::distance(deep), 3);
    auto first = bk_parser::entries(root_, "a") | std::views::take(1);
    EXPECT_TRUE((*first.begin()).is_group());
}
#endif

TEST_F(ranges, entries_are_those_of_one_group_of_every_kind) {
    std::string names;
    for (const ParserEntry& entry : bk_parser::entries(root_)) {
        names += plain(entry.get_name());
    }
    EXPECT_EQ(names, "#kaae");
    EXPECT_EQ(std::ranges::distance(bk_parser::entries(root_, "a")), 2);
    EXPECT_EQ(std::ranges::distance(bk_parser::entries(root_, std::string("no such name, and a long one"))),
              0);
}

TEST_F(ranges, the_current_entry_may_be_removed_while_entries_are_walked) {
    const auto range = bk_parser::entries(root_);
    std::string names;
    for (auto at = range.begin(); at != range.end(); ++at) {
        names += plain(at->get_name());
        if (at->get_name() == "a") {
            root_.remove_entry(at.position());
        }
    }
    EXPECT_EQ(names, "#kaae");
    EXPECT_EQ(root_.get_entries().get_count(), 2u);
}

TEST_F(ranges, entries_may_be_added_before_and_behind_the_current_one) {
    unsigned int count = 0;
    for (const ParserEntry& entry : bk_parser::entries(root_, "a")) {
        ++count;
        bk_parser::insert(root_, 0, std::make_unique<ParserEntry>("new", ParserEntry::TYPE_ENTRY, 0, 0));
        if (entry.is_group()) {
            root_.add_entry("a", 0, 0);
        }
    }
    EXPECT_EQ(count, 3u) << "each once, and the one that was added behind";
    EXPECT_EQ(root_.get_entries().get_count(), 8u);
}

TEST_F(ranges, the_current_entry_may_be_removed_while_a_tree_is_walked) {
    std::string names;
    for (const bk_parser::Visit& visit : bk_parser::walk(root_)) {
        names += plain(visit.entry().get_name());
        if (visit.entry().get_name() == "b" || visit.depth() == 0) {
            if (visit.entry().get_name() == "a") {
                continue;
            }
            visit.parent().remove_entry(visit.position());
        }
    }
    EXPECT_EQ(names, "#kabdae") << "what a removed entry held is not walked";
    EXPECT_EQ(walked(), "a0 d1 a0 ");
}

TEST_F(ranges, what_is_found_may_be_removed_moved_and_filled) {
    unsigned int count = 0;
    for (ParserEntry& entry : bk_parser::find_all(root_, "**/*[@0>=0]")) {
        ++count;
        entry.add_string("seen");
        ParserGroup* const group = bk_parser::parent_of(root_, entry);
        for (unsigned int i = 0; i < group->get_entries().get_count(); ++i) {
            if (group->get_entries()[i] == &entry) {
                group->remove_entry(i);
                break;
            }
        }
    }
    EXPECT_EQ(count, 4u);
    EXPECT_EQ(walked(), "a0 b1 e0 ");
}

TEST_F(ranges, what_is_added_below_the_current_entry_is_walked) {
    std::string names;
    for (const bk_parser::Visit& visit : bk_parser::walk(root_)) {
        names += plain(visit.entry().get_name());
        if (visit.entry().get_name() == "d") {
            visit.entry().add_group(nullptr)->add_entry("x", 0, 0);
        }
    }
    EXPECT_EQ(names, "#kabcdxae");
}

TEST_F(ranges, visits_name_the_value_of_the_path) {
    for (const bk_parser::Visit& visit : bk_parser::find_visits(root_, "**/d@0")) {
        EXPECT_EQ(visit.value(), 0u);
        EXPECT_EQ(visit.depth(), 1u);
        EXPECT_EQ(bk_parser::get<int>(visit.entry(), visit.value()), 2);
    }
    EXPECT_EQ(std::ranges::distance(bk_parser::find_visits(root_, "**/d@1")), 0);
}

TEST_F(ranges, values_are_those_that_can_be_read_as_the_type) {
    ParserEntry entry("e", ParserEntry::TYPE_ENTRY, 0, 0);
    entry.add_string("name");
    entry.add_int(1);
    entry.add_double(2.5);
    entry.add_bool(true);
    entry.add_group(nullptr);
    std::vector<double> numbers;
    std::ranges::copy(bk_parser::values<double>(entry), std::back_inserter(numbers));
    EXPECT_EQ(numbers, (std::vector<double>{1.0, 2.5}));
    const auto integers = bk_parser::values<int>(entry);
    EXPECT_EQ(std::ranges::distance(integers), 1);
    EXPECT_EQ(integers.begin().index(), 1u);
    EXPECT_EQ(*bk_parser::values<std::string_view>(entry).begin(), "name");
    for (ParserGroup* group : bk_parser::values<ParserGroup*>(entry)) {
        EXPECT_EQ(group, entry.get_group(4));
    }
    EXPECT_EQ(std::ranges::distance(bk_parser::values<ParserGroup*>(entry)), 1);
}
