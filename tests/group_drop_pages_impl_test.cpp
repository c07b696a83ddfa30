#include "tests/support/run_out.h"

#include "core/app_progress_bar.h"
#include "document/access.h"
#include "parser/parser_group.h"
#include "parser/parser_read_observer.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

// Which documents have pages of their own, and when these are freed. Counts every page and block.

namespace {

constexpr unsigned int item_count = 2000;
constexpr std::size_t large = 32768;

std::string items(unsigned int count) {
    std::string text;
    for (unsigned int i = 0; i < count; ++i) {
        text += "item { name \"a string that is long\" place 1 2 } ";
    }
    return text;
}

/// A text with blanks at its end, so that it has this size.
CoreString text_of_size(std::size_t size) {
    const std::string text = "a 1 b { c 2 } ";
    return core_text(text + std::string(size - text.size(), ' '));
}

ParserGroup& inside(const ParserGroup& root, unsigned int i) {
    return *root.get_entries()[i]->get_group(0);
}

/// Expects at the end of a scope that no page and no block is in use.
class NothingIsLeft {
public:
    ~NothingIsLeft() {
        EXPECT_EQ(FailingPages::count(), 0u);
        EXPECT_EQ(FailingMemory::live(), live_);
    }

private:
    long live_ = FailingMemory::live();
};

class ThrowingObserver : public ParserReadObserver {
public:
    void fault_found(const Fault&, const unsigned int&, const unsigned int&, const CoreString&) override {
        throw std::runtime_error("a host's own");
    }
};

class ThrowingBar : public AppProgressBar {
public:
    void set_value(const float& value) override {
        if (value > 0.5f) {
            throw std::runtime_error("a host's own");
        }
    }
};

} // namespace

TEST(group_drop_pages, a_text_has_pages_from_32_KiB_on) {
    for (const std::size_t size : {large - 1, large}) {
        const CoreString text = text_of_size(size);
        const NothingIsLeft nothing_is_left;
        ParserGroup root("root");
        root.set_text(text, default_parser_serial_version, nullptr);
        EXPECT_EQ(FailingPages::count(), size == large ? 1u : 0u);
        EXPECT_EQ(inside(root, 1).get_entry("c")->get_int(0), 2);
    }
}

TEST(group_drop_pages, a_binary_group_has_pages_from_32_KiB_on) {
    ParserGroup source("root");
    for (const unsigned int length : {100u, 40000u}) {
        source.clear();
        source.add_entry("a", 0, 0)->add_string(core_text(std::string(length, 'x')));
        source.add_group("b")->add_entry("c", 0, 0)->add_int(2);
        const CoreVector<char> bytes = source.get_binary(false);
        const NothingIsLeft nothing_is_left;
        ParserGroup root("root");
        core_uint64 position = 0;
        ASSERT_TRUE(root.set_binary(bytes, position));
        EXPECT_EQ(FailingPages::count(), length == 100u ? 0u : 1u);
        EXPECT_EQ(inside(root, 1).get_entry("c")->get_int(0), 2);
    }
}

TEST(group_drop_pages, a_text_that_a_host_ends_by_throwing_leaves_what_was_read_and_no_page) {
    const std::string faulty = items(item_count / 2) + "open { c 1 } } " + items(item_count / 2);
    const CoreString text = core_text(faulty);
    for (const bool in_bar : {false, true}) {
        const NothingIsLeft nothing_is_left;
        CountingLog log;
        ParserGroup root("root");
        ThrowingObserver observer;
        ThrowingBar bar;
        EXPECT_THROW(root.set_text(text, default_parser_serial_version, in_bar ? &bar : nullptr,
                                   in_bar ? nullptr : &observer),
                     std::runtime_error);
        ASSERT_GT(root.get_entries().get_count(), 1000u);
        EXPECT_GT(FailingPages::count(), 1u);
        inside(root, 3).get_entry("name")->set_string("another string that is long", 0);
        root.remove_entry(5u);
        EXPECT_EQ(inside(root, 6).get_entry("place")->get_int(1), 2);
    }
}

TEST(group_drop_pages, pages_go_back_while_entries_are_removed_one_by_one) {
    const CoreString text = core_text(items(item_count));
    const NothingIsLeft nothing_is_left;
    ParserGroup root("root");
    root.set_text(text, default_parser_serial_version, nullptr);
    const std::size_t all = FailingPages::count();
    ASSERT_GT(all, 8u);
    while (root.get_entries().get_count() > item_count / 2) {
        root.remove_entry(root.get_entries().get_count() - 1);
    }
    EXPECT_LT(FailingPages::count(), all * 6 / 10);
}

TEST(group_drop_pages, edits_without_end_take_no_more_pages) {
    const CoreString text = core_text(items(item_count));
    const NothingIsLeft nothing_is_left;
    ParserGroup root("root");
    root.set_text(text, default_parser_serial_version, nullptr);
    const std::size_t all = FailingPages::count();
    ParserEntry& name = *inside(root, 7).get_entry("name");
    for (int i = 0; i < 2000; ++i) {
        name.set_string("another string that is long", 0);
        name.add_string("a second string that is long");
        name.remove_value(1u);
        name.rename("a_name_longer_than_eleven");
    }
    EXPECT_EQ(FailingPages::count(), all);
    const long live = FailingMemory::live();
    for (int i = 0; i < 200; ++i) {
        root.add_group("g")->add_entry("e", 0, 0)->add_int(i);
        root.remove_entry(root.get_entries().get_count() - 1);
    }
    EXPECT_EQ(FailingPages::count(), all);
    EXPECT_LE(FailingMemory::live(), live + 1); // the list may have grown
}

TEST(group_drop_pages, what_came_from_elsewhere_goes_with_the_document) {
    const CoreString text = core_text(items(item_count));
    const std::vector<std::function<void(ParserGroup&, ParserGroup&)>> edits = {
        [](ParserGroup& root, ParserGroup& other) { other.move_entries(inside(root, 3)); },
        [](ParserGroup& root, ParserGroup& other) { other.move_entries(inside(root, 3), 1); },
        [](ParserGroup& root, ParserGroup& other) { other.move_entry(0, inside(root, 3)); },
        [](ParserGroup& root, ParserGroup& other) { *root.get_entries()[4] = *other.get_entries()[0]; },
        [](ParserGroup& root, ParserGroup& other) {
            root.get_entries()[4]->copy_from(*other.get_entries()[0]);
        },
        [](ParserGroup& root, ParserGroup& other) { inside(root, 3) = other; },
        [](ParserGroup& root, ParserGroup& other) { inside(root, 3).set(other); },
        [](ParserGroup& root, ParserGroup& other) {
            const CoreVector<char> bytes = other.get_entries()[0]->get_binary();
            core_uint64 position = 2; // after the name
            ParserEntry& entry = *inside(root, 3).get_entry("place");
            entry.reset();
            EXPECT_TRUE(entry.set_binary(bytes, position));
            EXPECT_EQ(entry.get_value_count(), 2u);
        },
        [](ParserGroup& root, ParserGroup& other) {
            other.move_entry(0, root);
            EXPECT_TRUE(bk_parser::move(root, "e", "item[1]/e"));
        },
        [](ParserGroup& root, ParserGroup& other) {
            bk_parser::insert(inside(root, 3), 1, bk_parser::take(other, 0));
        },
        [](ParserGroup& root, ParserGroup&) {
            inside(root, 3).set_text("e 1 f 2", CoreVersion(1.2), nullptr);
        },
    };
    for (const auto& edit : edits) {
        const NothingIsLeft nothing_is_left;
        ParserGroup root("root");
        root.set_text(text, default_parser_serial_version, nullptr);
        ParserGroup other("other");
        other.set_text("e \"a string that is long\" 2 f { g 3 }", default_parser_serial_version, nullptr);
        edit(root, other);
    }
}

TEST(group_drop_pages, names_that_entries_of_binary_data_get_go_with_the_document) {
    ParserGroup source("root");
    source.set_text(core_text(items(item_count)), default_parser_serial_version, nullptr);
    const CoreVector<char> bytes = source.get_binary(false);
    source.clear();
    const NothingIsLeft nothing_is_left;
    ParserGroup root("root");
    core_uint64 position = 0;
    ASSERT_TRUE(root.set_binary(bytes, position));
    root.get_entries()[5]->rename("a_name_longer_than_eleven");
}

TEST(group_drop_pages, documents_in_one_group_go_back_without_the_others) {
    const CoreString text = core_text(items(item_count));
    const NothingIsLeft nothing_is_left;
    ParserGroup root("root");
    root.set_text(text, default_parser_serial_version, nullptr);
    const std::size_t all = FailingPages::count();
    {
        ParserGroup other("other");
        other.set_text(text, default_parser_serial_version, nullptr);
        other.set_text(text, default_parser_serial_version, nullptr);
        EXPECT_EQ(FailingPages::count(), 3 * all);
        other.move_entry(0, root);
    }
    EXPECT_EQ(FailingPages::count(), all + 1); // the page of the entry that was moved
    EXPECT_EQ(root.get_entries().get_count(), item_count + 1);
}
