#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include "tests/support/counted_objects.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

/// The expected state of an entry, which is identified by its address.
struct Item {
    ParserEntry* entry;
    std::string name;
    ParserEntry::Type type;
    bool is_counted = false;
};

/// One slot of a list: the entry, and whether it has an ordinal.
struct Slot {
    std::shared_ptr<Item> item;
    bool has_ordinal;
};

/// A group and what it should list.
struct Pair {
    std::unique_ptr<ParserGroup> group;
    std::vector<Slot> model;

    std::size_t count() const { return model.size(); }
    void rebuild() {
        for (Slot& slot : model) {
            slot.has_ordinal = slot.item->type == ParserEntry::TYPE_ENTRY;
        }
    }
    void append(const std::shared_ptr<Item>& item) {
        model.push_back({item, item->type == ParserEntry::TYPE_ENTRY});
    }
};

const std::string names[] = {"a", "b", "c", "#k", "#l", "a_name_that_is_longer_than_eleven"};
const ParserEntry::Type types[] = {ParserEntry::TYPE_ENTRY, ParserEntry::TYPE_KEYWORD,
                                   ParserEntry::TYPE_FUNCTION_CALL, ParserEntry::TYPE_RAW_TEXT};

class group_model : public testing::TestWithParam<unsigned int> {
protected:
    NothingLeaks nothing_leaks;
    std::mt19937 random{GetParam()};
    std::vector<Pair> pairs{4};

    unsigned int below(std::size_t limit) { return static_cast<unsigned int>(random() % limit); }
    std::string some_name() { return names[below(std::size(names))]; }

    void SetUp() override {
        for (Pair& pair : pairs) {
            renew(pair);
        }
    }

    static void renew(Pair& pair) {
        pair.group = std::make_unique<ParserGroup>(CoreString("group"));
        pair.model.clear();
    }

    void add(Pair& pair) {
        const std::string name = some_name();
        const CoreString core_name{std::string_view(name)};
        if (below(2) == 0) {
            ParserEntry* entry = pair.group->add_entry(core_name, 0, 0);
            const bool is_keyword = name[0] == '#';
            pair.append(std::make_shared<Item>(
                Item{entry, name, is_keyword ? ParserEntry::TYPE_KEYWORD : ParserEntry::TYPE_ENTRY}));
        } else {
            const ParserEntry::Type type = types[below(4)];
            ParserEntry* entry = pair.group->add_entry(*new CountedEntry(name, type));
            pair.append(std::make_shared<Item>(Item{entry, name, type, true}));
        }
    }

    void change(Pair& pair) {
        Item& item = *pair.model[below(pair.count())].item;
        if (below(2) == 0) {
            item.name = some_name();
            item.entry->rename(CoreString(std::string_view(item.name)));
        } else {
            const bool raw = below(2) == 0;
            item.entry->set_as_raw_text(raw);
            item.type = raw ? ParserEntry::TYPE_RAW_TEXT : ParserEntry::TYPE_ENTRY;
        }
    }

    void move_within(Pair& pair) {
        const unsigned int from = below(pair.count());
        const unsigned int to = below(pair.count());
        pair.group->move_entry(from, to);
        const Slot moved = pair.model[from];
        pair.model.erase(pair.model.begin() + from);
        pair.model.insert(pair.model.begin() + to, moved);
        pair.rebuild();
    }

    void move_one(Pair& from, Pair& to) {
        const unsigned int position = below(from.count());
        from.group->move_entry(position, *to.group);
        const Slot moved = from.model[position];
        from.model.erase(from.model.begin() + position);
        from.rebuild();
        to.append(moved.item);
    }

    static void move_ordinary(Pair& from, Pair& to) {
        from.group->move_entries(*to.group);
        std::vector<Slot> kept;
        for (const Slot& slot : from.model) {
            if (slot.item->type == ParserEntry::TYPE_ENTRY) {
                to.append(slot.item);
            } else {
                kept.push_back({slot.item, false});
            }
        }
        from.model = kept;
    }

    void move_all(Pair& from, Pair& to) {
        const unsigned int position = below(to.count() + 1);
        from.group->move_entries(*to.group, position);
        to.model.insert(to.model.begin() + position, from.model.begin(), from.model.end());
        to.rebuild();
        from.model.clear();
    }

    void remove_some(Pair& pair) {
        CoreArray<unsigned int> positions(below(5));
        std::set<std::size_t> gone;
        for (unsigned int& position : positions) {
            position = below(pair.count() + 2);
            gone.insert(position);
        }
        pair.group->remove_entries(positions);
        for (auto position = gone.rbegin(); position != gone.rend(); ++position) {
            if (*position < pair.count()) {
                pair.model.erase(pair.model.begin() + static_cast<std::ptrdiff_t>(*position));
            }
        }
        pair.rebuild();
    }

    void remove_one(Pair& pair) {
        const unsigned int position = below(pair.count() + 2);
        pair.group->remove_entry(position);
        if (position < pair.count()) {
            pair.model.erase(pair.model.begin() + position);
        }
        pair.rebuild();
    }

    void remove_named(Pair& pair) {
        const std::string name = some_name();
        pair.group->remove_entry(CoreString(std::string_view(name)));
        std::erase_if(pair.model, [&](const Slot& slot) { return slot.item->name == name; });
        pair.rebuild();
    }

    /// Takes an entry out of one group by its ordinal, and adds it to another.
    void hand_over(Pair& from, Pair& to) {
        std::vector<unsigned int> positions;
        for (unsigned int i = 0; i < from.count(); ++i) {
            if (from.model[i].has_ordinal) {
                positions.push_back(i);
            }
        }
        if (positions.empty()) {
            return;
        }
        const unsigned int ordinal = below(positions.size());
        const auto item = from.model[positions[ordinal]].item;
        from.group->detach_entry(ordinal);
        EXPECT_EQ(from.group->get_entry(ordinal), nullptr);
        from.group->remove_entry(positions[ordinal]);
        from.model.erase(from.model.begin() + positions[ordinal]);
        from.rebuild();
        to.group->add_entry(*item->entry);
        to.append(item);
    }

    static void copy(Pair& to, const Pair& from) {
        if (&to == &from) {
            to.group->set(*from.group);
            return; // nothing changes
        }
        to.group->set(*from.group);
        to.model.clear();
        ASSERT_EQ(to.group->get_entries().get_count(), from.count());
        for (unsigned int i = 0; i < from.count(); ++i) {
            const Item& item = *from.model[i].item;
            to.append(std::make_shared<Item>(Item{to.group->get_entries()[i], item.name, item.type}));
        }
    }

    void step() {
        Pair& pair = pairs[below(pairs.size())];
        Pair& other = pairs[below(pairs.size())];
        const unsigned int what = below(36);
        if (pair.model.empty() || what < 10) {
            add(pair);
        } else if (what < 15) {
            change(pair);
        } else if (what < 18) {
            move_within(pair);
        } else if (what < 20) {
            move_one(pair, other);
        } else if (what < 22 && &pair != &other) {
            move_ordinary(pair, other);
        } else if (what < 24 && &pair != &other) {
            move_all(pair, other);
        } else if (what < 26) {
            remove_some(pair);
        } else if (what < 28) {
            remove_one(pair);
        } else if (what == 28) {
            remove_named(pair);
        } else if (what < 31) {
            hand_over(pair, other);
        } else if (what == 31) {
            copy(other, pair);
        } else if (what < 34) {
            *other.group = *pair.group;
            other.model = pair.model;
        } else if (what == 34) {
            pair.group->clear();
            pair.model.clear();
        } else {
            renew(pair);
        }
    }

    static void expect_equal(const Pair& pair) {
        const ParserGroup& group = *pair.group;
        ASSERT_EQ(group.get_entries().get_count(), pair.count());
        std::vector<ParserEntry*> ordinary;
        for (unsigned int i = 0; i < pair.count(); ++i) {
            const Slot& slot = pair.model[i];
            ASSERT_EQ(group.get_entries()[i], slot.item->entry);
            ASSERT_EQ(plain(slot.item->entry->get_name()), slot.item->name);
            ASSERT_EQ(slot.item->entry->get_type(), slot.item->type);
            if (slot.has_ordinal) {
                ordinary.push_back(slot.item->entry);
            }
        }
        ASSERT_EQ(group.get_entry_count(), ordinary.size());
        for (unsigned int ordinal = 0; ordinal < ordinary.size(); ++ordinal) {
            ASSERT_EQ(group.get_entry(ordinal), ordinary[ordinal]);
        }
        for (const std::string& name : names) {
            expect_found(pair, name);
        }
        for (const ParserEntry::Type type : types) {
            const auto first = std::find_if(pair.model.begin(), pair.model.end(),
                                            [=](const Slot& slot) { return slot.item->type == type; });
            const unsigned int expected = first == pair.model.end()
                                              ? 0xFFFFFFFFu
                                              : static_cast<unsigned int>(first - pair.model.begin());
            ASSERT_EQ(pair.group->get_first_entry_index(type), expected);
        }
    }

    static void expect_found(const Pair& pair, const std::string& name) {
        std::vector<ParserEntry*> with_ordinal;
        ParserEntry* keyword = nullptr;
        for (const Slot& slot : pair.model) {
            if (slot.item->name == name && slot.has_ordinal) {
                with_ordinal.push_back(slot.item->entry);
            } else if (slot.item->name == name && keyword == nullptr) {
                keyword = slot.item->entry;
            }
        }
        const CoreString core_name{std::string_view(name)};
        ASSERT_EQ(pair.group->get_keyword(core_name), keyword);
        ASSERT_EQ(pair.group->get_entry(core_name), with_ordinal.empty() ? nullptr : with_ordinal[0]);
        for (const bool recursive : {false, true}) {
            const CoreVector<ParserEntry*> found = pair.group->get_entries(core_name, recursive);
            ASSERT_EQ(std::vector<ParserEntry*>(found.begin(), found.end()), with_ordinal);
        }
    }

    void expect_alive() const {
        std::set<const ParserEntry*> counted;
        for (const Pair& pair : pairs) {
            for (const Slot& slot : pair.model) {
                if (slot.item->is_counted) {
                    counted.insert(slot.item->entry);
                }
            }
        }
        ASSERT_EQ(CountedEntry::alive, static_cast<int>(counted.size()));
    }
};

TEST_P(group_model, three_thousand_random_edits_give_what_plain_lists_give) {
    for (int count = 0; count < 3000; ++count) {
        step();
        for (const Pair& pair : pairs) {
            expect_equal(pair);
        }
        expect_alive();
        ASSERT_FALSE(HasFatalFailure()) << "step " << count;
        for (Pair& pair : pairs) {
            if (pair.count() > 60) {
                renew(pair);
            }
        }
    }
    pairs.clear();
}

INSTANTIATE_TEST_SUITE_P(seeds, group_model, testing::Range(1u, 13u));

} // namespace
