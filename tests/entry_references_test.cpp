#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

const std::string long_text = "a text that stands in a block";

std::unique_ptr<ParserEntry> make_entry(const char* name) {
    return std::make_unique<ParserEntry>(CoreString(name), ParserEntry::TYPE_ENTRY, 1, 2);
}

/// Holds a string of an entry, and checks on request that it has not changed.
class Held {
public:
    Held(const ParserEntry& entry, unsigned int i) : Held(entry.get_string(i)) {}
    explicit Held(const CoreString& string)
        : string_(string), characters_(string.get_data()), content_(plain(string)) {}

    void expect_unchanged() const {
        EXPECT_EQ(string_.get_data(), characters_);
        EXPECT_EQ(plain(string_), content_);
    }
    void expect_in(const ParserEntry& entry, unsigned int i) const {
        EXPECT_EQ(&entry.get_string(i), &string_);
        expect_unchanged();
    }

private:
    const CoreString& string_;
    const char* characters_;
    std::string content_;
};

/// A string of each kind: short enough for the object, in the text of the entry, and with an escape. The
/// parameter says whether they are parsed or added by calls.
class entry_references : public testing::TestWithParam<bool> {
protected:
    ParserGroup group{CoreString("root")};
    ParserEntry* entry = nullptr;

    void SetUp() override {
        if (GetParam()) {
            const std::string text =
                "an_entry_of_a_text \"short\" \"" + long_text + "\" \"\\\"escaped\\\"\" 4 5\n";
            group.set_text(core(text), CoreVersion(1.2), nullptr);
            entry = group.get_entry(0u);
        } else {
            entry = group.add_entry(CoreString("an_entry_of_a_host"), 0, 0);
            entry->add_string(CoreString("short"));
            entry->add_string(core(long_text));
            entry->add_string(CoreString("\"escaped\""));
            entry->add_int(4);
            entry->add_int(5);
        }
    }
};

TEST_P(entry_references, stay_when_the_list_grows) {
    const Held held[] = {{*entry, 0}, {*entry, 1}, {*entry, 2}};
    for (int i = 0; i < 1000; ++i) {
        entry->add_int(i);
        entry->add_string(core(long_text));
        const Held added(*entry, entry->get_value_count() - 1);
        entry->add_double(i);
        added.expect_in(*entry, entry->get_value_count() - 2);
    }
    for (unsigned int i = 0; i < 3; ++i) {
        held[i].expect_in(*entry, i);
    }
    EXPECT_EQ(entry->get_int(4), 5);
    EXPECT_EQ(entry->get_int(5), 0);
}

TEST_P(entry_references, to_groups_stay_until_their_own_value_is_removed) {
    ParserGroup* const inner = entry->add_group(nullptr);
    const unsigned int place = entry->get_value_count() - 1;
    for (int i = 0; i < 1000; ++i) {
        entry->add_int(i);
    }
    EXPECT_EQ(entry->get_group(place), inner);
    entry->remove_value(0);
    EXPECT_EQ(entry->get_group(place - 1), inner);
    {
        ParserEntry other("other", ParserEntry::TYPE_ENTRY, 0, 0);
        other = *entry;
        EXPECT_EQ(other.get_group(place - 1), inner);
    }
    EXPECT_EQ(entry->get_group(place - 1), inner);
}

TEST_P(entry_references, follow_their_values_when_these_move) {
    const Held held[] = {{*entry, 0}, {*entry, 1}, {*entry, 2}};
    entry->move_value(0, 1);
    held[0].expect_in(*entry, 1);
    held[1].expect_in(*entry, 0);
    entry->move_value(4, 0);
    EXPECT_EQ(entry->get_int(0), 5);
    held[1].expect_in(*entry, 1);
    held[0].expect_in(*entry, 2);
    held[2].expect_in(*entry, 3);
}

TEST_P(entry_references, stay_when_values_before_or_behind_are_removed) {
    const Held held(*entry, 1);
    entry->remove_value(4u);
    held.expect_in(*entry, 1);
    entry->remove_value(0u);
    held.expect_in(*entry, 0);
    entry->remove_value(1u);
    held.expect_in(*entry, 0);
    EXPECT_EQ(entry->get_int(1), 4);
}

TEST_P(entry_references, stay_when_other_values_are_set_and_read) {
    const Held held(*entry, 1);
    entry->set_int(7, 0);
    entry->set_string(core(long_text), 4);
    EXPECT_EQ(entry->get_double(3), 4.0);
    EXPECT_EQ(plain(entry->get_word(1)), long_text);
    held.expect_in(*entry, 1);
}

TEST_P(entry_references, end_with_a_setter_of_their_own_value_and_with_nothing_else) {
    const Held held[] = {{*entry, 0}, {*entry, 1}};
    entry->add_int(1);
    entry->set_string(CoreString("another text that is long"), 1);
    EXPECT_EQ(plain(entry->get_string(1)), "another text that is long");
    held[0].expect_in(*entry, 0);
}

TEST_P(entry_references, stay_when_the_entry_is_assigned_to_another_one) {
    const Held held[] = {{*entry, 0}, {*entry, 1}, {*entry, 2}};
    const auto other = make_entry("other");
    *other = *entry;
    for (unsigned int i = 0; i < 3; ++i) {
        held[i].expect_in(*entry, i);
        held[i].expect_in(*other, i);
    }
    other->set_string(CoreString("set"), 2);
    other->remove_value(0u);
    other->add_int(1);
    held[0].expect_in(*entry, 0);
    held[1].expect_in(*entry, 1);
}

TEST_P(entry_references, outlive_the_entry_they_were_got_from_as_long_as_another_lists_the_value) {
    auto first = make_entry("first");
    {
        const Held held[] = {{*entry, 0}, {*entry, 1}, {*entry, 2}};
        *first = *entry;
        auto second = make_entry("second");
        *second = *first;
        group.remove_entry(0u);
        // These take the memory that might have been freed too early.
        std::vector<std::unique_ptr<ParserEntry>> others;
        for (int i = 0; i < 100; ++i) {
            others.push_back(std::make_unique<ParserEntry>(*first));
        }
        for (unsigned int i = 0; i < 3; ++i) {
            held[i].expect_in(*first, i);
        }
        second->reset();
        held[0].expect_in(*first, 0);
    }
    first->remove_value(0u);
    const Held held(*first, 0);
    held.expect_in(*first, 0);
    EXPECT_EQ(plain(first->get_string(0)), long_text);
    first->reset();
}

TEST_P(entry_references, outlive_an_entry_that_its_owner_deletes) {
    const Held held[] = {{*entry, 0}, {*entry, 1}};
    const auto other = make_entry("other");
    *other = *entry;
    group.detach_entry(0);
    group.remove_entry(0u);
    delete entry;
    const ParserEntry copy(*other);
    held[0].expect_in(*other, 0);
    held[1].expect_in(*other, 1);
}

TEST_P(entry_references, stay_when_the_entry_goes_to_another_place) {
    const Held held[] = {{*entry, 0}, {*entry, 1}, Held(entry->get_name())};
    ParserGroup other(CoreString("other"));
    group.move_entry(0, other);
    ParserGroup third(CoreString("third"));
    third = other;
    other.clear();
    third.detach_entry(0);
    third.remove_entry(0u);
    group.add_entry(*entry);
    held[0].expect_in(*entry, 0);
    held[1].expect_in(*entry, 1);
    held[2].expect_unchanged();
    EXPECT_EQ(&entry->get_name(), &group.get_entry(0u)->get_name());
}

TEST_P(entry_references, to_names_stay_through_every_edit_but_a_renaming) {
    const Held name(entry->get_name());
    const auto other = make_entry("other");
    *other = *entry;
    other->rename(CoreString("renamed"));
    entry->add_int(1);
    entry->remove_value(0u);
    entry->set_template(CoreString("key"));
    entry->set_array(true, 2);
    entry->reset();
    name.expect_unchanged();
}

TEST_P(entry_references, of_a_copied_entry_are_its_own) {
    auto copy = std::make_unique<ParserEntry>(*entry);
    EXPECT_NE(&copy->get_string(1), &entry->get_string(1));
    entry->copy_from(*copy);
    copy->add_int(1);
    const Held copied(*copy, 1);
    copy->move_value(0, 2);
    copied.expect_in(*copy, 0);
}

INSTANTIATE_TEST_SUITE_P(read_and_added, entry_references, testing::Bool(),
                         [](const auto& kind) { return kind.param ? "read" : "added"; });

} // namespace
