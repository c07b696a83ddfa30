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
#include <vector>

namespace {

/// The expected type and text of a value. A group is identified by its address.
struct ModelValue {
    ParserValue::Type type;
    std::string word;
    ParserGroup* group = nullptr;
};

/// An entry and the values that it should list. Lists share values, as entries do after an assignment.
struct Pair {
    std::unique_ptr<ParserEntry> entry;
    std::vector<std::shared_ptr<ModelValue>> model;
};

class entry_model : public testing::TestWithParam<unsigned int> {
protected:
    NothingLeaks nothing_leaks;
    std::mt19937 random{GetParam()};
    std::vector<Pair> pairs{4};

    unsigned int below(std::size_t limit) { return static_cast<unsigned int>(random() % limit); }

    void SetUp() override {
        for (Pair& pair : pairs) {
            renew(pair);
        }
    }

    static void renew(Pair& pair) {
        pair.entry = std::make_unique<ParserEntry>(CoreString("e"), ParserEntry::TYPE_ENTRY, 0, 0);
        pair.model.clear();
    }

    static void know(Pair& pair, ParserValue::Type type, const std::string& word,
                     ParserGroup* group = nullptr) {
        pair.model.push_back(std::make_shared<ModelValue>(ModelValue{type, word, group}));
    }

    std::string some_text() { return std::string(below(20), static_cast<char>('a' + below(26))); }

    void add(Pair& pair) {
        const int number = static_cast<int>(below(100000)) - 50000;
        const std::string digits = std::to_string(number);
        switch (below(7)) {
        case 0:
            pair.entry->add_int(number);
            return know(pair, ParserValue::TYPE_INT, digits);
        case 1:
            pair.entry->add_bool(number > 0);
            return know(pair, ParserValue::TYPE_BOOL, number > 0 ? "yes" : "no");
        case 2: {
            const std::string text = some_text();
            pair.entry->add_string(CoreString(std::string_view(text)));
            return know(pair, ParserValue::TYPE_STRING, text);
        }
        case 3: {
            OwnedWord word(digits + "." + some_text());
            pair.entry->add_word(*word, ParserValue::TYPE_DOUBLE);
            return know(pair, ParserValue::TYPE_DOUBLE, plain(word->get_string()));
        }
        case 4: {
            char byte = 'A';
            pair.entry->add_binary_data(&byte, 1);
            return know(pair, ParserValue::TYPE_BINARY_DATA, "0x4141000000");
        }
        case 5: {
            auto* group = new CountedGroup;
            pair.entry->add_group(group);
            return know(pair, ParserValue::TYPE_GROUP, "", group);
        }
        default:
            pair.entry->add_char(static_cast<char>(number));
            return know(pair, ParserValue::TYPE_CHAR, std::to_string(static_cast<signed char>(number)));
        }
    }

    void set(Pair& pair) {
        const unsigned int i = below(pair.model.size());
        ModelValue& model = *pair.model[i];
        model.group = nullptr;
        if (below(2) == 0) {
            pair.entry->set_int(static_cast<int>(i), i);
            model.type = ParserValue::TYPE_INT;
            model.word = std::to_string(i);
        } else {
            model.type = ParserValue::TYPE_STRING;
            model.word = some_text();
            pair.entry->set_string(CoreString(std::string_view(model.word)), i);
        }
    }

    void remove(Pair& pair) {
        CoreList<unsigned int> indices;
        std::set<std::size_t> gone;
        for (unsigned int count = below(4); count > 0; --count) {
            indices.add(below(pair.model.size() + 2));
            gone.insert(indices[indices.get_count() - 1]);
        }
        pair.entry->remove_value(indices);
        for (auto position = gone.rbegin(); position != gone.rend(); ++position) {
            if (*position < pair.model.size()) {
                pair.model.erase(pair.model.begin() + static_cast<std::ptrdiff_t>(*position));
            }
        }
    }

    void move(Pair& pair) {
        const unsigned int from = below(pair.model.size());
        const unsigned int to = below(pair.model.size());
        pair.entry->move_value(from, to);
        const auto moved = pair.model[from];
        pair.model.erase(pair.model.begin() + from);
        pair.model.insert(pair.model.begin() + to, moved);
    }

    void copy(Pair& to, const Pair& from) {
        if (below(2) == 0) {
            to.entry->copy_from(*from.entry);
            if (&to == &from) {
                return; // nothing changes
            }
        } else {
            to.entry = std::make_unique<ParserEntry>(*from.entry);
        }
        std::vector<std::shared_ptr<ModelValue>> copied;
        for (unsigned int i = 0; i < from.model.size(); ++i) {
            copied.push_back(std::make_shared<ModelValue>(*from.model[i]));
            if (copied.back()->type == ParserValue::TYPE_GROUP) {
                copied.back()->group = to.entry->get_group(i);
            }
        }
        to.model = copied;
    }

    void step() {
        Pair& pair = pairs[below(pairs.size())];
        Pair& other = pairs[below(pairs.size())];
        const unsigned int what = below(20);
        if (pair.model.empty() || what < 7) {
            add(pair);
        } else if (what < 10) {
            set(pair);
        } else if (what < 13) {
            remove(pair);
        } else if (what < 15) {
            move(pair);
        } else if (what == 15) {
            copy(other, pair);
        } else if (what < 18) {
            *other.entry = *pair.entry;
            other.model = pair.model;
        } else if (what == 18) {
            pair.entry->reset();
            pair.model.clear();
        } else {
            renew(pair);
        }
    }

    static void expect_equal(const Pair& pair) {
        ASSERT_EQ(pair.entry->get_value_count(), pair.model.size());
        for (unsigned int i = 0; i < pair.model.size(); ++i) {
            ASSERT_EQ(pair.entry->get_value_type(i), pair.model[i]->type);
            ASSERT_EQ(plain(pair.entry->get_word(i)), pair.model[i]->word);
            ASSERT_EQ(pair.entry->get_group(i), pair.model[i]->group);
        }
        ASSERT_EQ(pair.entry->is_group(),
                  pair.model.size() == 1 && pair.model[0]->type == ParserValue::TYPE_GROUP);
    }
};

TEST_P(entry_model, three_thousand_random_edits_give_what_plain_lists_give) {
    for (int count = 0; count < 3000; ++count) {
        step();
        for (const Pair& pair : pairs) {
            expect_equal(pair);
        }
        ASSERT_FALSE(HasFatalFailure()) << "step " << count;
    }
    pairs.clear();
}

INSTANTIATE_TEST_SUITE_P(seeds, entry_model, testing::Range(1u, 13u));

} // namespace
