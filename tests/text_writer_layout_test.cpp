#include "parser/parser_file.h"
#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

namespace {

/// The tree a 1, b { c "x" d { e 2 } }.
class Document : public testing::Test {
protected:
    Document() : root("root") {
        root.add_entry("a", 0, 0)->add_int(1);
        ParserGroup* b = root.add_group("b");
        b->add_entry("c", 0, 0)->add_string("x");
        b->add_group("d")->add_entry("e", 0, 0)->add_int(2);
    }

    std::string print(bool braces, bool pretty, unsigned int level) const {
        return print(root, braces, pretty, level);
    }

    static std::string print(const ParserGroup& group, bool braces, bool pretty, unsigned int level) {
        CoreString text;
        group.get_text(text, braces, pretty, level);
        return plain(text);
    }

    ParserGroup root;
};

} // namespace

using text_writer_layout = Document;

TEST_F(text_writer_layout, pretty_without_braces_starts_each_entry_with_a_line_feed_and_its_indentation) {
    EXPECT_EQ(print(false, true, 1), "\na 1"
                                     "\nb {"
                                     "\n    c \"x\""
                                     "\n    d {"
                                     "\n        e 2"
                                     "\n    }"
                                     "\n}");
}

TEST_F(text_writer_layout, a_higher_level_without_braces_indents_by_one_less) {
    EXPECT_EQ(print(false, true, 2), "\n    a 1"
                                     "\n    b {"
                                     "\n        c \"x\""
                                     "\n        d {"
                                     "\n            e 2"
                                     "\n        }"
                                     "\n    }");
}

TEST_F(text_writer_layout, pretty_with_braces_indents_the_entries_by_the_level_and_the_brace_by_one_less) {
    EXPECT_EQ(print(true, true, 1), "root {"
                                    "\n    a 1"
                                    "\n    b {"
                                    "\n        c \"x\""
                                    "\n        d {"
                                    "\n            e 2"
                                    "\n        }"
                                    "\n    }"
                                    "\n}");
}

TEST_F(text_writer_layout, a_higher_level_with_braces_indents_everything_further) {
    EXPECT_EQ(print(true, true, 2), "root {"
                                    "\n        a 1"
                                    "\n        b {"
                                    "\n            c \"x\""
                                    "\n            d {"
                                    "\n                e 2"
                                    "\n            }"
                                    "\n        }"
                                    "\n    }");
}

TEST_F(text_writer_layout, level_0_is_laid_out_as_level_1) {
    EXPECT_EQ(print(true, true, 0), print(true, true, 1));
    EXPECT_EQ(print(false, true, 0), print(false, true, 1));
}

TEST_F(text_writer_layout, compact_without_braces_puts_one_blank_before_each_entry) {
    EXPECT_EQ(print(false, false, 1), " a 1 b { c \"x\" d { e 2 } }");
}

TEST_F(text_writer_layout, compact_with_braces_puts_one_blank_before_the_closing_brace) {
    EXPECT_EQ(print(true, false, 1), "root { a 1 b { c \"x\" d { e 2 } } }");
}

TEST_F(text_writer_layout, compact_is_the_same_at_any_level) {
    for (const unsigned int level : {0u, 2u, 7u}) {
        EXPECT_EQ(print(true, false, level), print(true, false, 1));
        EXPECT_EQ(print(false, false, level), print(false, false, 1));
    }
}

TEST_F(text_writer_layout, a_file_prints_its_root_pretty_without_braces_at_level_1) {
    ParserFile file(*new ParserGroup(root));
    CoreString text;
    file.get_text(text);
    EXPECT_EQ(plain(text), print(false, true, 1));
}

TEST_F(text_writer_layout, text_is_appended) {
    CoreString text("before");
    root.get_text(text, false, false, 1);
    EXPECT_EQ(plain(text), "before a 1 b { c \"x\" d { e 2 } }");
}

TEST_F(text_writer_layout, printing_twice_gives_the_same_text) {
    EXPECT_EQ(print(true, true, 1), print(true, true, 1));
}

TEST(text_writer_layout_of_groups, an_empty_group_with_braces_is_two_braces) {
    const ParserGroup nameless("");
    CoreString text;
    nameless.get_text(text, true, true, 1);
    EXPECT_EQ(plain(text), "{\n}");
    text.clear();
    nameless.get_text(text, true, true, 3);
    EXPECT_EQ(plain(text), "{\n        }");
    text.clear();
    nameless.get_text(text, true, false, 1);
    EXPECT_EQ(plain(text), "{ }");
}

TEST(text_writer_layout_of_groups, an_empty_named_group_has_its_name_before_the_brace) {
    const ParserGroup named("g");
    CoreString text;
    named.get_text(text, true, true, 1);
    EXPECT_EQ(plain(text), "g {\n}");
    text.clear();
    named.get_text(text, true, false, 1);
    EXPECT_EQ(plain(text), "g { }");
}

TEST(text_writer_layout_of_groups, an_empty_group_without_braces_is_nothing) {
    const ParserGroup named("g");
    CoreString text;
    named.get_text(text, false, true, 1);
    named.get_text(text, false, false, 1);
    EXPECT_EQ(plain(text), "");
}

TEST(text_writer_layout_of_groups, an_empty_nested_group_closes_at_the_indentation_of_its_entry) {
    ParserGroup root("root");
    root.add_group("a")->add_group("b");
    CoreString text;
    root.get_text(text, false, true, 1);
    EXPECT_EQ(plain(text), "\na {\n    b {\n    }\n}");
}

TEST(text_writer_layout_of_groups, the_name_of_a_group_value_stands_before_its_brace) {
    ParserGroup root("root");
    auto* inner = new ParserGroup("inner");
    inner->add_entry("a", 0, 0)->add_int(1);
    root.add_entry("e", 0, 0)->add_group(inner);
    CoreString text;
    root.get_text(text, false, true, 1);
    EXPECT_EQ(plain(text), "\ne inner {\n    a 1\n}");
}

TEST(text_writer_layout_of_groups, a_group_g_with_an_entry_a_is_one_line_at_any_level) {
    ParserGroup group("g");
    group.add_entry("a", 0, 0)->add_int(1);
    for (const unsigned int level : {0u, 1u, 5u}) {
        CoreString text;
        group.get_text(text, true, false, level);
        EXPECT_EQ(plain(text), "g { a 1 }");
    }
}

TEST(text_writer_layout_of_groups, several_groups_of_one_entry_follow_each_other) {
    ParserGroup root("root");
    ParserEntry* entry = root.add_entry("e", 0, 0);
    entry->add_group(nullptr)->add_entry("a", 0, 0)->add_int(1);
    entry->add_group(nullptr)->add_entry("b", 0, 0)->add_int(2);
    entry->add_int(3);
    CoreString text;
    root.get_text(text, false, true, 1);
    EXPECT_EQ(plain(text), "\ne {\n    a 1\n} {\n    b 2\n} 3");
}

TEST(text_writer_layout_of_groups, entries_of_every_kind_stand_in_document_order) {
    ParserGroup root("root");
    root.add_entry("a", 0, 0)->add_int(1);
    root.add_entry("#k", 0, 0)->add_int(2);
    root.add_entry("b", 0, 0)->add_int(3);
    CoreString text;
    root.get_text(text, false, true, 1);
    EXPECT_EQ(plain(text), "\na 1\n#k 2\nb 3");
}
