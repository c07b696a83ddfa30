#include "parser/parser_file.h"
#include "tests/support/archive_form.h"
#include "tests/support/binary_form.h"
#include "tests/support/deep.h"
#include "tests/support/recording_log.h"
#include "tests/support/scratch_folder.h"
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

/// The number of nested groups. Follows the first entry of each group.
unsigned int measure(const ParserGroup& root) {
    unsigned int levels = 0;
    const ParserGroup* group = &root;
    while (group->get_entries().get_count() != 0 && group->get_entries()[0]->is_group()) {
        group = group->get_entries()[0]->get_group(0);
        ++levels;
    }
    return levels;
}

std::unique_ptr<ParserGroup> make_tree(unsigned int levels) {
    const std::string text = repeated("a{", levels) + "needle 1 " + repeated("}", levels);
    auto group = std::make_unique<ParserGroup>("root");
    EXPECT_TRUE(group->set_text(core(text), CoreVersion(1.2), nullptr));
    return group;
}

/// `levels` nested groups. `innermost` is the content of the innermost one. `after` follows each group inside
/// the group around it. Built from the outside in, without recursion.
std::string nested_form(unsigned int levels, std::string_view innermost, std::string_view after) {
    const core_uint64 step = 2 + 8 + 1 + 1 + 8 + after.size();
    std::string bytes = size_field(innermost.size() + step * levels);
    for (unsigned int level = levels; level-- > 0;) {
        const core_uint64 inner = innermost.size() + step * level;
        bytes +=
            std::string("a\0", 2) + size_field(1 + 1 + 8 + inner) + std::string(2, '\0') + size_field(inner);
    }
    bytes += innermost;
    return bytes + repeated(after, levels);
}

bool read(ParserGroup& group, std::string_view bytes) {
    core_uint64 position = 0;
    const bool result = group.set_binary(buffer(bytes), position);
    EXPECT_LE(position, bytes.size());
    return result;
}

} // namespace

TEST(binary_deep, a_million_groups_are_encoded_decoded_and_destroyed) {
    auto tree = make_tree(depth);
    CoreVector<char> bytes = tree->get_binary(false);
    const std::string innermost = binary_form::entry("needle", binary_form::int_value(1));
    EXPECT_TRUE(bytes_of(bytes) == nested_form(depth, innermost, ""));

    ParserGroup again("root");
    core_uint64 position = 0;
    const RecordingLog log;
    EXPECT_TRUE(again.set_binary(bytes, position));
    EXPECT_EQ(position, bytes.get_count());
    EXPECT_TRUE(log.is_empty());
    bytes.clear();
    EXPECT_EQ(measure(again), depth);
    EXPECT_EQ(tree_difference(*tree, again), "");
    tree.reset();
    again.clear();
    EXPECT_EQ(again.get_entries().get_count(), 0u);
}

TEST(binary_deep, a_million_groups_pass_through_a_file) {
    ParserFile file(*make_tree(depth).release());
    ParserFile again(CoreString{});
    EXPECT_TRUE(again.set_binary(file.get_binary()));
    EXPECT_EQ(tree_difference(file.get_root(), again.get_root()), "");
}

TEST(binary_deep, a_million_groups_are_archived_and_restored) {
    const ScratchFolder folder;
    auto tree = make_tree(depth);
    ParserArchive archive;
    ParserImpl::archive_group(*tree, archive, false, nullptr);
    EXPECT_EQ(archive_form::strings_of(archive), (archive_form::Strings{"a", "{", "needle", "1", "}"}));
    EXPECT_EQ(archive.indices.get_count(), 3 * depth + 2);

    EXPECT_EQ(plain(ParserImpl::save_archive(archive, folder.core_path("out"), nullptr)), "");
    ParserArchive loaded;
    EXPECT_EQ(plain(ParserImpl::load_archive(loaded, folder.core_path("out"), nullptr)), "");
    EXPECT_TRUE(archive_form::indices_of(loaded) == archive_form::indices_of(archive));

    ParserGroup again("root");
    const RecordingLog log;
    ParserImpl::group_set_archive(again, loaded, nullptr);
    EXPECT_TRUE(log.is_empty());
    EXPECT_EQ(tree_difference(*tree, again), "");
}

TEST(binary_deep, a_million_groups_are_enciphered_and_deciphered) {
    auto tree = make_tree(depth);
    CoreArray<unsigned char> block;
    tree->get_encrypted_text(block, "key", false, false, 1);
    ParserGroup again("root");
    EXPECT_TRUE(again.set_encrypted_text(block, "key"));
    EXPECT_EQ(tree_difference(*tree, again), "");
}

TEST(binary_deep, values_and_entries_are_encoded_and_decoded_too) {
    const auto tree = make_tree(lesser_depth);
    const ParserEntry& entry = *tree->get_entries()[0];
    const std::string innermost = binary_form::entry("needle", binary_form::int_value(1));
    const std::string form = nested_form(lesser_depth, innermost, "");
    EXPECT_TRUE(bytes_of(entry.get_binary()) == form.substr(8));

    ParserEntry again("a", ParserEntry::TYPE_ENTRY, 0, 0);
    core_uint64 position = 10;
    EXPECT_TRUE(again.set_binary(buffer(form), position));
    EXPECT_EQ(tree_difference(*entry.get_group(0), *again.get_group(0)), "");

    CoreVector<char> out;
    EXPECT_EQ(ParserValue::group_to_bin(out, *entry.get_group(0)), form.size() - 20);
    position = 0;
    const std::unique_ptr<ParserValue> value(
        ParserValue::bin_to_value(buffer(std::string(1, '\0') + bytes_of(out)), position));
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(position, out.get_count() + 1u);
}

TEST(binary_deep, a_failure_in_the_innermost_group_is_no_failure_of_the_outermost) {
    const std::string innermost = binary_form::entry("b", binary_form::word_value());
    ParserGroup group("root");
    const RecordingLog log;
    EXPECT_TRUE(read(group, nested_form(depth, innermost, "")));
    EXPECT_TRUE(log.is_empty());
    EXPECT_EQ(measure(group), depth);
}

TEST(binary_deep, every_group_may_fail_on_its_own) {
    const std::string failing = binary_form::entry("b", binary_form::word_value());
    ParserGroup group("root");
    const RecordingLog log;
    EXPECT_FALSE(read(group, nested_form(depth, failing, failing)));
    EXPECT_TRUE(log.is_empty());
    EXPECT_EQ(measure(group), depth);
    EXPECT_EQ(group.get_entries().get_count(), 1u) << "entries that fail are dropped";
}

TEST(binary_deep, every_group_may_be_without_a_name_for_its_next_entry) {
    const std::string nameless(1, '\0');
    ParserGroup group("root");
    RecordingLog log;
    EXPECT_FALSE(read(group, nested_form(lesser_depth, nameless, nameless)));
    ASSERT_EQ(log.messages.size(), lesser_depth + 1);
    EXPECT_EQ(log.messages.back().text, "ParserGroup.set_binary: Failed to read entry name\n");
    EXPECT_EQ(measure(group), lesser_depth);
}

TEST(binary_deep, many_groups_that_are_too_large_are_each_empty) {
    // Each group but the outermost claims the size of the whole document.
    const unsigned int levels = lesser_depth;
    const std::string level =
        std::string("a\0", 2) + size_field(10) + std::string(2, '\0') + size_field(core_uint64{20} * levels);
    const std::string inside = repeated(level, levels);
    ParserGroup group("root");
    RecordingLog log;
    EXPECT_TRUE(read(group, size_field(inside.size()) + inside));
    EXPECT_EQ(log.messages.size(), levels) << "none of them is entered";
    EXPECT_EQ(group.get_entries().get_count(), levels);
}

TEST(binary_deep, a_million_groups_beside_each_other_are_encoded_and_decoded) {
    ParserGroup group("root");
    ParserEntry& entry = *group.add_entry("a", 0, 0);
    for (unsigned int i = 0; i < depth; ++i) {
        entry.add_group(nullptr);
    }
    const CoreVector<char> bytes = group.get_binary(false);
    EXPECT_TRUE(bytes_of(bytes) == binary_form::group(binary_form::entry(
                                       "a", repeated(std::string_view("\0\0\0\0\0\0\0\0\0", 9), depth))));
    ParserGroup again("root");
    EXPECT_TRUE(read(again, bytes_of(bytes)));
    ASSERT_EQ(again.get_entries().get_count(), 1u);
    EXPECT_EQ(again.get_entries()[0]->get_value_count(), depth);
}

TEST(binary_deep, a_million_entries_are_encoded_and_decoded) {
    const std::string entry = binary_form::entry("a", binary_form::bool_value(true));
    const std::string form = binary_form::group(repeated(entry, depth));
    ParserGroup group("root");
    EXPECT_TRUE(read(group, form));
    EXPECT_EQ(group.get_entry_count(), depth);
    EXPECT_TRUE(bytes_of(group.get_binary(false)) == form);
}
