#include "parser/parser_file.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

constexpr unsigned int depth = 1000000;

std::string repeated(std::string_view part, unsigned int count) {
    std::string text;
    text.reserve(part.size() * count);
    for (unsigned int i = 0; i < count; ++i) {
        text += part;
    }
    return text;
}

/// A million groups, each in the one before, and an entry in the innermost. None of what is done with them may
/// take a stack that grows with the depth.
class DeepTree : public testing::Test {
protected:
    static void SetUpTestSuite() {
        const std::string text = repeated("a{", depth) + "needle 1 " + repeated("}", depth);
        tree_ = std::make_unique<ParserGroup>("root");
        RecordingLog log;
        ASSERT_TRUE(tree_->set_text(core(text), CoreVersion(1.2), nullptr));
        EXPECT_TRUE(log.is_empty());
    }
    static void TearDownTestSuite() { tree_.reset(); }

    static ParserGroup& tree() { return *tree_; }

    static std::string compact(const ParserGroup& group) {
        CoreString text;
        group.get_text(text, false, false, 1);
        return plain(text);
    }

    static const std::string& expected_text() {
        static const std::string text = repeated(" a {", depth) + " needle 1" + repeated(" }", depth);
        return text;
    }

private:
    static inline std::unique_ptr<ParserGroup> tree_;
};

unsigned int measure(const ParserGroup& root) {
    unsigned int levels = 0;
    for (const ParserGroup* group = &root; group->get_entries().get_count() == 1;) {
        const ParserEntry& entry = *group->get_entries()[0];
        if (!entry.is_group()) {
            break;
        }
        group = entry.get_group(0);
        ++levels;
    }
    return levels;
}

} // namespace

using deep_nesting = DeepTree;

TEST_F(deep_nesting, a_million_groups_are_parsed) {
    EXPECT_EQ(measure(tree()), depth);
}

TEST_F(deep_nesting, a_million_groups_are_printed_in_one_line) {
    EXPECT_TRUE(compact(tree()) == expected_text());
}

TEST_F(deep_nesting, the_print_reads_back) {
    ParserGroup again("root");
    EXPECT_TRUE(again.set_text(core(compact(tree())), CoreVersion(1.2), nullptr));
    EXPECT_EQ(tree_difference(tree(), again), "");
}

TEST_F(deep_nesting, a_deep_copy_of_a_group_is_equal_and_independent) {
    auto copy = std::make_unique<ParserGroup>(tree());
    EXPECT_EQ(tree_difference(tree(), *copy), "");
    copy->get_entries("needle", true)[0]->set_int(2, 0);
    EXPECT_EQ(tree().get_entries("needle", true)[0]->get_int(0), 1);
    copy.reset();
    EXPECT_EQ(measure(tree()), depth);
}

TEST_F(deep_nesting, a_deep_copy_of_an_entry_or_a_value_is_equal) {
    const ParserEntry& entry = *tree().get_entries()[0];
    const ParserEntry copy(entry);
    EXPECT_EQ(tree_difference(*entry.get_group(0), *copy.get_group(0)), "");
    ParserEntry assigned("b", ParserEntry::TYPE_ENTRY, 0, 0);
    assigned.copy_from(entry);
    EXPECT_EQ(tree_difference(*entry.get_group(0), *assigned.get_group(0)), "");
}

TEST_F(deep_nesting, a_group_that_is_set_becomes_equal) {
    ParserGroup other("other");
    other.set(tree());
    EXPECT_EQ(tree_difference(tree(), other), "");
    other.clear();
    EXPECT_EQ(other.get_entries().get_count(), 0u);
}

TEST_F(deep_nesting, the_innermost_entry_is_found) {
    const CoreVector<ParserEntry*> found = tree().get_entries("needle", true);
    ASSERT_EQ(found.get_count(), 1u);
    EXPECT_EQ(found[0]->get_int(0), 1);
    EXPECT_EQ(tree().get_entries("missing", true).get_count(), 0u);
}

TEST_F(deep_nesting, a_shallow_assignment_dies_with_the_last_that_lists_the_entries) {
    auto first = std::make_unique<ParserGroup>(tree());
    auto second = std::make_unique<ParserGroup>("second");
    *second = *first;
    first.reset();
    EXPECT_EQ(measure(*second), depth);
}

TEST_F(deep_nesting, removing_the_outermost_entry_destroys_all_below) {
    ParserGroup copy(tree());
    copy.remove_entry(0u);
    EXPECT_EQ(copy.get_entries().get_count(), 0u);
}

TEST_F(deep_nesting, resetting_the_outermost_entry_destroys_all_below) {
    ParserGroup copy(tree());
    copy.get_entries()[0]->reset();
    EXPECT_EQ(copy.get_entries()[0]->get_value_count(), 0u);
}

TEST(deep_nesting_in_texts, a_million_groups_left_open_are_parsed) {
    ParserGroup group("root");
    EXPECT_TRUE(group.set_text(core(repeated("a{", depth)), CoreVersion(1.2), nullptr));
    EXPECT_EQ(measure(group), depth);
}

TEST(deep_nesting_in_texts, a_million_groups_in_argument_lists_are_parsed_and_printed) {
    const RecordingLog quiet(0);
    ParserGroup group("root");
    EXPECT_TRUE(group.set_text(core(repeated("f({", depth)), CoreVersion(1.2), nullptr));
    CoreString text;
    group.get_text(text, false, false, 1);
    EXPECT_TRUE(plain(text) == repeated(" f({", depth) + repeated(" })", depth));
}

TEST(deep_nesting_in_texts, groups_built_from_the_inside_out_are_destroyed) {
    auto group = std::make_unique<ParserGroup>("inner");
    for (unsigned int i = 0; i < depth; ++i) {
        auto outer = std::make_unique<ParserGroup>("outer");
        outer->add_group(group.release());
        group = std::move(outer);
    }
    EXPECT_EQ(measure(*group), depth);
}

TEST(deep_nesting_in_texts, a_moderate_depth_is_printed_pretty) {
    ParserGroup group("root");
    ASSERT_TRUE(group.set_text(core(repeated("a{", 1000)), CoreVersion(1.2), nullptr));
    CoreString text;
    group.get_text(text, false, true, 1);
    EXPECT_EQ(text.get_length(), 1000u * (3 + 1) + 1000u * 2 + 4u * 1000u * 999u);
}

TEST(deep_nesting_in_files, a_file_with_a_million_groups_dies_with_its_last_copy) {
    auto* root = new ParserGroup("root");
    ASSERT_TRUE(root->set_text(core(repeated("a{", depth)), CoreVersion(1.2), nullptr));
    auto file = std::make_unique<ParserFile>(*root);
    const ParserFile copy(*file);
    file.reset();
    EXPECT_EQ(measure(copy.get_root()), depth);
}
