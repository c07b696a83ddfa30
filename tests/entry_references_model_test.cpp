#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

/// A string of the library that a host holds, with its address and content when the host got it.
struct Held {
    const CoreString* string = nullptr;
    const char* characters = nullptr;
    std::string content;

    void hold(const CoreString& handed_out) {
        string = &handed_out;
        characters = handed_out.get_data();
        content = plain(handed_out);
    }
    void drop() { string = nullptr; }
    bool is_as_it_was() const {
        return string == nullptr || (string->get_data() == characters && plain(*string) == content);
    }
};

struct Value {
    bool is_string = false;
    Held held;
};

/// An entry of the library and the values that it should list. Values and entries are shared in the same way
/// as in the library.
struct Entry {
    ParserEntry* real;
    std::vector<std::shared_ptr<Value>> values;
    Held name;
};

struct Group {
    ParserGroup real{CoreString("g")};
    std::vector<std::shared_ptr<Entry>> entries;
};

class entry_references_model : public testing::TestWithParam<unsigned int> {
protected:
    std::mt19937 random{GetParam()};
    std::vector<std::unique_ptr<Group>> groups;

    void SetUp() override {
        for (int i = 0; i < 3; ++i) {
            groups.push_back(std::make_unique<Group>());
        }
    }

    unsigned int below(std::size_t limit) { return static_cast<unsigned int>(random() % limit); }
    Group& group() { return *groups[below(groups.size())]; }
    std::string some_text() {
        return std::string(below(3) == 0 ? below(60) : below(14), static_cast<char>('a' + below(26)));
    }

    void parse(Group& to) {
        std::string text = (below(4) == 0 ? "a_name_that_is_not_short" : "e");
        std::vector<std::shared_ptr<Value>> values;
        for (unsigned int count = 1 + below(6); count != 0; --count) {
            const bool is_string = below(2) == 0;
            text += is_string ? " \"" + some_text() + (below(3) == 0 ? "\\n" : "") + "\""
                              : " " + std::to_string(below(1000));
            values.push_back(std::make_shared<Value>(Value{is_string, {}}));
        }
        ASSERT_TRUE(to.real.set_text(core(text + "\n"), CoreVersion(1.2), nullptr));
        know(to);
        to.entries.back()->values = values;
    }

    static void know(Group& to) {
        ParserEntry* const made = to.real.get_entries()[to.real.get_entries().get_count() - 1];
        to.entries.push_back(std::make_shared<Entry>(Entry{made, {}, {}}));
    }

    void add_value(Entry& to) {
        const bool is_string = below(2) == 0;
        if (is_string) {
            to.real->add_string(core(some_text()));
        } else if (below(4) == 0) {
            to.real->add_group(nullptr);
        } else {
            to.real->add_double(0.5);
        }
        to.values.push_back(std::make_shared<Value>(Value{is_string, {}}));
    }

    void set_value(Entry& of) {
        const unsigned int i = below(of.values.size());
        Value& value = *of.values[i];
        value.is_string = below(2) == 0;
        if (value.is_string) {
            of.real->set_string(core(some_text()), i);
        } else {
            of.real->set_int(7, i);
        }
        value.held.drop();
    }

    void remove_values(Entry& of) {
        CoreList<unsigned int> indices;
        std::vector<bool> gone(of.values.size());
        for (unsigned int count = 1 + below(2); count != 0; --count) {
            const unsigned int i = below(of.values.size());
            indices.add(i);
            gone[i] = true;
        }
        of.real->remove_value(indices);
        for (std::size_t i = gone.size(); i-- != 0;) {
            if (gone[i]) {
                of.values.erase(of.values.begin() + static_cast<std::ptrdiff_t>(i));
            }
        }
    }

    void move_value(Entry& of) {
        const unsigned int from = below(of.values.size());
        const unsigned int to = below(of.values.size());
        of.real->move_value(from, to);
        const auto moved = of.values[from];
        of.values.erase(of.values.begin() + from);
        of.values.insert(of.values.begin() + to, moved);
    }

    void hand_out(Entry& of) {
        const unsigned int i = below(of.values.size());
        if (of.values[i]->is_string) {
            const CoreString& string = of.real->get_string(i);
            Held& held = of.values[i]->held;
            ASSERT_TRUE(held.string == nullptr || held.string == &string);
            held.hold(string);
        } else if (of.real->is_value_double(i)) {
            static_cast<void>(of.real->get_double(i));
        }
        ASSERT_TRUE(of.name.string == nullptr || of.name.string == &of.real->get_name());
        of.name.hold(of.real->get_name());
    }

    static void assign(Entry& to, const Entry& from) {
        *to.real = *from.real;
        if (&to != &from) {
            to.values = from.values;
            to.name.drop();
        }
    }

    static void copy(Entry& to, const Entry& from) {
        to.real->copy_from(*from.real);
        if (&to != &from) {
            to.values.clear();
            for (const auto& value : from.values) {
                to.values.push_back(std::make_shared<Value>(Value{value->is_string, {}}));
            }
            to.name.drop();
        }
    }

    void edit(Entry& entry, Entry& other) {
        if (entry.values.empty()) {
            return add_value(entry);
        }
        switch (below(12)) {
        case 0:
            return set_value(entry);
        case 1:
            return remove_values(entry);
        case 2:
        case 3:
            return move_value(entry);
        case 4:
        case 5:
            return assign(other, entry);
        case 6:
            return copy(other, entry);
        case 7:
        case 8:
            return add_value(entry);
        default:
            return hand_out(entry);
        }
    }

    /// Takes an entry out of a group and adds it to another, or deletes it as its owner does.
    void take_out(Group& from, unsigned int position) {
        const std::shared_ptr<Entry> taken = from.entries[position];
        from.entries.erase(from.entries.begin() + position);
        if (below(3) == 0) {
            from.real.remove_entry(position);
            return;
        }
        Group& to = group();
        if (&to != &from && below(2) == 0) {
            from.real.move_entry(position, to.real);
            to.entries.push_back(taken);
            return;
        }
        from.real.detach_entry(position);
        from.real.remove_entry(position);
        if (taken.use_count() == 1 && below(2) == 0) {
            delete taken->real;
            return;
        }
        to.real.add_entry(*taken->real);
        to.entries.push_back(taken);
    }

    void step() {
        Group& at = group();
        const unsigned int what = below(30);
        if (at.entries.empty() || what == 0) {
            return parse(at);
        }
        const unsigned int position = below(at.entries.size());
        Entry& entry = *at.entries[position];
        if (what < 4) {
            take_out(at, position);
        } else if (what == 4) {
            Group& to = group();
            to.real = at.real;
            to.entries = at.entries;
        } else if (what == 5) {
            entry.real->rename(core(some_text()));
            entry.name.drop();
        } else if (what == 6) {
            entry.real->reset();
            entry.values.clear();
        } else if (what == 7 && at.entries.size() > 12) {
            at.real.clear();
            at.entries.clear();
        } else {
            Group& elsewhere = group();
            Entry& other =
                elsewhere.entries.empty() ? entry : *elsewhere.entries[below(elsewhere.entries.size())];
            edit(entry, other);
        }
    }

    void expect_held() const {
        for (const auto& at : groups) {
            ASSERT_EQ(at->real.get_entries().get_count(), at->entries.size());
            for (const auto& entry : at->entries) {
                ASSERT_TRUE(entry->name.is_as_it_was());
                ASSERT_EQ(entry->real->get_value_count(), entry->values.size());
                for (const auto& value : entry->values) {
                    ASSERT_TRUE(value->held.is_as_it_was());
                }
            }
        }
    }

    /// Asks again for each string that is held, and expects the same address.
    void expect_places() const {
        for (const auto& at : groups) {
            for (const auto& entry : at->entries) {
                for (unsigned int i = 0; i < entry->values.size(); ++i) {
                    const Held& held = entry->values[i]->held;
                    ASSERT_TRUE(held.string == nullptr || held.string == &entry->real->get_string(i));
                    ASSERT_EQ(entry->real->is_value_string(i), entry->values[i]->is_string);
                }
            }
        }
    }
};

TEST_P(entry_references_model, what_was_handed_out_stays_as_it_was_through_ten_thousand_edits) {
    for (int count = 0; count < 10000; ++count) {
        step();
        expect_held();
        if (count % 64 == 0) {
            expect_places();
        }
        ASSERT_FALSE(HasFatalFailure()) << "step " << count;
    }
}

INSTANTIATE_TEST_SUITE_P(seeds, entry_references_model, testing::Range(1u, 13u));

} // namespace
