#include "parser/parser_file.h"
#include "tests/support/deep.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

constexpr unsigned int depth = million_deep;

/// Deep enough to overflow the stack of any function that recurses. Faster than a million levels.
constexpr unsigned int lesser_depth = 200000;

std::string repeated(std::string_view part, unsigned int count) {
    std::string text;
    text.reserve(part.size() * count);
    for (unsigned int i = 0; i < count; ++i) {
        text += part;
    }
    return text;
}

std::string compact(const ParserGroup& group) {
    CoreString text;
    group.get_text(text, false, false, 1);
    return plain(text);
}

/// The number of nested groups.
unsigned int measure(const ParserGroup& root) {
    unsigned int levels = 0;
    for (const ParserGroup* group = &root; group->get_entries().get_count() == 1; ++levels) {
        const ParserEntry& entry = *group->get_entries()[0];
        if (!entry.is_group()) {
            break;
        }
        group = entry.get_group(0);
    }
    return levels;
}

/// `levels` nested groups, with an entry in the innermost. No operation on them may use a stack that grows
/// with the depth.
std::unique_ptr<ParserGroup> make_tree(unsigned int levels) {
    const std::string text = repeated("a{", levels) + "needle 1 " + repeated("}", levels);
    auto group = std::make_unique<ParserGroup>("root");
    const RecordingLog log;
    EXPECT_TRUE(group->set_text(core(text), CoreVersion(1.2), nullptr));
    EXPECT_TRUE(log.is_empty());
    return group;
}

} // namespace

TEST(deep_nesting, a_million_groups_are_parsed_printed_copied_searched_and_destroyed) {
    auto tree = make_tree(depth);
    EXPECT_EQ(measure(*tree), depth);
    EXPECT_TRUE(compact(*tree) == repeated(" a {", depth) + " needle 1" + repeated(" }", depth));

    const ParserGroup copy(*tree);
    EXPECT_EQ(tree_difference(*tree, copy), "");
    const CoreVector<ParserEntry*> found = tree->get_entries("needle", true);
    ASSERT_EQ(found.get_count(), 1u);
    found[0]->set_int(2, 0);
    tree.reset();

    ASSERT_EQ(copy.get_entries("needle", true).get_count(), 1u);
    EXPECT_EQ(copy.get_entries("needle", true)[0]->get_int(0), 1);
    EXPECT_EQ(copy.get_entries("missing", true).get_count(), 0u);
}

TEST(deep_nesting, groups_left_open_are_parsed_and_read_back_from_their_print) {
    ParserGroup group("root");
    EXPECT_TRUE(group.set_text(core(repeated("a{", lesser_depth)), CoreVersion(1.2), nullptr));
    EXPECT_EQ(measure(group), lesser_depth);
    ParserGroup again("root");
    EXPECT_TRUE(again.set_text(core(compact(group)), CoreVersion(1.2), nullptr));
    EXPECT_EQ(tree_difference(group, again), "");
}

TEST(deep_nesting, a_deep_copy_of_an_entry_is_equal) {
    const auto group = make_tree(lesser_depth);
    const ParserEntry& entry = *group->get_entries()[0];
    const ParserEntry copy(entry);
    EXPECT_EQ(tree_difference(*entry.get_group(0), *copy.get_group(0)), "");
    ParserEntry assigned("b", ParserEntry::TYPE_ENTRY, 0, 0);
    assigned.copy_from(entry);
    EXPECT_EQ(tree_difference(*entry.get_group(0), *assigned.get_group(0)), "");
}

TEST(deep_nesting, a_deep_copy_of_a_value_is_printed_the_same) {
    const ParserValue value(make_tree(lesser_depth).release());
    EXPECT_TRUE(written(ParserValue(value)) == written(value));
}

TEST(deep_nesting, a_group_that_is_set_becomes_equal) {
    const auto group = make_tree(lesser_depth);
    ParserGroup other("other");
    other.set(*group);
    EXPECT_EQ(tree_difference(*group, other), "");
    other.clear();
    EXPECT_EQ(other.get_entries().get_count(), 0u);
}

TEST(deep_nesting, a_shallow_assignment_dies_with_the_last_that_lists_the_entries) {
    auto first = make_tree(lesser_depth);
    auto second = std::make_unique<ParserGroup>("second");
    *second = *first;
    first.reset();
    EXPECT_EQ(measure(*second), lesser_depth);
}

TEST(deep_nesting, removing_the_outermost_entry_destroys_all_below) {
    const auto group = make_tree(lesser_depth);
    group->remove_entry(0u);
    EXPECT_EQ(group->get_entries().get_count(), 0u);
}

TEST(deep_nesting, resetting_the_outermost_entry_destroys_all_below) {
    const auto group = make_tree(lesser_depth);
    group->get_entries()[0]->reset();
    EXPECT_EQ(group->get_entries()[0]->get_value_count(), 0u);
}

TEST(deep_nesting, groups_in_argument_lists_are_parsed_and_printed) {
    const RecordingLog quiet(0);
    ParserGroup group("root");
    EXPECT_TRUE(group.set_text(core(repeated("f({", lesser_depth)), CoreVersion(1.2), nullptr));
    EXPECT_TRUE(compact(group) == repeated(" f({", lesser_depth) + repeated(" })", lesser_depth));
}

TEST(deep_nesting, groups_built_from_the_inside_out_are_destroyed) {
    auto group = std::make_unique<ParserGroup>("inner");
    for (unsigned int i = 0; i < lesser_depth; ++i) {
        auto outer = std::make_unique<ParserGroup>("outer");
        outer->add_group(group.release());
        group = std::move(outer);
    }
    EXPECT_EQ(measure(*group), lesser_depth);
}

TEST(deep_nesting, a_file_dies_with_its_last_copy) {
    auto file = std::make_unique<ParserFile>(*make_tree(lesser_depth).release());
    const ParserFile copy(*file);
    file.reset();
    EXPECT_EQ(measure(copy.get_root()), lesser_depth);
}

TEST(deep_nesting, a_moderate_depth_is_printed_pretty) {
    ParserGroup group("root");
    ASSERT_TRUE(group.set_text(core(repeated("a{", 1000)), CoreVersion(1.2), nullptr));
    CoreString text;
    group.get_text(text, false, true, 1);
    const unsigned int line_ends_and_words = 1000 * 4 + 1000 * 2;
    EXPECT_EQ(text.get_length(), line_ends_and_words + 2 * 4u * (999u * 1000u / 2));
}
