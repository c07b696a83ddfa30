#include "document/access.h"
#include "parser/parser_group.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

// Which entries have an ordinal after edits of long groups whose entries change their types. The ordinals
// follow the old types until an edit moves or removes an entry.

namespace {

/// An entry of the group as a plain list describes it.
struct Listed {
    std::string name;
    bool is_ordinary_now;
    bool has_ordinal;
};

class Both {
public:
    explicit Both(unsigned int seed) : random_(seed), group_(CoreString("group")) {
        for (int i = 0; i < 300; ++i) {
            add();
        }
    }

    void edit() {
        switch (below(8)) {
        case 0:
            return add();
        case 1:
        case 2:
            return change_type();
        case 3:
            return remove();
        case 4:
            return move();
        case 5:
            return take_and_insert();
        case 6:
            return move_to_another();
        default:
            return read_more();
        }
    }

    void expect_equal() const {
        std::vector<std::string> expected;
        for (const Listed& entry : model_) {
            if (entry.has_ordinal) {
                expected.push_back(entry.name);
            }
        }
        std::vector<std::string> found;
        for (unsigned int i = 0; i < group_.get_entry_count(); ++i) {
            found.emplace_back(group_.get_entry(i)->get_name().get_view());
        }
        ASSERT_EQ(found, expected);
    }

private:
    unsigned int below(std::size_t limit) { return static_cast<unsigned int>(random_() % limit); }
    unsigned int any() { return below(model_.size()); }

    void rebuild() {
        for (Listed& entry : model_) {
            entry.has_ordinal = entry.is_ordinary_now;
        }
    }

    void add() {
        const bool is_keyword = below(9) == 0;
        const std::string name = (is_keyword ? "#k" : "e") + std::to_string(added_++);
        group_.add_entry(CoreString(name), 0, 0);
        model_.push_back({name, !is_keyword, !is_keyword});
    }

    void change_type() {
        const unsigned int at = any();
        const bool is_raw = below(2) == 0;
        group_.get_entries()[at]->set_as_raw_text(is_raw);
        model_[at].is_ordinary_now = !is_raw;
    }

    void remove() {
        const unsigned int at = any();
        group_.remove_entry(at);
        model_.erase(model_.begin() + at);
        rebuild();
    }

    void move() {
        const unsigned int from = any();
        const unsigned int to = any();
        group_.move_entry(from, to);
        const Listed moved = model_[from];
        model_.erase(model_.begin() + from);
        model_.insert(model_.begin() + to, moved);
        rebuild();
    }

    void take_and_insert() {
        const unsigned int from = any();
        std::unique_ptr<ParserEntry> taken = bk_parser::take(group_, from);
        const Listed moved = model_[from];
        model_.erase(model_.begin() + from);
        rebuild();
        expect_equal();
        const unsigned int to = below(model_.size() + 1);
        bk_parser::insert(group_, to, std::move(taken));
        model_.insert(model_.begin() + to, moved);
        rebuild();
    }

    void move_to_another() {
        ParserGroup other(CoreString("other"));
        const unsigned int from = any();
        group_.move_entry(from, other);
        const Listed moved = model_[from];
        model_.erase(model_.begin() + from);
        rebuild();
        other.move_entry(0u, group_);
        model_.push_back({moved.name, moved.is_ordinary_now, moved.is_ordinary_now});
    }

    // A function call has an ordinal until an edit finds that it is not an ordinary entry.
    void read_more() {
        const std::string name = "call" + std::to_string(added_++);
        group_.set_text(CoreString(name + "(1)"), CoreVersion(1.2), nullptr);
        model_.push_back({name, false, true});
    }

    std::mt19937 random_;
    ParserGroup group_;
    std::vector<Listed> model_;
    unsigned int added_ = 0;
};

} // namespace

TEST(group_index, random_edits_of_long_groups_give_the_ordinals_that_lists_give) {
    for (unsigned int seed = 0; seed < 10; ++seed) {
        Both both(seed);
        for (int round = 0; round < 400; ++round) {
            both.edit();
            both.expect_equal();
            if (testing::Test::HasFatalFailure()) {
                FAIL() << "seed " << seed << ", round " << round;
            }
        }
    }
}
