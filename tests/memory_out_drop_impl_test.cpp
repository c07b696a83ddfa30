#include "tests/support/run_out.h"

#include "parser/parser_group.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

// Memory runs out while a large document, which has pages of its own, is read and edited.

namespace {

/// A text with blanks at its end, so that it is large.
CoreString large_text() {
    std::string text = "#k 1 first \"a string longer than eleven\" bytes 0x01FF00010000 ";
    for (int i = 0; i < 150; ++i) {
        text += "item<template_of_a_long_name> { a_name_longer_than_eleven " + std::to_string(i) +
                " f(1) #key_of_item 2 g { s \"another string that is long\" } } ";
    }
    text += "row";
    for (int i = 0; i < 300; ++i) {
        text += " " + std::to_string(i);
    }
    return core_text(text + std::string(33000, ' '));
}

/// A group whose lists are on the pages of the document.
ParserGroup& plain_group(const ParserGroup& root) {
    return *root.get_entry("item")->get_group(0)->get_entry("g")->get_group(0);
}

using Edit = std::function<void(ParserGroup&)>;

const std::vector<Edit>& edits() {
    static const std::vector<Edit> all = {
        [](ParserGroup& root) { root.get_entry("first")->rename("another_name_longer_than_eleven"); },
        [](ParserGroup& root) { root.get_entry("first")->set_template("a_name_longer_than_eleven"); },
        [](ParserGroup& root) { root.get_entry("first")->set_string("a new string of some length", 0); },
        [](ParserGroup& root) { root.get_entry("first")->add_string("a new string of some length"); },
        [](ParserGroup& root) { root.get_entry("row")->add_string("a new string of some length"); },
        [](ParserGroup& root) { root.get_entry("item")->get_group(0)->add_entry("new", 0, 0); },
        [](ParserGroup& root) { root.get_entry("item")->add_group(nullptr); },
        [](ParserGroup& root) { root.get_entry("row")->add_group(nullptr); },
        [](ParserGroup& root) { root.get_entry("item")->get_group(0)->add_group("#new_keyword"); },
        [](ParserGroup& root) {
            ParserGroup& group = *root.get_entry("item")->get_group(0);
            group.get_entries()[0]->set_as_raw_text(true);
            group.get_entries()[1]->set_as_raw_text(true);
            group.move_entry(0, 1);
        },
        [](ParserGroup& root) { plain_group(root).add_group("new"); },
        [](ParserGroup& root) {
            plain_group(root).get_entries()[0]->set_as_raw_text(true);
            plain_group(root).move_entry(0, 0);
        },
        [](ParserGroup& root) { root.get_entry("item")->copy_from(*root.get_entry("row")); },
        [](ParserGroup& root) { root.remove_entry(CoreString("first")); },
        [](ParserGroup& root) { root.get_entry("item")->get_group(0)->remove_entry(0u); },
        [](ParserGroup& root) { *root.get_entry("item") = *root.get_entry("first"); },
        [](ParserGroup& root) {
            *root.get_entry("item")->get_group(0) = *root.get_entries().end()[-2]->get_group(0);
        },
        [](ParserGroup& root) {
            ParserGroup other("other");
            root.move_entry(1, other);
        },
    };
    return all;
}

/// Runs the edit again and again, each time on a new document. In run n, request n fails. With `for_good`,
/// all later requests fail, too, in every second run.
void run_out_in(const Edit& edit, const CoreString& text, bool for_good) {
    bool failed = true;
    for (std::size_t n = 1; failed; ++n) {
        const long live = FailingMemory::live();
        {
            ParserGroup root("root");
            root.set_text(text, default_parser_serial_version, nullptr);
            EXPECT_GE(FailingPages::count(), 1u);
            const unsigned int entry_count = root.get_entry_count();
            FailingMemory::fail_at(n, for_good && n % 2 == 0);
            try {
                edit(root);
            } catch (const std::bad_alloc&) {
                EXPECT_GE(root.get_entry_count() + 1, entry_count); // one edit removes an entry
            }
            failed = FailingMemory::disarm();
        }
        ASSERT_EQ(FailingMemory::live(), live) << n;
        ASSERT_EQ(FailingPages::count(), 0u) << n;
    }
}

} // namespace

TEST(memory_out_drop, a_large_document_that_could_not_be_read_whole_leaves_nothing) {
    const CoreString text = large_text();
    CountingLog log;
    bool failed = true;
    for (std::size_t n = 1; failed; ++n) {
        const long live = FailingMemory::live();
        {
            ParserGroup root("root");
            FailingMemory::fail_at(n, n % 2 == 0);
            root.set_text(text, default_parser_serial_version, nullptr);
            failed = FailingMemory::disarm();
            if (!failed) {
                EXPECT_EQ(root.get_entries().get_count(), 154u);
                EXPECT_GT(FailingPages::count(), 1u);
            }
        }
        ASSERT_EQ(FailingMemory::live(), live) << n;
        ASSERT_EQ(FailingPages::count(), 0u) << n;
    }
}

TEST(memory_out_drop, an_edit_that_finds_no_memory_leaves_a_large_document_that_goes_whole) {
    const CoreString text = large_text();
    CountingLog log;
    for (const Edit& edit : edits()) {
        run_out_in(edit, text, true);
    }
}

TEST(memory_out_drop, a_document_that_cannot_list_an_entry_gives_up_its_pages) {
    // No part of this document owns memory outside the pages. One of the requests is for the list.
    const CoreString large = core_text("first 1 group { last 1 }" + std::string(33000, ' '));
    const CoreString name("a_name_longer_than_eleven");
    const std::vector<Edit> edits_of_first = {
        [&](ParserGroup& root) { root.get_entry("first")->rename(name); },
        [&](ParserGroup& root) { root.get_entry("first")->set_template(name); },
        [&](ParserGroup& root) { root.get_entry("first")->set_string(name, 0); },
        [&](ParserGroup& root) { root.get_entry("first")->add_string(name); },
        [](ParserGroup& root) { root.get_entry("group")->get_group(0)->add_entry("new", 0, 0); },
    };
    for (const Edit& edit : edits_of_first) {
        run_out_in(edit, large, false);
    }
}
