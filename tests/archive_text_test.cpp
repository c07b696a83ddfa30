#include "parser/parser_file.h"
#include "tests/support/archive_form.h"
#include "tests/support/random_tree.h"
#include "tests/support/recording_log.h"
#include "tests/support/recording_progress.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

namespace {

using namespace archive_form;

/// The group that an archive gives, on one line.
std::string restored(const ParserArchive& archive) {
    ParserGroup group("g");
    ParserImpl::group_set_archive(group, archive, nullptr);
    return written(group);
}

/// Archives the tree of a text, and expects the same tree back.
void expect_to_come_back(std::string_view text) {
    const RecordingLog log;
    ParserGroup group("g");
    group.set_text(core(text), CoreVersion(1.2), nullptr);
    ParserArchive archive;
    ParserImpl::archive_group(group, archive, false, nullptr);
    ParserGroup again("g");
    ParserImpl::group_set_archive(again, archive, nullptr);
    EXPECT_EQ(tree_difference(group, again), "") << text;
    EXPECT_TRUE(log.is_empty()) << text;
}

} // namespace

TEST(archive_text, the_words_are_parsed_in_the_order_of_their_indices) {
    const RecordingLog log;
    EXPECT_EQ(restored(archive({"2", "a", "1", "b"}, {1, 2, 3, 0, 2})), "g { a 1 b 2 1 }");
    EXPECT_TRUE(log.is_empty());
}

TEST(archive_text, each_word_is_followed_by_one_blank) {
    RecordingLog log;
    EXPECT_EQ(restored(archive({"a", "b"}, {0, 1, 1})), "g { a <empty> }");
    EXPECT_EQ(log.take(),
              (std::vector<LoggedMessage>{{2, "ParserGroup.set_text: (1:3) Entry 'b' has no value.\n"},
                                          {2, "ParserGroup.set_text: (1:5) Entry 'b' has no value.\n"}}));
}

TEST(archive_text, entries_are_appended_to_those_of_the_group) {
    ParserGroup group("g");
    group.add_entry("old", 0, 0)->add_int(0);
    ParserImpl::group_set_archive(group, archive({"a", "1"}, {0, 1}), nullptr);
    ParserImpl::group_set_archive(group, archive({"a", "1"}, {0, 1}), nullptr);
    EXPECT_EQ(written(group), "g { old 0 a 1 a 1 }");
}

TEST(archive_text, an_empty_archive_changes_nothing) {
    const RecordingLog log;
    EXPECT_EQ(restored(ParserArchive()), "g { }");
    EXPECT_EQ(restored(archive({"a", "1"}, {})), "g { }");
    EXPECT_TRUE(log.is_empty());
}

TEST(archive_text, indices_that_name_no_string_are_skipped) {
    const RecordingLog log;
    EXPECT_EQ(restored(archive({"a", "1"}, {2, 0, 0xFFFFFFFF, 1, 3, 0x80000000})), "g { a 1 }");
    EXPECT_EQ(restored(archive({}, {0, 1, 2})), "g { }");
    EXPECT_TRUE(log.is_empty());
}

TEST(archive_text, the_text_is_parsed_as_that_of_the_default_version) {
    const ParserArchive document = archive({"a", "\"x\\ty\""}, {0, 1});
    EXPECT_EQ(restored(document), "g { a \"x\\ty\" }");
    default_parser_serial_version = CoreVersion(1.0);
    const std::string old = restored(document);
    default_parser_serial_version = CoreVersion(1.2);
    EXPECT_EQ(old, "g { a \"x\\\\ty\" }");
}

TEST(archive_text, there_is_no_preprocessing) {
    EXPECT_EQ(restored(archive({"a", "\"// x\"", "#Brellwick_Serial_Version", "1.0"}, {0, 1, 2, 3})),
              "g { a \"// x\" #Brellwick_Serial_Version 1.0 }");
}

TEST(archive_text, a_word_may_hold_several_words_of_the_syntax) {
    EXPECT_EQ(restored(archive({"a { b 1", "}"}, {0, 1})), "g { a { b 1 } }");
}

TEST(archive_text, progress_gets_no_calls) {
    RecordingProgress progress;
    ParserGroup group("g");
    ParserImpl::group_set_archive(group, archive({"a", "1"}, {0, 1}), &progress);
    EXPECT_TRUE(progress.calls.empty());
    EXPECT_EQ(group.get_entry_count(), 1u);
}

TEST(archive_text, every_kind_of_entry_comes_back) {
    expect_to_come_back("a 1 2.50 yes \"x y\" 0x01FF00010000 b <empty> #k 1 #l <empty> c 3 ");
    expect_to_come_back("f(1, \"x, y\", no) g() h(2) ");
    expect_to_come_back("a<t> 1 b[3] 2 c[] 3 d<t.u> <empty> e<t[2]> 5 ");
    expect_to_come_back("a { b { c 1 } d { } } e 1 { f 2 } ");
    expect_to_come_back("a \"\" \"\\\"\" \"\\n\\t\\r\\'\" \"{ } ( ) , : =\" ");
}

TEST(archive_text, strings_with_blanks_and_line_ends_come_back) {
    ParserGroup group("g");
    group.add_entry("a", 0, 0)->add_string(" two  blanks \n and lines \t");
    ParserArchive document;
    ParserImpl::archive_group(group, document, false, nullptr);
    EXPECT_EQ(document.strings.get_count(), 2u);
    ParserGroup again("g");
    ParserImpl::group_set_archive(again, document, nullptr);
    EXPECT_EQ(tree_difference(group, again), "");
}

TEST(archive_text, a_group_archived_with_braces_needs_an_entry_for_them) {
    ParserArchive document;
    document += "outer";
    ParserGroup nameless("");
    nameless.add_entry("a", 0, 0)->add_int(1);
    ParserImpl::archive_group(nameless, document, true, nullptr);
    EXPECT_EQ(restored(document), "g { outer { a 1 } }");
}

TEST(archive_text, random_documents_come_back) {
    const RecordingLog log;
    for (unsigned int seed = 0; seed < 300; ++seed) {
        ParserGroup group("g");
        RandomTree(seed, RandomTree::text_form).fill(group);
        ParserArchive document;
        ParserImpl::archive_group(group, document, false, nullptr);
        EXPECT_EQ(restored(document), written(group)) << seed;
    }
    EXPECT_TRUE(log.is_empty());
}
