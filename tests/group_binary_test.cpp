#include "tests/support/binary_form.h"
#include "tests/support/group_outline.h"
#include "tests/support/random_tree.h"
#include "tests/support/recording_log.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

using namespace binary_form;

const char* const too_large = "ParserGroup.set_binary: ParserGroup size larger than the given data\n";
const char* const no_name = "ParserGroup.set_binary: Failed to read entry name\n";
const char* const bad_string = "ParserValue.bin_to_string: Failed to parse string\n";

/// Reads a group from a position in a buffer.
class ReadGroup {
public:
    explicit ReadGroup(std::string_view bytes, int verbosity = 2) : group_("g") {
        RecordingLog log(verbosity);
        core_uint64 position = 3;
        result_ = group_.set_binary(buffer("***" + std::string(bytes)), position);
        advance_ = position - 3;
        for (const LoggedMessage& message : log.messages) {
            EXPECT_EQ(message.level, 2);
            messages_.push_back(message.text);
        }
    }

    ParserGroup& group() { return group_; }
    bool result() const { return result_; }
    core_uint64 advance() const { return advance_; }
    const std::vector<std::string>& messages() const { return messages_; }
    bool is_quiet() const { return messages_.empty(); }

private:
    ParserGroup group_;
    bool result_ = false;
    core_uint64 advance_ = 0;
    std::vector<std::string> messages_;
};

using Messages = std::vector<std::string>;

} // namespace

TEST(group_binary, an_empty_group_is_its_size) {
    EXPECT_EQ(hex(ParserGroup("g").get_binary(false)), "00 00 00 00 00 00 00 00");
}

TEST(group_binary, the_name_comes_first_when_it_is_asked_for) {
    EXPECT_EQ(hex(ParserGroup("g").get_binary(true)), "67 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(ParserGroup("").get_binary(true)), "00 00 00 00 00 00 00 00 00");
}

TEST(group_binary, entries_follow_their_size_in_order) {
    ParserGroup group("g");
    group.add_entry("b", 1, 2)->add_int(1);
    group.add_entry("a", 3, 4);
    const std::string entries = entry("b", int_value(1)) + entry("a", "");
    EXPECT_EQ(hex(group.get_binary(false)), hex(size_field(entries.size()) + entries));
    EXPECT_EQ(hex(group.get_binary(true)), hex(std::string("g\0", 2) + size_field(entries.size()) + entries));
}

TEST(group_binary, keywords_and_calls_are_entries_like_any_other) {
    ParserGroup group("g");
    ASSERT_TRUE(group.set_text("#k 1 f(2) a<t> 4 b[3] 5 ", CoreVersion(1.2), nullptr));
    const std::string entries = entry("#k", int_value(1)) + entry("f", int_value(2)) +
                                entry("a", int_value(4)) + entry("b", int_value(5));
    EXPECT_EQ(hex(group.get_binary(false)), hex(binary_form::group(entries)));
}

TEST(group_binary, the_name_of_a_group_inside_is_not_written) {
    ParserGroup group("g");
    group.add_group(new ParserGroup("inner"));
    EXPECT_EQ(hex(group.get_binary(false)), hex(binary_form::group(entry("inner", group_value("")))));
}

TEST(group_binary, an_empty_group_is_read) {
    ReadGroup read(size_field(0) + "rest");
    EXPECT_TRUE(read.result());
    EXPECT_TRUE(read.is_quiet());
    EXPECT_EQ(read.advance(), 8u);
    EXPECT_EQ(written(read.group()), "g { }");
}

TEST(group_binary, entries_are_read) {
    const std::string entries = entry("a", int_value(1)) + entry("b", "") + entry("c", bool_value(true));
    ReadGroup read(group(entries) + "rest");
    EXPECT_TRUE(read.result());
    EXPECT_TRUE(read.is_quiet());
    EXPECT_EQ(read.advance(), 8 + entries.size());
    EXPECT_EQ(written(read.group()), "g { a 1 b <empty> c yes }");
}

TEST(group_binary, entries_are_appended_to_those_of_the_group) {
    ParserGroup target("g");
    target.add_entry("a", 0, 0)->add_int(1);
    const CoreVector<char> data = buffer(group(entry("b", int_value(2))));
    for (int i = 0; i < 2; ++i) {
        core_uint64 position = 0;
        EXPECT_TRUE(target.set_binary(data, position));
    }
    EXPECT_EQ(written(target), "g { a 1 b 2 b 2 }");
}

TEST(group_binary, entries_have_ordinals_at_once) {
    ReadGroup read(group(entry("a", int_value(1)) + entry("b", int_value(2))));
    EXPECT_EQ(outline(read.group()), " (a) (b)");
    EXPECT_EQ(read.group().get_entry_count(), 2u);
    EXPECT_EQ(read.group().get_entry("b"), read.group().get_entries()[1]);
}

TEST(group_binary, ordinals_go_on_after_keywords_of_the_group) {
    ParserGroup target("g");
    add_names(target, "a #k");
    core_uint64 position = 0;
    ASSERT_TRUE(target.set_binary(buffer(group(entry("b", ""))), position));
    EXPECT_EQ(outline(target), " (a) #k (b)");
}

TEST(group_binary, entries_read_are_ordinary_ones_without_a_place) {
    ReadGroup read(group(entry("#k", int_value(1))));
    ASSERT_EQ(read.group().get_entries().get_count(), 1u);
    const ParserEntry& keyword = *read.group().get_entries()[0];
    EXPECT_EQ(keyword.get_type(), ParserEntry::TYPE_ENTRY);
    EXPECT_EQ(keyword.get_line(), 0u);
    EXPECT_EQ(keyword.get_column(), 0u);
    EXPECT_FALSE(keyword.is_array());
    EXPECT_FALSE(keyword.is_template());
    EXPECT_EQ(read.group().get_keyword("#k"), nullptr);
    EXPECT_EQ(read.group().get_entry("#k"), &keyword);
}

TEST(group_binary, names_are_not_checked) {
    for (const char* name : {"a b", "1", "a[3]", "yes", "\"", "\x80", "}"}) {
        ReadGroup read(group(entry(name, int_value(1))));
        EXPECT_TRUE(read.result());
        EXPECT_TRUE(read.is_quiet());
        ASSERT_EQ(read.group().get_entries().get_count(), 1u);
        EXPECT_EQ(plain(read.group().get_entries()[0]->get_name()), name);
    }
}

TEST(group_binary, kinds_templates_and_array_counts_do_not_survive) {
    ParserGroup source("g");
    ASSERT_TRUE(source.set_text("#k 1 f(2) a<t> 4 b[3] 5 ", CoreVersion(1.2), nullptr));
    ReadGroup read(bytes_of(source.get_binary(false)));
    EXPECT_TRUE(read.result());
    EXPECT_EQ(written(read.group()), "g { #k 1 f 2 a 4 b 5 }");
    EXPECT_EQ(outline(read.group()), " (#k) (f) (a) (b)");
}

TEST(group_binary, a_size_larger_than_what_follows_is_refused) {
    const std::string entries = entry("a", int_value(1));
    ReadGroup read(size_field(entries.size() + 1) + entries);
    EXPECT_FALSE(read.result());
    EXPECT_EQ(read.messages(), Messages{too_large});
    EXPECT_EQ(read.advance(), 8u);
    EXPECT_EQ(read.group().get_entries().get_count(), 0u);
}

TEST(group_binary, the_largest_sizes_are_refused) {
    const std::string entries = entry("a", int_value(1));
    // Includes sizes that wrap around to a place inside the buffer.
    for (const core_uint64 size : {~core_uint64{0}, ~core_uint64{0} - 10, ~core_uint64{0} - 5,
                                   core_uint64{0x100000000} + entries.size(), core_uint64{1} << 63}) {
        ReadGroup read(size_field(size) + entries);
        EXPECT_FALSE(read.result()) << size;
        EXPECT_EQ(read.messages(), Messages{too_large}) << size;
        EXPECT_EQ(read.group().get_entries().get_count(), 0u) << size;
    }
}

TEST(group_binary, faults_are_not_composed_below_verbosity_2) {
    ReadGroup large(size_field(1), 1);
    EXPECT_FALSE(large.result());
    EXPECT_TRUE(large.is_quiet());
    ReadGroup nameless(size_field(1) + "a", 1);
    EXPECT_FALSE(nameless.result());
    EXPECT_TRUE(nameless.is_quiet());
}

TEST(group_binary, a_size_that_ends_inside_an_entry_takes_the_entry) {
    const std::string first = entry("a", int_value(1));
    for (core_uint64 size = 1; size <= first.size(); ++size) {
        ReadGroup read(size_field(size) + first + entry("b", int_value(2)));
        EXPECT_TRUE(read.result()) << size;
        EXPECT_TRUE(read.is_quiet());
        EXPECT_EQ(read.advance(), 8 + first.size());
        EXPECT_EQ(written(read.group()), "g { a 1 }");
    }
}

TEST(group_binary, a_size_one_past_an_entry_takes_the_next_too) {
    const std::string first = entry("a", int_value(1));
    ReadGroup read(size_field(first.size() + 1) + first + entry("b", int_value(2)));
    EXPECT_TRUE(read.result());
    EXPECT_EQ(written(read.group()), "g { a 1 b 2 }");
}

TEST(group_binary, an_empty_name_is_refused_and_what_was_read_stays) {
    ReadGroup read(group(entry("a", int_value(1)) + entry("", int_value(2)) + entry("c", int_value(3))));
    EXPECT_FALSE(read.result());
    EXPECT_EQ(read.messages(), Messages{no_name});
    EXPECT_EQ(written(read.group()), "g { a 1 }");
    EXPECT_EQ(outline(read.group()), " (a)");
}

TEST(group_binary, an_entry_whose_name_is_empty_cannot_be_read_back) {
    ParserGroup source("g");
    source.add_entry("a", 0, 0)->rename("");
    EXPECT_EQ(hex(source.get_binary(false)), hex(binary_form::group(entry("", ""))));
    ReadGroup read(bytes_of(source.get_binary(false)));
    EXPECT_FALSE(read.result());
    EXPECT_EQ(read.messages(), Messages{no_name});
}

TEST(group_binary, a_name_without_its_nul_is_reported_twice) {
    ReadGroup read(group("abc"));
    EXPECT_FALSE(read.result());
    EXPECT_EQ(read.messages(), (Messages{bad_string, no_name}));
    EXPECT_EQ(read.advance(), 8u + 3);
    EXPECT_EQ(read.group().get_entries().get_count(), 0u);
}

TEST(group_binary, an_entry_that_fails_is_dropped_and_ends_the_reading) {
    ReadGroup read(
        group(entry("a", int_value(1)) + entry("b", int_value(2) + word_value()) + entry("c", int_value(3))));
    EXPECT_FALSE(read.result());
    EXPECT_TRUE(read.is_quiet());
    EXPECT_EQ(written(read.group()), "g { a 1 }");
    EXPECT_EQ(outline(read.group()), " (a)");
}

TEST(group_binary, an_entry_that_is_larger_than_the_buffer_is_reported_by_its_name) {
    const std::string entries = std::string("abc\0", 4) + size_field(100) + '\0';
    ReadGroup read(group(entries));
    EXPECT_FALSE(read.result());
    EXPECT_EQ(read.messages(), Messages{"ParserEntry.set_binary: ParserEntry 'abc', chunk size (100) is "
                                        "larger than the given buffer (24)\n"});
    EXPECT_EQ(read.group().get_entries().get_count(), 0u);
}

TEST(group_binary, an_entry_that_runs_past_its_group_is_read_as_long_as_there_are_data) {
    const std::string first = entry("a", int_value(1) + int_value(2));
    ReadGroup read(size_field(5) + first);
    EXPECT_TRUE(read.result());
    EXPECT_EQ(written(read.group()), "g { a 1 2 }");
}

TEST(group_binary, an_entry_that_is_cut_after_its_name_is_one_without_values) {
    ReadGroup read(group(std::string("a\0", 2)));
    EXPECT_TRUE(read.result());
    EXPECT_EQ(written(read.group()), "g { a <empty> }");
}

TEST(group_binary, a_group_inside_that_fails_does_not_fail_the_outer_one) {
    const std::string inner = entry("x", int_value(1)) + entry("y", word_value());
    ReadGroup read(group(entry("a", group_value(inner)) + entry("b", int_value(2))));
    EXPECT_TRUE(read.result());
    EXPECT_TRUE(read.is_quiet());
    EXPECT_EQ(written(read.group()), "g { a { x 1 } b 2 }");
}

TEST(group_binary, the_values_of_an_entry_that_fails_inside_go_with_it) {
    const std::string cut = "c" + std::string(1, '\0') + size_field(20) + std::string(1, '\0') + int_value(1);
    ReadGroup read(group(entry("a", int_value(2) + group_value(cut))));
    EXPECT_TRUE(read.result());
    ASSERT_EQ(read.group().get_entries().get_count(), 1u);
    EXPECT_EQ(written(*read.group().get_entries()[0]), "a 2 { }");
}

TEST(group_binary, an_empty_name_inside_does_not_fail_the_outer_group) {
    // The inner group ends after the NUL. There, the values of the entry around it continue.
    const std::string inner = std::string(1, '\0');
    ReadGroup read(group(entry("a", group_value(inner) + int_value(7)) + entry("b", int_value(2))));
    EXPECT_TRUE(read.result());
    EXPECT_EQ(read.messages(), Messages{no_name});
    EXPECT_EQ(written(read.group()), "g { a { } 7 b 2 }");
}

TEST(group_binary, a_size_that_is_cut_is_taken_with_zeros) {
    ReadGroup nothing("");
    EXPECT_FALSE(nothing.result()) << "the size of nothing ends past the data";
    EXPECT_EQ(nothing.messages(), Messages{too_large});
    ReadGroup cut(std::string(7, '\0'));
    EXPECT_FALSE(cut.result());
    EXPECT_EQ(cut.messages(), Messages{too_large});
}

TEST(group_binary, a_position_far_past_the_end_is_refused) {
    for (const core_uint64 start : {core_uint64{16}, core_uint64{1} << 32, ~core_uint64{0} - 20}) {
        RecordingLog log;
        ParserGroup target("g");
        core_uint64 position = start;
        EXPECT_FALSE(target.set_binary(buffer(std::string(16, '\0')), position));
        EXPECT_EQ(log.messages, one_warning(too_large));
    }
}

TEST(group_binary, every_cut_of_a_group_is_refused_at_once) {
    const std::string whole = group(entry("a", int_value(1)) + entry("b", string_value("x")));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        ReadGroup read(whole.substr(0, size));
        EXPECT_FALSE(read.result()) << size;
        EXPECT_EQ(read.messages(), Messages{too_large}) << size;
        EXPECT_EQ(read.group().get_entries().get_count(), 0u) << size;
    }
}

TEST(group_binary, random_trees_are_written_as_described_and_come_back) {
    for (unsigned int seed = 0; seed < 500; ++seed) {
        ParserGroup source("g");
        RandomTree(seed).fill(source);
        const std::string expected = group(entries_of(source));
        ASSERT_EQ(hex(source.get_binary(false)), hex(expected)) << seed;
        ReadGroup read(expected);
        EXPECT_TRUE(read.result());
        EXPECT_TRUE(read.is_quiet());
        EXPECT_EQ(read.advance(), expected.size());
        EXPECT_EQ(tree_difference(source, read.group()), "") << seed;
    }
}

TEST(group_binary, values_that_were_only_read_from_text_come_back) {
    ParserGroup source("g");
    ASSERT_TRUE(
        source.set_text("a yes 1 2.50 \"x\\ty\" 0x01FF00010000 { b no } ", CoreVersion(1.2), nullptr));
    ReadGroup read(bytes_of(source.get_binary(false)));
    EXPECT_TRUE(read.result());
    EXPECT_EQ(written(read.group()), R"(g { a yes 1 2.5 "x\ty" 0x01FF00010000 { b no } })");
}

TEST(group_binary, the_tree_that_was_read_can_be_edited) {
    ReadGroup read(group(entry("a", group_value(entry("b", int_value(1)))) + entry("c", int_value(2))));
    ParserGroup& group = read.group();
    group.get_entry("a")->get_group(0)->get_entry("b")->set_string("new", 0);
    group.get_entry("c")->set_int(3, 0);
    group.move_entry(1, 0);
    group.add_entry("d", 0, 0)->add_bool(true);
    EXPECT_EQ(written(group), R"(g { c 3 a { b "new" } d yes })");
    group.remove_entry("a");
    EXPECT_EQ(written(group), "g { c 3 d yes }");
}
