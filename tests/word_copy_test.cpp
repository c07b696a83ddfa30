#include "parser/parser_file.h"
#include "parser/parser_word.h"

#include "tests/support/plain_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

class word_copy : public testing::Test {
protected:
    CoreString text{"map<key>"};
    std::unique_ptr<ParserWord> source = std::make_unique<ParserWord>(text, true, CoreVersion(1.2));

    void SetUp() override {
        source->set_line(3);
        source->set_column(7);
        ASSERT_TRUE(source->is_identifier());
    }

    static void expect_same_word(const ParserWord& word) {
        EXPECT_EQ(word.get_type(), ParserWord::TYPE_IDENTIFIER);
        EXPECT_EQ(word.get_line(), 3u);
        EXPECT_EQ(word.get_column(), 7u);
        EXPECT_EQ(word.get_length(), 3u);
        EXPECT_EQ(plain(word.get_string()), "map");
        ASSERT_TRUE(word.has_template());
        EXPECT_EQ(plain(word.get_template()->get_string()), "key");
    }
};

TEST_F(word_copy, a_copy_shares_the_template_of_its_source) {
    const ParserWord copy(*source);
    expect_same_word(copy);
    EXPECT_EQ(copy.get_template(), source->get_template());
}

TEST_F(word_copy, a_shared_template_outlives_the_source) {
    const ParserWord copy(*source);
    source.reset();
    expect_same_word(copy);
}

TEST_F(word_copy, a_shared_template_outlives_the_copy) {
    { const ParserWord copy(*source); }
    expect_same_word(*source);
}

TEST_F(word_copy, assignment_copies_the_template) {
    ParserWord word;
    word = *source;
    expect_same_word(word);
    EXPECT_NE(word.get_template(), source->get_template());
    source.reset();
    expect_same_word(word);
}

TEST_F(word_copy, assignment_copies_templates_of_templates) {
    const CoreString nested("a<b<c[2]>>");
    ParserWord word;
    {
        ParserWord deep(nested, true, CoreVersion(1.2));
        ASSERT_TRUE(deep.is_identifier());
        word = deep;
        EXPECT_NE(word.get_template()->get_template(), deep.get_template()->get_template());
    }
    EXPECT_EQ(plain(word.get_string()), "a");
    EXPECT_EQ(plain(word.get_template()->get_string()), "b");
    EXPECT_EQ(plain(word.get_template()->get_template()->get_string()), "c");
    EXPECT_EQ(word.get_template()->get_template()->get_array_count(), 2u);
}

TEST_F(word_copy, assignment_drops_the_template_that_was_there) {
    const CoreString other("list[4]");
    ParserWord array(other, true, CoreVersion(1.2));
    ASSERT_TRUE(array.is_identifier());
    *source = array;
    EXPECT_FALSE(source->has_template());
    EXPECT_EQ(source->get_array_count(), 4u);
    EXPECT_EQ(plain(source->get_string()), "list");
}

TEST_F(word_copy, assignment_to_a_copy_leaves_the_source_its_template) {
    ParserWord copy(*source);
    copy = ParserWord();
    EXPECT_FALSE(copy.has_template());
    EXPECT_TRUE(copy.is_empty());
    expect_same_word(*source);
}

TEST_F(word_copy, assigning_a_word_to_itself_keeps_it) {
    ParserWord& same = *source;
    *source = same;
    expect_same_word(*source);
}

TEST_F(word_copy, a_word_becomes_its_own_template) {
    *source = *source->get_template();
    EXPECT_EQ(plain(source->get_string()), "key");
    EXPECT_EQ(source->get_type(), ParserWord::TYPE_IDENTIFIER);
    EXPECT_FALSE(source->has_template());
}

TEST_F(word_copy, copying_and_assigning_take_the_string_rule_along) {
    const CoreString quoted("\"a\\nb\"");
    const ParserWord older(quoted, true, CoreVersion(1.0));
    const ParserWord copy(older);
    EXPECT_EQ(plain(copy.get_string()), "\"a\\nb\"");
    ParserWord assigned;
    assigned = older;
    EXPECT_EQ(plain(assigned.get_string()), "\"a\\nb\"");
    ParserWord newer_over_older(older);
    newer_over_older = ParserWord(quoted, true, CoreVersion(1.2));
    EXPECT_EQ(plain(newer_over_older.get_string()), "\"a\nb\"");
}

TEST_F(word_copy, copying_an_unclassified_word_leaves_both_open) {
    const CoreString number("12");
    const ParserWord open(number, true, CoreVersion(1.2));
    const ParserWord copy(open);
    EXPECT_TRUE(copy.is_int());
    EXPECT_EQ(open.get_type(), ParserWord::TYPE_UNKNOWN);
    EXPECT_TRUE(open.is_double());
}

TEST_F(word_copy, a_copy_grows_on_its_own) {
    const CoreString letters("abc");
    ParserWord first(letters, false, CoreVersion(1.2));
    first += 0u;
    ParserWord second(first);
    second += 1u;
    EXPECT_EQ(plain(first.get_string()), "a");
    EXPECT_EQ(plain(second.get_string()), "ab");
}

class word_depth : public testing::Test {
protected:
    static constexpr unsigned int depth = 200000;

    static CoreString nested(const std::string& innermost) {
        std::string text;
        for (unsigned int i = 0; i < depth; ++i) {
            text += "a<";
        }
        return CoreString(std::string_view(text + innermost + std::string(depth, '>')));
    }

    static unsigned int levels(const ParserWord& word) {
        unsigned int count = 0;
        for (const ParserWord* level = word.get_template(); level != nullptr; level = level->get_template()) {
            ++count;
        }
        return count;
    }
};

TEST_F(word_depth, a_template_nested_two_hundred_thousand_deep_is_classified_copied_and_destroyed) {
    const CoreString text = nested("z[5]");
    auto word = std::make_unique<ParserWord>(text, true, CoreVersion(1.2));
    ASSERT_TRUE(word->is_identifier());
    EXPECT_EQ(levels(*word), depth);
    EXPECT_EQ(plain(word->get_string()), "a");
    const ParserWord* innermost = word->get_template();
    while (innermost->has_template()) {
        innermost = innermost->get_template();
    }
    EXPECT_EQ(plain(innermost->get_string()), "z");
    EXPECT_EQ(innermost->get_array_count(), 5u);

    ParserWord assigned;
    assigned = *word;
    const ParserWord shared(*word);
    word.reset();
    EXPECT_EQ(levels(assigned), depth);
    EXPECT_EQ(levels(shared), depth);
    assigned = ParserWord();
    EXPECT_EQ(levels(shared), depth);
}

TEST_F(word_depth, a_fault_at_the_bottom_makes_the_whole_word_invalid) {
    for (const char* innermost : {"1", "yes", "", "b[x]", "b.", "b<"}) {
        const CoreString text = nested(innermost);
        const ParserWord word(text, true, CoreVersion(1.2));
        EXPECT_FALSE(word.is_identifier()) << innermost;
        EXPECT_EQ(word.get_type(), ParserWord::TYPE_INVALID) << innermost;
        EXPECT_FALSE(word.has_template()) << innermost;
    }
}

} // namespace
