#include "document/access.h"
#include "tests/support/counted_objects.h"
#include "tests/support/large_document.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

// A document that was read is a row of pages. They are freed at once if nothing else uses them.

namespace {

/// Whether the tree still has what the edits need.
bool has_what_edits_take(const ParserGroup& root) {
    for (const char* name : {"first", "row", "last", "many"}) {
        if (root.get_entry(CoreString(name)) == nullptr) {
            return false;
        }
    }
    if (root.get_entries(CoreString("item"), false).get_count() < 20) {
        return false;
    }
    for (unsigned int i = 0; i < 8; ++i) {
        if (!item(root, i)->has_value() || !item(root, i)->is_value_group(0) ||
            inside(root, i).get_entry(CoreString("name")) == nullptr ||
            inside(root, i).get_entry(CoreString("inner")) == nullptr) {
            return false;
        }
    }
    return true;
}
/// Records its destruction.
class Noted : public ParserEntry {
public:
    Noted(std::string& notes, char mark)
        : ParserEntry(CoreString("noted"), TYPE_ENTRY, 0, 0), notes_(notes), mark_(mark) {}
    Noted(const Noted&) = delete;
    Noted& operator=(const Noted&) = delete;
    ~Noted() override { notes_ += mark_; }

private:
    std::string& notes_;
    char mark_;
};

using Edit = std::function<void(ParserGroup&)>;

/// Edits after which an entry owns something outside the pages.
const std::vector<Edit>& edits_of_values() {
    static const std::vector<Edit> all = {
        [](ParserGroup& root) { item(root, 3)->rename(outside()); },
        [](ParserGroup& root) { item(root, 3)->set_template(outside()); },
        [](ParserGroup& root) { item(root, 3)->add_string(outside()); },
        [](ParserGroup& root) { root.get_entry(CoreString("first"))->set_string(outside(), 0); },
        [](ParserGroup& root) { root.get_entry(CoreString("row"))->set_string(outside(), 17); },
        [](ParserGroup& root) {
            std::vector<char> bytes(20000);
            root.get_entry(CoreString("first"))->set_binary_data(bytes.data(), 20000, 0);
        },
        [](ParserGroup& root) {
            ParserEntry& entry = *root.get_entry(CoreString("last"));
            for (int i = 0; i < 5000; ++i) {
                entry.add_int(i);
            }
        },
        [](ParserGroup& root) {
            ParserEntry& entry = *root.get_entry(CoreString("first"));
            const CoreString& shown = entry.get_string(0);
            for (int i = 0; i < 5000; ++i) {
                entry.add_string(CoreString("more"));
            }
            EXPECT_EQ(shown.get_view(), "a string longer than eleven");
            entry.move_value(0, 1);
            EXPECT_EQ(shown.get_view(), "a string longer than eleven");
        },
        [](ParserGroup& root) {
            ParserEntry& entry = *inside(root, 2).get_entry(CoreString("name"));
            const CoreString& shown = entry.get_string(0);
            const std::string before(shown.get_view());
            entry.add_int(1);
            entry.add_int(2);
            entry.remove_value(1);
            EXPECT_EQ(shown.get_view(), before);
        },
        [](ParserGroup& root) { item(root, 3)->reset(); },
        [](ParserGroup& root) { item(root, 3)->set_int(1, 0); },
    };
    return all;
}

/// Edits that remove, move, share or replace objects of the document, or add others to it.
const std::vector<Edit>& edits_of_owners() {
    static const std::vector<Edit> all = {
        [](ParserGroup& root) { root.remove_entry(0u); },
        [](ParserGroup& root) { root.remove_entry(CoreString("item")); },
        [](ParserGroup& root) {
            root.remove_entries({5, 6, 7, 900});
        },
        [](ParserGroup& root) { inside(root, 1).remove_entry(2u); },
        [](ParserGroup& root) { inside(root, 1).remove_entry(CoreString("name")); },
        [](ParserGroup& root) { inside(root, 1).clear(); },
        [](ParserGroup& root) { root.get_entry(CoreString("many"))->get_group(0)->clear(); },
        [](ParserGroup& root) { root.get_entry(CoreString("many"))->get_group(0)->remove_entry(7u); },
        [](ParserGroup& root) { inside(root, 1).set(inside(root, 2)); },
        [](ParserGroup& root) { inside(root, 1) = inside(root, 2); },
        [](ParserGroup& root) { inside(root, 1).move_entry(0, 2); },
        [](ParserGroup& root) { inside(root, 1).move_entry(0, inside(root, 2)); },
        [](ParserGroup& root) { inside(root, 1).move_entries(root); },
        [](ParserGroup& root) { inside(root, 1).move_entries(inside(root, 2), 1); },
        [](ParserGroup& root) { root.move_entry(0, 9); },
        [](ParserGroup& root) { root.move_entry(1, inside(root, 2)); },
        [](ParserGroup& root) { inside(root, 1).add_entry(CoreString("new"), 1, 1)->add_string(outside()); },
        [](ParserGroup& root) { inside(root, 1).add_group(CoreString("new")); },
        [](ParserGroup& root) { inside(root, 1).add_group(new CountedGroup); },
        [](ParserGroup& root) { inside(root, 1).add_entry(*new CountedEntry("counted")); },
        [](ParserGroup& root) { root.add_entry(*new CountedEntry("counted")); },
        [](ParserGroup& root) { item(root, 1)->add_group(new CountedGroup); },
        [](ParserGroup& root) { item(root, 1)->add_group(nullptr); },
        [](ParserGroup& root) {
            inside(root, 1).set_text(CoreString(text_with(30)), CoreVersion(1.2), nullptr);
        },
        [](ParserGroup& root) { root.set_text(CoreString(text_with(30)), CoreVersion(1.2), nullptr); },
        [](ParserGroup& root) { *item(root, 1) = *item(root, 2); },
        [](ParserGroup& root) { *item(root, 1) = *root.get_entry(CoreString("row")); },
        [](ParserGroup& root) { item(root, 1)->copy_from(*item(root, 2)); },
        [](ParserGroup& root) { item(root, 1)->remove_value(0u); },
        [](ParserGroup& root) {
            const CoreVector<char> bytes = inside(root, 1).get_entry(CoreString("inner"))->get_binary();
            core_uint64 position = 6; // after the name
            item(root, 1)->set_binary(bytes, position);
        },
        [](ParserGroup& root) {
            ParserEntry* const entry = item(root, 4);
            root.detach_entry(ordinal_of(root, entry));
            root.remove_entry(position_of(root, nullptr));
            delete entry;
        },
        [](ParserGroup& root) { root.set(*parsed("a 1")); },
        [](ParserGroup& root) { root = *parsed("a 1"); },
        [](ParserGroup& root) { root.set(inside(root, 1)); },
        [](ParserGroup& root) { root = inside(root, 1); },
        [](ParserGroup& root) { root.clear(); },
    };
    return all;
}

} // namespace

TEST(group_drop, a_document_that_was_only_read_goes_with_its_group) {
    for (int i = 0; i < 3; ++i) {
        const auto root = parsed();
        EXPECT_EQ(root->get_entry_count(), 1506u);
        EXPECT_EQ(inside(*root, 1499).get_entry(CoreString("name"))->get_string(0).get_view(),
                  "a string of item 1499");
    }
}

TEST(group_drop, a_document_of_binary_data_goes_in_the_same_way) {
    const auto source = parsed();
    const CoreVector<char> bytes = source->get_binary(false);
    for (const Edit& edit : edits_of_owners()) {
        const NothingLeaks nothing_leaks;
        ParserGroup root(CoreString("root"));
        core_uint64 position = 0;
        ASSERT_TRUE(root.set_binary(bytes, position));
        ASSERT_EQ(root.get_entry_count(), source->get_entries().get_count());
        edit(root);
    }
    for (unsigned int cut = 40000; cut < bytes.get_count(); cut += 4321) {
        CoreVector<char> part;
        part.add_range(bytes.get_data(), cut);
        ParserGroup root(CoreString("root"));
        core_uint64 position = 0;
        EXPECT_FALSE(root.set_binary(part, position));
    }
}

TEST(group_drop, what_an_edited_entry_owns_goes_with_the_document) {
    for (const Edit& edit : edits_of_values()) {
        const auto root = parsed();
        edit(*root);
    }
}

TEST(group_drop, every_edit_of_owners_leaves_a_document_that_goes_whole) {
    for (const Edit& edit : edits_of_owners()) {
        const NothingLeaks nothing_leaks;
        const auto root = parsed();
        edit(*root);
        static_cast<void>(text_of(*root));
    }
}

TEST(group_drop, edits_one_after_the_other_give_what_they_give_in_a_small_document) {
    std::vector<Edit> edits = edits_of_values();
    edits.insert(edits.end(), edits_of_owners().begin(), edits_of_owners().end() - 5);
    const std::string text = text_with(30);
    for (std::size_t first = 0; first < edits.size(); first += 2) {
        for (std::size_t second = 0; second < edits.size(); second += 3) {
            const NothingLeaks nothing_leaks;
            const auto root = parsed(text);
            const auto copy = std::make_unique<ParserGroup>(*root); // has no pages
            for (ParserGroup* const group : {root.get(), copy.get()}) {
                edits[first](*group);
                if (has_what_edits_take(*group)) {
                    edits[second](*group);
                }
            }
            ASSERT_EQ(tree_difference(*root, *copy), "") << first << ' ' << second;
        }
    }
}

TEST(group_drop, an_entry_that_left_lives_on) {
    auto root = parsed();
    ParserGroup other(CoreString("other"));
    ParserEntry* const detached = item(*root, 4);
    root->detach_entry(ordinal_of(*root, detached));
    root->remove_entry(position_of(*root, nullptr));
    const std::unique_ptr<ParserEntry> owned(detached);
    root->move_entry(position_of(*root, item(*root, 7)), other);
    root.reset();
    EXPECT_EQ(owned->get_group(0)->get_entry(CoreString("name"))->get_string(0).get_view(),
              "a string of item 4");
    EXPECT_EQ(inside(other, 0).get_entry(CoreString("name"))->get_string(0).get_view(), "a string of item 8");
}

TEST(group_drop, what_two_own_lives_as_long_as_one_of_them) {
    auto root = parsed();
    ParserGroup other(CoreString("other"));
    other = inside(*root, 5);
    ParserEntry entry(CoreString("e"), ParserEntry::TYPE_ENTRY, 0, 0);
    entry = *item(*root, 6);
    const CoreString& shown = entry.get_group(0)->get_entry(CoreString("name"))->get_string(0);
    root.reset();
    EXPECT_EQ(other.get_entry(CoreString("name"))->get_string(0).get_view(), "a string of item 5");
    EXPECT_EQ(shown.get_view(), "a string of item 6");
}

TEST(group_drop, moving_everything_takes_the_document_along) {
    auto root = parsed();
    ParserGroup other(CoreString("other"));
    root->move_entries(other, 0);
    const std::string text = text_of(other);
    root.reset();
    EXPECT_EQ(text_of(other), text);
    root = parsed();
    root->move_entries(other);
    root.reset();
    EXPECT_GT(text_of(other).size(), text.size());
}

TEST(group_drop, entries_of_a_host_die_in_the_order_of_the_document) {
    std::string notes;
    auto root = parsed();
    inside(*root, 900).add_entry(*new Noted(notes, 'c'));
    inside(*root, 2).add_entry(*new Noted(notes, 'a'));
    inside(*root, 2).add_group(CoreString("g"))->add_entry(*new Noted(notes, 'b'));
    root->add_entry(*new Noted(notes, 'd'));
    root->set_text(CoreString(large_text()), CoreVersion(1.2), nullptr);
    root->add_entry(*new Noted(notes, 'e'));
    root.reset();
    EXPECT_EQ(notes, "abcde");
}

TEST(group_drop, an_entry_of_a_host_that_a_path_moved_dies_too) {
    std::string notes;
    auto root = parsed();
    root->add_entry(*new Noted(notes, 'a'));
    ASSERT_TRUE(bk_parser::move(*root, "noted", "item[2]/noted"));
    ASSERT_NE(inside(*root, 2).get_entry("noted"), nullptr);
    root.reset();
    EXPECT_EQ(notes, "a");
}

TEST(group_drop, what_hangs_in_a_group_of_a_host_dies_in_that_order_too) {
    std::string notes;
    auto root = parsed();
    item(*root, 1)->add_group(nullptr)->add_entry(*new Noted(notes, 'a'));
    root->add_entry(*new Noted(notes, 'b'));
    root.reset();
    EXPECT_EQ(notes, "ab");
}

TEST(group_drop, several_documents_in_one_group_go_each_for_itself) {
    auto root = parsed();
    root->set_text(CoreString("small 1 { a 2 }"), CoreVersion(1.2), nullptr);
    root->set_text(CoreString(large_text()), CoreVersion(1.2), nullptr);
    root->move_entry(3000, 1); // moves an entry of the second document among those of the first
    ParserGroup other(CoreString("other"));
    root->move_entry(5, other);
    root.reset();
    EXPECT_EQ(other.get_entry_count(), 1u);
}

TEST(group_drop, a_document_whose_entries_are_removed_one_by_one_goes) {
    auto root = parsed();
    while (root->get_entries().get_count() != 0) {
        root->remove_entry(root->get_entries().get_count() / 2);
    }
    root->set_text(CoreString(large_text()), CoreVersion(1.2), nullptr);
    ParserGroup& many = *root->get_entry(CoreString("many"))->get_group(0);
    while (many.get_entries().get_count() != 0) {
        many.remove_entry(0u);
    }
    EXPECT_EQ(root->get_entry_count(), 1506u);
}

TEST(group_drop, a_text_without_an_entry_leaves_nothing) {
    const auto root = parsed(std::string(100000, ' '));
    EXPECT_EQ(root->get_entries().get_count(), 0u);
}

TEST(group_drop, a_document_goes_in_another_thread_than_it_was_read_in) {
    for (int i = 0; i < 4; ++i) {
        auto root = parsed();
        ParserGroup part(CoreString("part"));
        if (i % 2 == 1) {
            root->move_entries(part, 0);
            for (unsigned int k = 0; k < 700; ++k) {
                part.move_entry(k, *root);
            }
        }
        inside(*root, 1).get_entry(CoreString("name"))->set_string(outside(), 0);
        std::thread other([&root] { root.reset(); });
        part.clear();
        other.join();
    }
}
