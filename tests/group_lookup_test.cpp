#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class group_lookup : public testing::Test {
protected:
    ParserGroup group{CoreString("group")};

    ParserEntry* add(const char* name, core_ulong line = 0) {
        return group.add_entry(CoreString(name), line, 0);
    }
    static std::vector<ParserEntry*> list(const CoreVector<ParserEntry*>& entries) {
        return {entries.begin(), entries.end()};
    }
    std::vector<ParserEntry*> find(const char* name, bool recursive) const {
        return list(group.get_entries(CoreString(name), recursive));
    }
    using Entries = std::vector<ParserEntry*>;
};

TEST_F(group_lookup, ordinals_count_ordinary_entries_and_positions_count_all) {
    ParserEntry* a = add("a");
    ParserEntry* k = add("#k");
    ParserEntry* b = add("b");
    EXPECT_EQ(group.get_entry_count(), 2u);
    EXPECT_EQ(group.get_entry(0u), a);
    EXPECT_EQ(group.get_entry(1u), b);
    EXPECT_EQ(list(group.get_entries()), (Entries{a, k, b}));
}

TEST_F(group_lookup, ordinals_skip_runs_of_keywords_wherever_they_stand) {
    std::vector<ParserEntry*> ordinary;
    for (const char* name : {"#k", "#k", "a", "b", "#k", "c", "#k", "#k", "#k", "d", "#k"}) {
        ParserEntry* entry = add(name);
        if (name[0] != '#') {
            ordinary.push_back(entry);
        }
    }
    ASSERT_EQ(group.get_entry_count(), ordinary.size());
    for (unsigned int i = 0; i < ordinary.size(); ++i) {
        EXPECT_EQ(group.get_entry(i), ordinary[i]) << i;
    }
}

TEST_F(group_lookup, the_first_entry_of_a_name_is_found) {
    ParserEntry* first = add("x");
    add("x");
    ParserEntry* other = add("y");
    EXPECT_EQ(group.get_entry(CoreString("x")), first);
    EXPECT_EQ(group.get_entry(CoreString("y")), other);
    EXPECT_EQ(group.get_entry(CoreString("z")), nullptr);
    EXPECT_EQ(group.get_entry(CoreString()), nullptr);
}

TEST_F(group_lookup, names_are_compared_exactly) {
    add("name[3]");
    add("Name");
    EXPECT_EQ(group.get_entry(CoreString("name")), nullptr);
    EXPECT_NE(group.get_entry(CoreString("name[3]")), nullptr);
    EXPECT_EQ(group.get_entry(CoreString("NAME")), nullptr);
    EXPECT_EQ(group.get_entry(CoreString("Name ")), nullptr);
    EXPECT_EQ(group.get_entry(CoreString("Nam")), nullptr);
}

TEST_F(group_lookup, an_entry_is_found_under_the_name_it_was_given_later) {
    add("x")->rename(CoreString("renamed"));
    EXPECT_EQ(group.get_entry(CoreString("x")), nullptr);
    EXPECT_EQ(group.get_entry(CoreString("renamed")), group.get_entry(0u));
}

TEST_F(group_lookup, entries_and_keywords_are_looked_up_apart) {
    ParserEntry* entry = add("x");
    ParserEntry* keyword = add("#k");
    ParserEntry* second = add("#k");
    EXPECT_EQ(group.get_keyword(CoreString("#k")), keyword);
    EXPECT_NE(group.get_keyword(CoreString("#k")), second);
    EXPECT_EQ(group.get_keyword(CoreString("x")), nullptr);
    EXPECT_EQ(group.get_entry(CoreString("#k")), nullptr);
    EXPECT_EQ(group.get_entry(CoreString("x")), entry);
    EXPECT_EQ(group.get_keyword(CoreString("#other")), nullptr);
}

TEST_F(group_lookup, the_first_position_of_each_type_is_found) {
    add("a");
    add("#k");
    add("b");
    EXPECT_EQ(group.get_first_entry_index(ParserEntry::TYPE_ENTRY), 0u);
    EXPECT_EQ(group.get_first_entry_index(ParserEntry::TYPE_KEYWORD), 1u);
    EXPECT_EQ(group.get_first_entry_index(ParserEntry::TYPE_RAW_TEXT), 0xFFFFFFFFu);
    EXPECT_EQ(group.get_first_entry_index(ParserEntry::TYPE_FUNCTION_CALL), 0xFFFFFFFFu);
    group.get_entry(1u)->set_as_raw_text(true);
    EXPECT_EQ(group.get_first_entry_index(ParserEntry::TYPE_RAW_TEXT), 2u);
}

TEST_F(group_lookup, an_empty_group_has_no_first_position) {
    EXPECT_EQ(group.get_first_entry_index(ParserEntry::TYPE_ENTRY), 0xFFFFFFFFu);
    EXPECT_EQ(group.get_entry(CoreString("x")), nullptr);
    EXPECT_EQ(group.get_keyword(CoreString("#k")), nullptr);
    EXPECT_EQ(find("x", true), Entries{});
}

TEST_F(group_lookup, all_entries_of_a_name_are_found_in_order) {
    ParserEntry* first = add("x");
    add("y");
    add("#x");
    ParserEntry* second = add("x");
    EXPECT_EQ(find("x", false), (Entries{first, second}));
    EXPECT_EQ(find("x", true), (Entries{first, second}));
    EXPECT_EQ(find("#x", false), Entries{});
    EXPECT_EQ(find("z", true), Entries{});
}

TEST_F(group_lookup, a_recursive_search_goes_into_groups_but_not_into_what_was_found) {
    ParserEntry* inner = group.add_group(CoreString("g"))->add_entry(CoreString("x"), 0, 0);
    ParserEntry* outer = add("x");
    outer->add_group(nullptr)->add_entry(CoreString("x"), 0, 0);
    EXPECT_EQ(find("x", true), (Entries{inner, outer}));
    EXPECT_EQ(find("x", false), (Entries{outer}));
}

TEST_F(group_lookup, a_recursive_search_is_depth_first_in_document_order) {
    ParserGroup* g = group.add_group(CoreString("g"));
    ParserEntry* first = g->add_group(CoreString("h"))->add_entry(CoreString("x"), 0, 0);
    ParserEntry* second = g->add_entry(CoreString("x"), 0, 0);
    ParserEntry* third = add("x");
    ParserEntry* fourth = group.add_group(CoreString("i"))->add_entry(CoreString("x"), 0, 0);
    EXPECT_EQ(find("x", true), (Entries{first, second, third, fourth}));
}

TEST_F(group_lookup, every_group_among_the_values_of_an_entry_is_searched) {
    ParserEntry* entry = add("e");
    entry->add_int(1);
    ParserEntry* first = entry->add_group(nullptr)->add_entry(CoreString("x"), 0, 0);
    entry->add_string(CoreString("x"));
    entry->add_group(nullptr);
    ParserEntry* second = entry->add_group(nullptr)->add_entry(CoreString("x"), 0, 0);
    EXPECT_EQ(find("x", true), (Entries{first, second}));
    EXPECT_EQ(entry->get_value_count(), 5u);
}

TEST_F(group_lookup, what_keywords_hold_is_not_searched) {
    group.add_group(CoreString("#k"))->add_entry(CoreString("x"), 0, 0);
    EXPECT_EQ(find("x", true), Entries{});
    ParserGroup* g = group.add_group(CoreString("g"));
    g->add_group(CoreString("#k"))->add_entry(CoreString("x"), 0, 0);
    EXPECT_EQ(find("x", true), Entries{});
}

TEST_F(group_lookup, searching_makes_no_groups_in_empty_entries) {
    ParserEntry* entry = add("e");
    EXPECT_EQ(find("x", true), Entries{});
    EXPECT_EQ(entry->get_value_count(), 0u);
}

TEST_F(group_lookup, an_entry_whose_type_changed_keeps_its_ordinal_until_the_indexes_are_rebuilt) {
    ParserEntry* entry = add("e");
    add("f");
    entry->set_as_raw_text(true);
    EXPECT_EQ(group.get_entry_count(), 2u);
    EXPECT_EQ(group.get_entry(0u), entry);
    EXPECT_EQ(group.get_entry(CoreString("e")), entry);
    EXPECT_EQ(group.get_keyword(CoreString("e")), nullptr);
    EXPECT_EQ(find("e", false), (Entries{entry}));
    EXPECT_EQ(group.get_first_entry_index(ParserEntry::TYPE_ENTRY), 1u);
    group.move_entry(1, 1);
    EXPECT_EQ(group.get_entry_count(), 1u);
    EXPECT_EQ(group.get_entry(CoreString("e")), nullptr);
    EXPECT_EQ(group.get_keyword(CoreString("e")), entry);
    EXPECT_EQ(find("e", false), Entries{});
}

TEST_F(group_lookup, a_keyword_made_ordinary_gets_its_ordinal_when_the_indexes_are_rebuilt) {
    ParserEntry* keyword = add("#k");
    keyword->set_as_raw_text(false);
    EXPECT_EQ(group.get_entry_count(), 0u);
    EXPECT_EQ(group.get_keyword(CoreString("#k")), keyword);
    group.remove_entry(99u);
    EXPECT_EQ(group.get_entry_count(), 1u);
    EXPECT_EQ(group.get_entry(0u), keyword);
    EXPECT_EQ(group.get_keyword(CoreString("#k")), nullptr);
}

TEST_F(group_lookup, a_hundred_thousand_ordinals_among_as_many_keywords_are_found) {
    std::vector<ParserEntry*> ordinary;
    for (unsigned int i = 0; i < 100000; ++i) {
        ordinary.push_back(add("e"));
        add("#k");
    }
    for (unsigned int i = 0; i < 100000; ++i) {
        ASSERT_EQ(group.get_entry(i), ordinary[i]);
    }
    EXPECT_EQ(find("e", true).size(), 100000u);
}

} // namespace
