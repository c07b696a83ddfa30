#include "document/access.h"
#include "tests/support/counted_objects.h"
#include "tests/support/large_document.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

#include <thread>
#include <utility>
#include <vector>

// Objects that a host took from a document with pages of its own, or added to it, when either of the two is
// destroyed.

namespace {

/// The text of an item of the document.
std::string text_of_item(unsigned int i) {
    const auto root = parsed();
    return text_of(inside(*root, i));
}

/// Allocates the pages that the document gave back, and overwrites them.
void overwrite_pages() {
    static_cast<void>(parsed());
}

} // namespace

TEST(group_drop_lifetime, what_a_host_has_copied_lives_on) {
    auto root = parsed();
    const ParserEntry& many = *root->get_entry(CoreString("many"));
    const ParserEntry& name = *inside(*root, 5).get_entry(CoreString("name"));
    const CoreString template_name = many.get_template();
    const CoreString long_name = root->get_entries().end()[-2]->get_name();
    const CoreString string = name.get_string(0);
    const CoreString word = root->get_entry(CoreString("row"))->get_word(3999);
    CoreVector<ParserEntry*> entries = inside(*root, 5).get_entries();
    const unsigned int entry_count = entries.get_count();
    const ParserEntry entry(*item(*root, 7));
    const ParserGroup group(inside(*root, 8));
    ParserGroup whole(CoreString("whole"));
    whole.set(*root);
    const std::string text = text_of(*root);
    root.reset();
    overwrite_pages();
    EXPECT_EQ(template_name.get_view(), "template_of_a_long_name");
    EXPECT_EQ(long_name.get_view(), "a_name_that_is_much_longer_than_eleven");
    EXPECT_EQ(string.get_view(), "a string of item 5");
    EXPECT_EQ(word.get_view(), "3999");
    entries.add(nullptr);
    EXPECT_EQ(entries.get_count(), entry_count + 1);
    EXPECT_EQ(text_of(*entry.get_group(0)), text_of_item(7));
    EXPECT_EQ(text_of(group), text_of_item(8));
    EXPECT_EQ(text_of(whole), text);
}

TEST(group_drop_lifetime, an_entry_that_was_taken_lives_on) {
    for (const bool goes_to_another : {false, true}) {
        auto root = parsed();
        auto other = parsed();
        const std::string text = text_of_item(4);
        auto taken = bk_parser::take(*root, position_of(*root, item(*root, 4)));
        ASSERT_NE(taken, nullptr);
        ParserEntry* const entry = taken.get();
        if (goes_to_another) {
            bk_parser::insert(inside(*other, 3), 1, std::move(taken));
        }
        root.reset();
        overwrite_pages();
        EXPECT_EQ(text_of(*entry->get_group(0)), text);
    }
}

TEST(group_drop_lifetime, an_entry_of_a_group_that_was_taken_lives_on) {
    auto root = parsed();
    auto taken = bk_parser::take(inside(*root, 2), "inner");
    ASSERT_NE(taken, nullptr);
    root.reset();
    overwrite_pages();
    EXPECT_EQ(text_of(*taken->get_group(0)), " deep yes word \"short\"");
}

TEST(group_drop_lifetime, an_entry_that_was_taken_and_put_back_goes_with_its_document) {
    auto root = parsed();
    const std::string text = text_of(*root);
    for (unsigned int position = 2; position < 5; ++position) {
        auto taken = bk_parser::take(*root, position);
        bk_parser::insert(*root, position, std::move(taken));
    }
    EXPECT_EQ(text_of(*root), text);
}

TEST(group_drop_lifetime, what_moved_to_another_document_stays_there_whichever_goes_first) {
    for (const bool source_first : {true, false}) {
        auto source = parsed();
        auto dest = parsed();
        const std::string text = text_of_item(9);
        source->move_entry(position_of(*source, item(*source, 9)), inside(*dest, 2));
        inside(*source, 20).move_entries(inside(*dest, 4));
        inside(*source, 21).move_entries(inside(*dest, 6), 0);
        (source_first ? source : dest).reset();
        overwrite_pages();
        if (source_first) {
            EXPECT_EQ(text_of(*inside(*dest, 2).get_entry(CoreString("item"))->get_group(0)), text);
            EXPECT_EQ(inside(*dest, 6).get_entries()[0]->get_string(0).get_view(), "a string of item 22");
        } else {
            EXPECT_EQ(source->get_entries(CoreString("item"), false).get_count(), 1499u);
        }
    }
}

TEST(group_drop_lifetime, what_moved_by_its_path_and_left_with_a_group_of_the_host_lives_on) {
    auto root = parsed();
    root->add_group(CoreString("host"));
    ASSERT_TRUE(bk_parser::move(*root, "item[1]/inner", "host/moved"));
    const auto taken = bk_parser::take(*root, "host");
    root.reset();
    overwrite_pages();
    EXPECT_EQ(text_of(*taken->get_group(0)), " moved { deep yes word \"short\" }");
}

TEST(group_drop_lifetime, what_moved_within_a_document_by_its_paths_goes_with_it) {
    auto root = parsed();
    ASSERT_TRUE(bk_parser::move(*root, "item[1]/inner", "item[2]/moved"));
    const std::string text = text_of(*root);
    const auto copy = std::make_unique<ParserGroup>(*root);
    root.reset();
    overwrite_pages();
    EXPECT_EQ(text_of(*copy), text);
}

TEST(group_drop_lifetime, values_of_two_documents_live_as_long_as_one_of_both) {
    for (const bool source_first : {true, false}) {
        auto source = parsed();
        auto dest = parsed();
        const std::string text = text_of_item(9);
        *item(*dest, 3) = *item(*source, 9);
        *inside(*dest, 5).get_entry(CoreString("name")) = *inside(*source, 6).get_entry(CoreString("name"));
        inside(*dest, 7) = inside(*source, 8);
        ParserGroup& left = source_first ? *dest : *source;
        (source_first ? source : dest).reset();
        overwrite_pages();
        EXPECT_EQ(text_of(inside(left, source_first ? 3 : 9)), text);
        const ParserEntry& name = *inside(left, source_first ? 5 : 6).get_entry(CoreString("name"));
        EXPECT_EQ(name.get_string(0).get_view(), "a string of item 6");
        EXPECT_EQ(text_of(inside(left, source_first ? 7 : 8)), text_of_item(8));
    }
}

TEST(group_drop_lifetime, a_document_that_was_read_into_a_group_of_another_goes_before_or_with_it) {
    for (const bool clears : {false, true}) {
        const NothingLeaks nothing_leaks;
        auto root = parsed();
        ParserGroup* const nested = item(*root, 1)->add_group(new CountedGroup);
        nested->set_text(CoreString(large_text()), CoreVersion(1.2), nullptr);
        inside(*nested, 1).get_entry(CoreString("name"))->set_string(outside(), 0);
        if (clears) {
            nested->clear();
        }
        inside(*root, 1).clear();
        inside(*root, 2).set_text(CoreString(large_text()), CoreVersion(1.2), nullptr);
        inside(*root, 2).clear();
        EXPECT_EQ(inside(*root, 3).get_entry(CoreString("name"))->get_string(0).get_view(),
                  "a string of item 3");
    }
}

TEST(group_drop_lifetime, a_group_with_a_long_list_goes_before_its_document) {
    for (const bool clears : {false, true}) {
        const auto root = parsed(text_with(200) + large_text());
        ParserEntry* const many = root->get_entry(CoreString("many"));
        ASSERT_GT(many->get_group(0)->get_entry_count(), 128u);
        if (clears) {
            many->get_group(0)->clear();
        }
        root->remove_entry(position_of(*root, many));
        EXPECT_EQ(inside(*root, 3).get_entry(CoreString("name"))->get_string(0).get_view(),
                  "a string of item 3");
    }
}

TEST(group_drop_lifetime, a_group_with_a_keyword_goes_before_its_document) {
    const auto root = parsed();
    inside(*root, 3).clear();
    item(*root, 3)->remove_value(0u);
    root->remove_entry(position_of(*root, item(*root, 3)));
    EXPECT_EQ(inside(*root, 3).get_entry(CoreString("name"))->get_string(0).get_view(), "a string of item 4");
}

TEST(group_drop_lifetime, an_entry_that_owns_something_goes_before_its_document) {
    const auto root = parsed();
    for (const char* name : {"first", "row", "last"}) {
        ParserEntry& entry = *root->get_entry(CoreString(name));
        entry.set_template(outside());
        entry.add_string(outside());
        root->remove_entry(position_of(*root, &entry));
        overwrite_pages();
    }
    EXPECT_EQ(root->get_entry_count(), 1503u);
}

TEST(group_drop_lifetime, an_entry_that_was_detached_from_a_group_inside_lives_on) {
    auto root = parsed();
    ParserGroup& group = inside(*root, 3);
    const std::unique_ptr<ParserEntry> entry(group.get_entry(CoreString("inner")));
    group.detach_entry(ordinal_of(group, entry.get()));
    group.remove_entry(position_of(group, nullptr));
    root.reset();
    overwrite_pages();
    EXPECT_EQ(text_of(*entry->get_group(0)), " deep yes word \"short\"");
}

TEST(group_drop_lifetime, an_entry_that_a_host_deletes_before_it_empties_the_slot_goes_once) {
    for (const bool owns_something : {false, true}) {
        const auto root = parsed();
        ParserGroup& group = inside(*root, 3);
        ParserEntry* const entry = group.get_entry(CoreString("place"));
        const unsigned int ordinal = ordinal_of(group, entry);
        const unsigned int count = group.get_entries().get_count();
        if (owns_something) {
            entry->rename(outside());
        }
        delete entry;
        overwrite_pages();
        group.detach_entry(ordinal);
        group.remove_entry(position_of(group, nullptr));
        EXPECT_EQ(group.get_entries().get_count(), count - 1);
    }
}

TEST(group_drop_lifetime, groups_deeper_than_destructors_nest_go_before_their_document) {
    constexpr unsigned int depth = 2000;
    std::string deep = "deep ";
    for (unsigned int i = 0; i < depth; ++i) {
        deep += "{ a 1 b ";
    }
    deep += "{ }" + std::string(depth, '}');
    for (const bool is_edited : {false, true}) {
        const auto root = parsed(deep + " deep { } " + large_text());
        ParserGroup* group = root->get_entry(CoreString("deep"))->get_group(0);
        for (unsigned int i = 0; is_edited && i + 1 < depth; ++i) {
            group = group->get_entry(CoreString("b"))->get_group(0);
            group->get_entry(CoreString("a"))->set_string(outside(), 0);
        }
        root->remove_entry(0u);
        EXPECT_EQ(root->get_entries().get_count(), 1508u);
    }
}

TEST(group_drop_lifetime, a_document_goes_in_another_thread_when_its_reader_has_ended) {
    std::vector<std::unique_ptr<ParserGroup>> documents(3);
    std::thread reader([&documents] {
        for (auto& document : documents) {
            document = parsed();
        }
    });
    reader.join();
    ParserGroup part(CoreString("part"));
    documents[1]->move_entry(5, part);
    inside(*documents[2], 5).get_entry(CoreString("name"))->set_string(outside(), 0);
    std::thread destroyer([&documents] { documents.clear(); });
    destroyer.join();
    overwrite_pages();
    EXPECT_EQ(part.get_entry_count(), 1u);
}

TEST(group_drop_lifetime, two_threads_edit_what_was_one_document) {
    auto root = parsed();
    auto part = std::make_unique<ParserGroup>(CoreString("part"));
    for (unsigned int k = 0; k < 700; ++k) {
        root->move_entry(10 + k, *part);
    }
    const auto edit_and_destroy = [](std::unique_ptr<ParserGroup>& group) {
        for (ParserEntry* entry : group->get_entries()) {
            entry->set_template(outside());
            entry->add_string(outside());
        }
        group->remove_entry(group->get_entries().get_count() / 2);
        group.reset();
    };
    std::thread other([&] { edit_and_destroy(part); });
    edit_and_destroy(root);
    other.join();
    EXPECT_EQ(root, nullptr);
}
