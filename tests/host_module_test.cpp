#include "parser/parser_file.h"
#include "tests/host_module/host_module.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <string>

// The library, this program and a third module exchange objects. Some objects are destroyed in another module
// than the one that made them.

namespace {

class host_module_objects : public testing::Test {
protected:
    ~host_module_objects() override { EXPECT_EQ(host_module::living(), 0); }
};

TEST_F(host_module_objects, a_group_made_there_dies_with_the_entry_that_adopted_it) {
    ParserGroup root("root");
    ParserGroup* const group = host_module::make_group("made");
    EXPECT_EQ(root.add_group(group), group);
    EXPECT_TRUE(group->set_text("a 1 b { c 2 }", CoreVersion(1.2), nullptr));
    EXPECT_EQ(written(root), "root { made made { a 1 b { c 2 } } }");
    EXPECT_EQ(host_module::mark_of(*group), 7);
    EXPECT_EQ(host_module::living(), 1);
    root.clear();
    EXPECT_EQ(host_module::living(), 0);
}

TEST_F(host_module_objects, a_group_made_there_may_be_the_root_of_a_document_and_dies_with_it) {
    ParserFile file(*host_module::make_group("root"));
    EXPECT_TRUE(file.get_root().set_text("a 1", CoreVersion(1.2), nullptr));
    EXPECT_EQ(host_module::mark_of(file.get_root()), 7);
    EXPECT_EQ(host_module::living(), 1);
}

TEST_F(host_module_objects, an_entry_made_there_dies_with_the_group_that_adopted_it) {
    {
        ParserGroup root("root");
        ParserEntry* const entry = host_module::make_entry("made");
        EXPECT_EQ(root.add_entry(*entry), entry);
        entry->add_string("a text that is too long to stand inside of a string");
        EXPECT_EQ(host_module::mark_of(*root.get_entry("made")), 7);
        EXPECT_EQ(host_module::living(), 1);
    }
    EXPECT_EQ(host_module::living(), 0);
}

TEST_F(host_module_objects, an_entry_larger_than_any_slab_block_is_given_back_too) {
    for (int i = 0; i < 1000; ++i) {
        ParserGroup root("root");
        root.add_entry(*host_module::make_large_entry("large"));
        root.add_entry(*host_module::make_entry("small"));
        root.remove_entry("large");
        ASSERT_EQ(host_module::living(), 1);
    }
}

TEST_F(host_module_objects, what_the_library_made_may_be_destroyed_there) {
    auto* const root = new ParserGroup("root");
    EXPECT_TRUE(root->set_text("a 1 b \"a text of many characters, in its entry's block\" c { d { e 2 } }",
                               CoreVersion(1.2), nullptr));
    EXPECT_EQ(host_module::mark_of(*root), -1);
    ParserEntry* const entry = root->get_entry("b");
    root->detach_entry(1);
    root->remove_entry(1u);
    host_module::destroy(entry);
    EXPECT_EQ(written(*root), "root { a 1 c { d { e 2 } } }");
    host_module::destroy(root);
}

TEST_F(host_module_objects, what_was_made_there_may_be_destroyed_here) {
    delete host_module::make_group("group");
    delete host_module::make_entry("entry");
    delete host_module::make_large_entry("entry");
    delete host_module::make_log_handler();
    delete host_module::make_progress_bar();
}

TEST_F(host_module_objects, a_copy_of_an_object_made_there_is_one_of_the_library_s) {
    ParserGroup* const group = host_module::make_group("group");
    EXPECT_TRUE(group->set_text("a 1", CoreVersion(1.2), nullptr));
    const ParserGroup copy(*group);
    EXPECT_EQ(host_module::mark_of(copy), -1);
    EXPECT_EQ(host_module::living(), 1);
    host_module::destroy(group);
    EXPECT_EQ(written(copy), "group { a 1 }");
}

TEST_F(host_module_objects, a_log_handler_made_there_gets_the_messages) {
    CoreLogHandler* const before = CoreLogHandler::s_main_log_handler;
    CoreLogHandler* const handler = host_module::make_log_handler();
    CoreLogHandler::s_main_log_handler = handler;
    ParserGroup root("root");
    root.set_text("a ?? 1", CoreVersion(1.2), nullptr);
    CoreLogHandler::s_main_log_handler = before;
    EXPECT_EQ(host_module::count_messages(*handler), 1);
    EXPECT_EQ(host_module::count_messages(*before), -1);
    host_module::destroy(handler);
}

TEST_F(host_module_objects, a_progress_bar_made_there_is_told_how_far_reading_has_come) {
    AppProgressBar* const progress = host_module::make_progress_bar();
    ParserGroup root("root");
    EXPECT_TRUE(root.set_text("a 1 b 2", CoreVersion(1.2), progress));
    EXPECT_GE(host_module::count_calls(*progress), 2);
    host_module::destroy(progress);
}

TEST_F(host_module_objects, groups_and_entries_made_there_die_at_any_depth) {
    auto* const root = new ParserGroup("root");
    ParserGroup* inner = root;
    for (int i = 0; i < 100000; ++i) {
        inner = inner->add_group(i % 2 == 0 ? host_module::make_group("g") : new ParserGroup("g"));
    }
    EXPECT_EQ(host_module::living(), 50000);
    delete root;
}

} // namespace
