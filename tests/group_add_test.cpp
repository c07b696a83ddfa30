#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include "tests/support/counted_objects.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_log.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

using namespace std::literals;

namespace {

class group_add : public testing::Test {
protected:
    NothingLeaks nothing_leaks;
    RecordingLog log;
    ParserGroup group{CoreString("group")};

    ParserEntry* add(std::string_view name) { return group.add_entry(CoreString(name), 0, 0); }
    unsigned int total() const { return group.get_entries().get_count(); }
};

TEST_F(group_add, its_destructor_is_virtual) {
    EXPECT_TRUE(std::has_virtual_destructor_v<ParserGroup>);
}

TEST_F(group_add, a_new_group_has_its_name_and_nothing_else) {
    EXPECT_EQ(plain(group.get_name()), "group");
    EXPECT_EQ(group.get_entry_count(), 0u);
    EXPECT_EQ(total(), 0u);
    EXPECT_EQ(group.get_source_entry(), nullptr);
    EXPECT_TRUE(ParserGroup(CoreString()).get_name().is_empty());
}

TEST_F(group_add, an_identifier_makes_an_ordinary_entry_with_its_place) {
    ParserEntry* entry = group.add_entry(CoreString("width"), 3, 7);
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(plain(entry->get_name()), "width");
    EXPECT_EQ(entry->get_type(), ParserEntry::TYPE_ENTRY);
    EXPECT_EQ(entry->get_line(), 3u);
    EXPECT_EQ(entry->get_column(), 7u);
    EXPECT_EQ(group.get_entry_count(), 1u);
    EXPECT_EQ(total(), 1u);
    EXPECT_EQ(group.get_entry(0u), entry);
    EXPECT_TRUE(log.is_empty());
}

TEST_F(group_add, a_keyword_makes_a_keyword_entry_that_has_no_ordinal) {
    ParserEntry* entry = group.add_entry(CoreString("#version"), 5, 9);
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(plain(entry->get_name()), "#version");
    EXPECT_EQ(entry->get_type(), ParserEntry::TYPE_KEYWORD);
    EXPECT_EQ(entry->get_line(), 5u);
    EXPECT_EQ(entry->get_column(), 9u);
    EXPECT_EQ(group.get_entry_count(), 0u);
    EXPECT_EQ(total(), 1u);
    EXPECT_EQ(group.get_keyword(CoreString("#version")), entry);
    EXPECT_TRUE(log.is_empty());
}

TEST_F(group_add, valid_names_are_stored_as_given_with_their_suffixes) {
    for (const char* name : {"a", "_", "a.b", "a9", "Yes", "list[3]", "list[]", "map<key>", "a<b[2]>",
                             "yes[2]", "a_name_that_is_longer_than_eleven", "inf", "nan"}) {
        const ParserEntry* entry = add(name);
        ASSERT_NE(entry, nullptr) << name;
        EXPECT_EQ(plain(entry->get_name()), name);
        EXPECT_EQ(entry->get_type(), ParserEntry::TYPE_ENTRY) << name;
        EXPECT_FALSE(entry->is_array()) << name;
        EXPECT_FALSE(entry->is_template()) << name;
        EXPECT_FALSE(entry->has_value()) << name;
    }
    EXPECT_TRUE(log.is_empty());
}

TEST_F(group_add, a_name_that_is_not_valid_is_refused_with_a_message) {
    for (const std::string& name : {""s,         "1a"s,      "9"s,
                                    "a."s,       ".a"s,      "a b"s,
                                    "yes"s,      "no"s,      "#"s,
                                    "#1"s,       "#a.b"s,    "##"s,
                                    "list[-1]"s, "list[x]"s, "list[3"s,
                                    "map<>"s,    "map<1>"s,  "\"a\""s,
                                    "="s,        ","s,       "0x12"s,
                                    "<empty>"s,  "a\0b"s,    "a "s,
                                    "\xC3\xA9"s, "{"s,       "a-name-that-is-longer-than-eleven"s}) {
        EXPECT_EQ(group.add_entry(CoreString(std::string_view(name)), 1, 1), nullptr);
        EXPECT_EQ(log.take(),
                  one_warning("ParserGroup.add_entry: '" + name + "' is not a valid entry name\n"));
    }
    EXPECT_EQ(total(), 0u);
    EXPECT_EQ(group.get_entry_count(), 0u);
}

TEST_F(group_add, below_the_threshold_a_refusal_is_not_composed) {
    log.set_verbosity(CoreLogHandler::level_error);
    EXPECT_EQ(add("1a"), nullptr);
    EXPECT_EQ(group.add_group(CoreString("1a")), nullptr);
    EXPECT_TRUE(log.is_empty());
}

TEST_F(group_add, names_may_repeat) {
    ParserEntry* first = add("x");
    ParserEntry* second = add("x");
    EXPECT_NE(first, second);
    EXPECT_EQ(group.get_entry_count(), 2u);
}

TEST_F(group_add, entries_stay_where_they_are_while_others_are_added) {
    ParserEntry* first = add("first");
    for (int i = 0; i < 5000; ++i) {
        add(i % 3 == 0 ? "#k" : "e");
    }
    EXPECT_EQ(group.get_entry(0u), first);
    EXPECT_EQ(plain(first->get_name()), "first");
    EXPECT_EQ(total(), 5001u);
    EXPECT_EQ(group.get_entry_count(), 3334u);
}

TEST_F(group_add, an_entry_is_adopted_and_keeps_its_address) {
    auto* entry = new CountedEntry("e");
    EXPECT_EQ(group.add_entry(*entry), entry);
    EXPECT_EQ(group.get_entry(0u), entry);
    EXPECT_EQ(CountedEntry::alive, 1);
    group.clear();
    EXPECT_EQ(CountedEntry::alive, 0);
}

TEST_F(group_add, an_adopted_entry_is_filed_by_its_type_and_its_name_is_not_checked) {
    const ParserEntry::Type types[] = {ParserEntry::TYPE_ENTRY, ParserEntry::TYPE_KEYWORD,
                                       ParserEntry::TYPE_FUNCTION_CALL, ParserEntry::TYPE_RAW_TEXT};
    for (const ParserEntry::Type type : types) {
        EXPECT_NE(group.add_entry(*new CountedEntry("not a name", type)), nullptr);
    }
    EXPECT_EQ(group.get_entry_count(), 1u);
    EXPECT_EQ(total(), 4u);
    EXPECT_EQ(group.get_entry(0u), group.get_entries()[0]);
    EXPECT_EQ(group.get_keyword(CoreString("not a name")), group.get_entries()[1]);
    EXPECT_TRUE(log.is_empty());
}

TEST_F(group_add, a_new_group_is_held_by_a_new_entry_of_that_name) {
    ParserGroup* box = group.add_group(CoreString("box"));
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(box->get_name().is_empty());
    const ParserEntry* entry = group.get_entry(0u);
    EXPECT_EQ(plain(entry->get_name()), "box");
    EXPECT_EQ(entry->get_line(), 0u);
    EXPECT_EQ(entry->get_column(), 0u);
    EXPECT_TRUE(entry->is_group());
    EXPECT_EQ(entry->get_group(0), box);
    EXPECT_EQ(box->get_source_entry(), entry);
}

TEST_F(group_add, a_new_group_may_be_held_by_a_keyword) {
    ParserGroup* box = group.add_group(CoreString("#box"));
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(group.get_entry_count(), 0u);
    EXPECT_EQ(group.get_keyword(CoreString("#box"))->get_group(0), box);
}

TEST_F(group_add, a_new_group_of_a_name_that_is_not_valid_is_refused_with_a_message) {
    EXPECT_EQ(group.add_group(CoreString("no")), nullptr);
    EXPECT_EQ(log.take(), one_warning("ParserGroup.add_entry: 'no' is not a valid entry name\n"));
    EXPECT_EQ(total(), 0u);
}

TEST_F(group_add, a_group_is_adopted_under_its_own_name) {
    auto* box = new CountedGroup("box");
    EXPECT_EQ(group.add_group(box), box);
    EXPECT_EQ(plain(box->get_name()), "box");
    EXPECT_EQ(box->get_source_entry(), nullptr);
    const ParserEntry* entry = group.get_entry(CoreString("box"));
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->get_group(0), box);
    EXPECT_EQ(entry->get_line(), 0u);
    group.clear();
    EXPECT_EQ(CountedGroup::alive, 0);
}

TEST_F(group_add, the_source_entry_is_what_was_set) {
    ParserEntry* entry = add("e");
    group.set_source_entry(entry);
    EXPECT_EQ(group.get_source_entry(), entry);
    group.set_source_entry(nullptr);
    EXPECT_EQ(group.get_source_entry(), nullptr);
}

TEST_F(group_add, clear_deletes_the_entries_and_keeps_name_and_source) {
    ParserEntry source(CoreString("source"), ParserEntry::TYPE_ENTRY, 0, 0);
    group.set_source_entry(&source);
    group.add_entry(*new CountedEntry("e"));
    group.add_entry(*new CountedEntry("#k", ParserEntry::TYPE_KEYWORD));
    add("f")->add_group(new CountedGroup);
    group.clear();
    EXPECT_EQ(CountedEntry::alive, 0);
    EXPECT_EQ(CountedGroup::alive, 0);
    EXPECT_EQ(total(), 0u);
    EXPECT_EQ(group.get_entries().get_capacity(), 0u);
    EXPECT_EQ(group.get_entry_count(), 0u);
    EXPECT_EQ(group.get_keyword(CoreString("#k")), nullptr);
    EXPECT_EQ(plain(group.get_name()), "group");
    EXPECT_EQ(group.get_source_entry(), &source);
    group.clear();
    add("again");
    EXPECT_EQ(group.get_entry_count(), 1u);
}

/// A host's entry that is too large for a block of a slab.
class LargeEntry : public ParserEntry {
public:
    LargeEntry() : ParserEntry(CoreString("large"), TYPE_ENTRY, 0, 0) {
        for (char& byte : bytes) {
            byte = 'x';
        }
    }
    char bytes[5000];
};

/// A host's group that is too large for a block of a slab.
class LargeGroup : public ParserGroup {
public:
    LargeGroup() : ParserGroup(CoreString("large")) {
        for (char& byte : bytes) {
            byte = 'x';
        }
    }
    char bytes[5000];
};

TEST_F(group_add, objects_of_a_hosts_own_classes_are_adopted_whatever_their_size) {
    for (int i = 0; i < 50; ++i) {
        group.add_entry(*new LargeEntry);
        group.add_group(new LargeGroup);
        group.add_entry(*new CountedEntry("small"));
    }
    EXPECT_EQ(group.get_entry_count(), 150u);
    EXPECT_EQ(CountedEntry::alive, 50);
    for (unsigned int i = 0; i < 75; ++i) {
        group.remove_entry(i);
    }
    EXPECT_EQ(total(), 75u);
}

} // namespace
