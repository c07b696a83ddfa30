#include "document/access.h"
#include "parser/parser_file.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

// What a walk finds when the tree changes during the walk, and what is left of a walk that was moved from.

namespace {

class range_edits : public testing::Test {
protected:
    void SetUp() override { root_.set_text("a 1 b 2 c 3 d 4 ", default_parser_serial_version, nullptr); }

    /// Calls `edit` at entry b. Expects these names from a walk of the group's entries, from a walk of the
    /// tree and from a search.
    template <class Edit>
    void expect(const std::string& names, const Edit& edit) {
        std::string walked;
        for (const ParserEntry& entry : bk_parser::entries(root_)) {
            walked += see(entry, edit);
        }
        EXPECT_EQ(walked, names);
        again();
        walked.clear();
        for (const bk_parser::Visit& visit : bk_parser::walk(root_)) {
            walked += see(visit.entry(), edit);
        }
        EXPECT_EQ(walked, names);
        again();
        walked.clear();
        for (const ParserEntry& entry : bk_parser::find_all(root_, "*")) {
            walked += see(entry, edit);
        }
        EXPECT_EQ(walked, names);
    }
    void again() {
        root_.clear();
        SetUp();
    }
    template <class Edit>
    static std::string see(const ParserEntry& entry, const Edit& edit) {
        std::string name = plain(entry.get_name());
        if (name == "b") {
            edit();
        }
        return name;
    }
    void add_in_front(const char* name) {
        bk_parser::insert(root_, 0, std::make_unique<ParserEntry>(name, ParserEntry::TYPE_ENTRY, 0, 0));
    }

    ParserGroup root_{"root"};
};

} // namespace

TEST_F(range_edits, an_entry_that_is_moved_is_followed) {
    expect("abcd", [] {});
    expect("ab", [this] { root_.move_entry(1, 3); });
    again();
    expect("abacd", [this] { root_.move_entry(1, 0); });
}

TEST_F(range_edits, behind_an_entry_that_is_gone_the_walk_goes_on_at_its_position) {
    expect("abcd", [this] { root_.remove_entry(1); });
    again();
    expect("abd", [this] {
        root_.remove_entry(1);
        root_.remove_entry(0u);
    });
    again();
    expect("abyacd", [this] {
        add_in_front("y");
        add_in_front("x");
        root_.remove_entry(3);
    });
    again();
    ParserGroup other("other");
    expect("abcd", [&, this] { bk_parser::insert(other, 0, bk_parser::take(root_, 1)); });
}

TEST_F(range_edits, a_walk_that_was_moved_from_is_empty_and_may_be_assigned_to) {
    bk_parser::Walker walker(root_);
    ASSERT_TRUE(walker.next());
    bk_parser::Walker moved(std::move(walker));
    EXPECT_FALSE(walker.next()); // NOLINT(bugprone-use-after-move): this is what is asked
    walker.skip_groups();
    EXPECT_EQ(walker.visit().value(), bk_parser::Visit::whole_entry);
    ASSERT_TRUE(moved.next());
    EXPECT_EQ(moved.visit().entry().get_name(), "b");
    walker = std::move(moved);
    EXPECT_FALSE(moved.next()); // NOLINT(bugprone-use-after-move)
    ASSERT_TRUE(walker.next());
    EXPECT_EQ(walker.visit().entry().get_name(), "c");
}

TEST_F(range_edits, a_search_that_was_moved_from_finds_nothing_and_may_be_assigned_to) {
    bk_parser::PathSearch search(root_, "*[@0>1]");
    ASSERT_TRUE(search.next());
    bk_parser::PathSearch moved(std::move(search));
    EXPECT_FALSE(search.next()); // NOLINT(bugprone-use-after-move)
    search.skip_groups();
    EXPECT_EQ(search.visit().value(), bk_parser::Visit::whole_entry);
    ASSERT_TRUE(moved.next());
    EXPECT_EQ(moved.visit().entry().get_name(), "c");
    search = std::move(moved);
    ASSERT_TRUE(search.next());
    EXPECT_EQ(search.visit().entry().get_name(), "d");
    auto range = bk_parser::find_all(root_, "*");
    const auto taken = std::move(range);
    EXPECT_TRUE(range.begin() == range.end()); // NOLINT(bugprone-use-after-move)
}

TEST_F(range_edits, an_index_that_was_moved_from_has_no_entries) {
    const ParserEntry& entry = *bk_parser::find(root_, "b");
    bk_parser::PathIndex index(root_);
    bk_parser::PathIndex moved(std::move(index));
    EXPECT_EQ(index.path_of(entry), ""); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(index.parent_of(entry), nullptr);
    EXPECT_EQ(moved.path_of(entry), "b");
    index = std::move(moved);
    EXPECT_EQ(index.path_of(entry), "b");
}
