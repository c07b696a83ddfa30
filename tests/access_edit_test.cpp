#include "document/access.h"
#include "parser/parser_file.h"
#include "tests/support/described.h"
#include "tests/support/nasty_tree.h"
#include "tests/support/recording_log.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

class access_edit : public testing::Test {
protected:
    void fill(std::string_view text) { root_.set_text(core(text), default_parser_serial_version, nullptr); }
    std::string text() const { return described(root_); }

    ParserGroup root_{"root"};
    RecordingLog log_;
};

std::unique_ptr<ParserEntry> new_entry(const char* name, ParserEntry::Type type = ParserEntry::TYPE_ENTRY) {
    return std::make_unique<ParserEntry>(name, type, 0, 0);
}

} // namespace

TEST_F(access_edit, remove_takes_the_first_entry_or_a_value) {
    fill("a 1 2 3 a 4 g { a 5 } ");
    EXPECT_TRUE(bk_parser::remove(root_, "a@1"));
    EXPECT_EQ(text(), " a 1 3 a 4 g { a 5 }");
    EXPECT_TRUE(bk_parser::remove(root_, "**/a"));
    EXPECT_EQ(text(), " a 4 g { a 5 }");
    EXPECT_TRUE(bk_parser::remove(root_, "g@0"));
    EXPECT_EQ(text(), " a 4 g");
    EXPECT_FALSE(bk_parser::remove(root_, "a@1"));
    EXPECT_FALSE(bk_parser::remove(root_, "absent"));
    EXPECT_FALSE(bk_parser::remove(root_, "a["));
    EXPECT_EQ(text(), " a 4 g");
    EXPECT_TRUE(log_.is_empty());
}

TEST_F(access_edit, remove_all_takes_each_and_what_is_below_with_it) {
    fill("a 1 b { a 2 { a 3 } c 4 a 5 } a 6 d { a { a 7 } } ");
    EXPECT_EQ(bk_parser::remove_all(root_, "**/a"), 5u) << "those in a removed one do not count";
    EXPECT_EQ(text(), " b { c 4 } d { }");
    EXPECT_EQ(bk_parser::remove_all(root_, "**/a"), 0u);
    EXPECT_EQ(bk_parser::remove_all(root_, "a["), 0u);
    EXPECT_EQ(bk_parser::remove_all(root_, "**"), 2u);
    EXPECT_EQ(text(), "");
}

TEST_F(access_edit, remove_all_of_a_value_takes_it_from_each_entry) {
    fill("a[2] 1 2 b { a 3 a 4 5 { a 6 7 } } ");
    EXPECT_EQ(bk_parser::remove_all(root_, "**/a@1"), 3u);
    EXPECT_EQ(text(), " a[1] 1 b { a 3 a 4 { a 6 } }");
    EXPECT_EQ(bk_parser::remove_all(root_, "**/a@1"), 1u) << "the group, and not what it held";
    EXPECT_EQ(text(), " a[1] 1 b { a 3 a 4 }");
}

TEST_F(access_edit, rename_takes_plain_names_of_the_same_kind) {
    fill("a 1 #k 2 ");
    EXPECT_TRUE(bk_parser::rename(root_, "a", "b.c"));
    EXPECT_TRUE(bk_parser::rename(root_, "#k", "#l"));
    EXPECT_EQ(text(), " b.c 1 #l 2");
    for (const char* name : {"", "yes", "1", "a.", "a b", "a[3]", "a[]", "a<t>", "#k", "a\n"}) {
        EXPECT_FALSE(bk_parser::rename(root_, "b.c", name)) << name;
    }
    EXPECT_FALSE(bk_parser::rename(root_, "#l", "l"));
    EXPECT_FALSE(bk_parser::rename(root_, "absent", "b"));
    EXPECT_TRUE(bk_parser::rename(*root_.get_entry(0u), "d"));
    EXPECT_EQ(text(), " d 1 #l 2");
    EXPECT_TRUE(log_.is_empty());
}

TEST_F(access_edit, move_puts_an_entry_at_the_end_of_a_group_under_a_name) {
    fill("a { b 1 c 2 } d { e 3 } ");
    const ParserEntry* const moved = bk_parser::find(root_, "a/b");
    EXPECT_TRUE(bk_parser::move(root_, "a/b", "d/x"));
    EXPECT_EQ(text(), " a { c 2 } d { e 3 x 1 }");
    EXPECT_EQ(bk_parser::find(root_, "d/x"), moved);
    EXPECT_TRUE(bk_parser::move(root_, "d", "a/d"));
    EXPECT_EQ(text(), " a { c 2 d { e 3 x 1 } }");
    EXPECT_TRUE(bk_parser::move(root_, "a/d/e", "top"));
    EXPECT_EQ(text(), " a { c 2 d { x 1 } } top 3");
    EXPECT_TRUE(log_.is_empty());
}

TEST_F(access_edit, move_makes_the_groups_on_the_way) {
    fill("a { b 1 } c 5 ");
    EXPECT_TRUE(bk_parser::move(root_, "a/b", "x[\"k\"]/y/b"));
    EXPECT_TRUE(bk_parser::move(root_, "a", "c/a"));
    EXPECT_EQ(text(), " c 5 { a { } } x \"k\" { y { b 1 } }");
    EXPECT_EQ(bk_parser::find(root_, "c")->get_group(1)->get_source_entry(), root_.get_entry("c"));
    EXPECT_TRUE(bk_parser::move(root_, "x/y/b", "x/y/z/b"));
    EXPECT_EQ(text(), " c 5 { a { } } x \"k\" { y { z { b 1 } } }");
}

TEST_F(access_edit, move_in_its_own_group_keeps_the_place) {
    fill("a 1 b 2 g { c 3 d 4 } ");
    EXPECT_TRUE(bk_parser::move(root_, "a", "x"));
    EXPECT_TRUE(bk_parser::move(root_, "g/c", "g/y"));
    EXPECT_EQ(text(), " x 1 b 2 g { y 3 d 4 }");
}

TEST_F(access_edit, move_refuses_what_cannot_be) {
    fill("a { b { c 1 } } #k 2 v 3 ");
    const std::string before = text();
    for (const auto& [from, to] :
         std::initializer_list<std::pair<const char*, const char*>>{{"a", "a/x"},
                                                                    {"a", "a/b/x"},
                                                                    {"a", "a/new/x"},
                                                                    {"a/b", "a/b/c/x"},
                                                                    {"absent", "x"},
                                                                    {"v", "#v"},
                                                                    {"#k", "k"},
                                                                    {"v", "a/*"},
                                                                    {"v", "a/**"},
                                                                    {"v", "a/x<t>"},
                                                                    {"v", "a/x[0]"},
                                                                    {"v", "a/x@0"},
                                                                    {"v", "a/yes"},
                                                                    {"v", "*/no/**/x/y"},
                                                                    {"v", "v/v"},
                                                                    {"v", "a@5/x"},
                                                                    {"v[", "x"},
                                                                    {"v", "x["}}) {
        EXPECT_FALSE(bk_parser::move(root_, from, to)) << from << " to " << to;
        EXPECT_EQ(text(), before) << from << " to " << to;
    }
    EXPECT_TRUE(log_.is_empty());
}

TEST_F(access_edit, an_entry_of_any_kind_is_taken_and_inserted) {
    fill("a 1 #k 2 call(3) b 4 ");
    root_.get_entry("b")->set_as_raw_text(true);
    for (unsigned int position = 0; position < 4; ++position) {
        ParserEntry* const entry = root_.get_entries()[position];
        const std::string before = text();
        std::unique_ptr<ParserEntry> taken = bk_parser::take(root_, position);
        EXPECT_EQ(taken.get(), entry);
        EXPECT_EQ(root_.get_entries().get_count(), 3u);
        EXPECT_EQ(&bk_parser::insert(root_, position, std::move(taken)), entry);
        EXPECT_EQ(text(), before);
    }
    EXPECT_EQ(root_.get_entry_count(), 1u) << "the indexes go by the types that there are";
    EXPECT_EQ(root_.get_keyword("call")->get_int(0), 3);
    EXPECT_EQ(bk_parser::take(root_, 4), nullptr);
    EXPECT_EQ(bk_parser::take(root_, "absent"), nullptr);
    EXPECT_EQ(bk_parser::take(root_, "a["), nullptr);
    EXPECT_EQ(bk_parser::take(root_, "#k")->get_int(0), 2);
    EXPECT_EQ(text(), " a 1 call 3 b 4");
}

TEST_F(access_edit, an_entry_that_is_inserted_behind_the_end_is_the_last) {
    bk_parser::insert(root_, 7, new_entry("a"));
    bk_parser::insert(root_, 0, new_entry("#k", ParserEntry::TYPE_KEYWORD));
    bk_parser::insert(root_, 1, new_entry("b"));
    bk_parser::insert(root_, 0xFFFFFFFFu, new_entry("c"));
    EXPECT_EQ(text(), " #k b a c");
    EXPECT_EQ(root_.get_entry_count(), 3u);
    EXPECT_EQ(root_.get_entry(1u)->get_name(), "a");
    EXPECT_NE(root_.get_keyword("#k"), nullptr);
}

TEST_F(access_edit, an_empty_slot_gives_nothing_to_take) {
    fill("a 1 b 2 ");
    const std::unique_ptr<ParserEntry> detached(root_.get_entry(0u));
    root_.detach_entry(0);
    EXPECT_EQ(bk_parser::take(root_, 0u), nullptr);
    EXPECT_EQ(root_.get_entries().get_count(), 2u);
    root_.remove_entry(0u);
}

TEST_F(access_edit, an_entry_that_another_group_lists_too_is_taken_as_a_copy) {
    fill("a 1 { b 2 } ");
    ParserGroup other("other");
    other = root_;
    std::unique_ptr<ParserEntry> taken = bk_parser::take(root_, 0u);
    ASSERT_NE(taken, nullptr);
    EXPECT_NE(taken.get(), other.get_entry(0u));
    taken->set_int(5, 0);
    EXPECT_EQ(described(other), " a 1 { b 2 }");
    EXPECT_EQ(text(), "");
    taken.reset();
    other.clear();
}

TEST_F(access_edit, taken_entries_outlive_their_tree) {
    std::unique_ptr<ParserEntry> taken;
    {
        ParserGroup root("root");
        root.set_text("a { b \"a text that is longer than eleven\" } ", default_parser_serial_version,
                      nullptr);
        taken = bk_parser::take(root, 0u);
    }
    bk_parser::insert(root_, 0, std::move(taken));
    EXPECT_EQ(text(), " a { b \"a text that is longer than eleven\" }");
}

TEST_F(access_edit, random_edits_agree_with_the_plain_ones) {
    for (unsigned int seed = 0; seed < 200; ++seed) {
        NastyTree random(seed);
        ParserGroup root("root");
        random.fill(root);
        ParserGroup copy(root);
        for (int i = 0; i < 10 && root.get_entries().get_count() > 0; ++i) {
            const unsigned int count = root.get_entries().get_count();
            const unsigned int from = random.below(count);
            const unsigned int to = random.below(count);
            bk_parser::insert(root, to, bk_parser::take(root, from));
            copy.move_entry(from, to);
            ASSERT_EQ(TreeComparison(root, copy).run(), "") << seed;
            ASSERT_EQ(root.get_entry_count(), copy.get_entry_count());
        }
    }
}

TEST_F(access_edit, a_group_as_text_is_laid_out_an_entry_a_line) {
    fill("a 1 b { c \"x\" } ");
    EXPECT_EQ(bk_parser::to_text(root_), "a 1\nb {\n    c \"x\"\n}\n");
    ParserGroup again("root");
    ASSERT_TRUE(again.set_text(core(bk_parser::to_text(root_)), default_parser_serial_version, nullptr));
    EXPECT_EQ(TreeComparison(root_, again).run(), "");
    EXPECT_EQ(bk_parser::to_text(ParserGroup("empty")), "");
}
