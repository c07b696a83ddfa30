#include "tests/support/archive_form.h"
#include "tests/support/recording_log.h"
#include "tests/support/recording_progress.h"

#include <gtest/gtest.h>

namespace {

using namespace archive_form;
using Calls = std::vector<std::string>;

/// The group that parsing a text gives.
std::unique_ptr<ParserGroup> group_of(std::string_view text, const char* name = "g") {
    auto group = std::make_unique<ParserGroup>(name);
    const RecordingLog log;
    group->set_text(core(text), CoreVersion(1.2), nullptr);
    EXPECT_TRUE(log.is_empty());
    return group;
}

Strings words_in(ParserGroup& group, bool braces = false) {
    ParserArchive archive;
    const RecordingLog log;
    ParserImpl::archive_group(group, archive, braces, nullptr);
    EXPECT_TRUE(log.is_empty());
    return words_of(archive);
}
Strings words_in(std::string_view text) {
    return words_in(*group_of(text));
}
Strings words_in(ParserEntry& entry) {
    ParserArchive archive;
    ParserImpl::archive_entry(entry, archive, nullptr);
    return words_of(archive);
}
Strings words_in(ParserValue&& value) {
    ParserArchive archive;
    ParserImpl::archive_value(value, archive, nullptr);
    return words_of(archive);
}

} // namespace

TEST(archive_words, a_repeated_word_is_stored_once) {
    ParserArchive archive;
    ParserImpl::archive_group(*group_of("a 1 2 b 1 "), archive, false, nullptr);
    EXPECT_EQ(strings_of(archive), (Strings{"a", "1", "2", "b"}));
    EXPECT_EQ(indices_of(archive), (Indices{0, 1, 2, 3, 1}));
}

TEST(archive_words, an_empty_group_is_no_words_or_its_braces) {
    ParserGroup named("g");
    ParserGroup nameless("");
    EXPECT_EQ(words_in(named), Strings{});
    EXPECT_EQ(words_in(named, true), (Strings{"g", "{", "}"}));
    EXPECT_EQ(words_in(nameless, true), (Strings{"{", "}"}));
}

TEST(archive_words, braces_stand_around_the_entries) {
    EXPECT_EQ(words_in(*group_of("a 1 "), true), (Strings{"g", "{", "a", "1", "}"}));
    EXPECT_EQ(words_in(*group_of("a 1 ", ""), true), (Strings{"{", "a", "1", "}"}));
}

TEST(archive_words, a_group_value_has_braces) {
    EXPECT_EQ(words_in("a { b 1 c { } } d 2 "), (Strings{"a", "{", "b", "1", "c", "{", "}", "}", "d", "2"}));
}

TEST(archive_words, a_named_group_value_has_its_name_before_its_brace) {
    ParserGroup group("g");
    group.add_group(new ParserGroup("inner"))->add_entry("b", 0, 0)->add_int(1);
    EXPECT_EQ(words_in(group), (Strings{"inner", "inner", "{", "b", "1", "}"}));
}

TEST(archive_words, an_entry_without_values_is_its_head_and_the_empty_tag) {
    EXPECT_EQ(words_in("a <empty> b 1 "), (Strings{"a", "<empty>", "b", "1"}));
    EXPECT_EQ(words_in("#k <empty> b 1 "), (Strings{"#k", "<empty>", "b", "1"}));
}

TEST(archive_words, a_call_has_parentheses_and_commas) {
    EXPECT_EQ(words_in("f(1, 2 \"x\") g(3) h() "),
              (Strings{"f", "(", "1", ",", "2", ",", "\"x\"", ")", "g", "(", "3", ")", "h", "(", ")"}));
}

TEST(archive_words, a_call_may_hold_groups) {
    ParserEntry entry("f", ParserEntry::TYPE_FUNCTION_CALL, 0, 0);
    entry.add_group(nullptr)->add_entry("a", 0, 0)->add_int(1);
    entry.add_int(2);
    EXPECT_EQ(words_in(entry), (Strings{"f", "(", "{", "a", "1", "}", ",", "2", ")"}));
}

TEST(archive_words, a_template_and_an_array_mark_belong_to_the_head) {
    EXPECT_EQ(
        words_in("a<t> 1 b[3] 2 c[] 3 d[0] 4 e<t.u> <empty> f<t>() "),
        (Strings{"a<t>", "1", "b[3]", "2", "c[]", "3", "d[]", "4", "e<t.u>", "<empty>", "f<t>", "(", ")"}));
    ParserEntry both("a", ParserEntry::TYPE_ENTRY, 0, 0);
    both.set_template("t");
    both.set_array(true, 4294967294u);
    EXPECT_EQ(words_in(both), (Strings{"a<t>[4294967294]", "<empty>"}));
}

TEST(archive_words, a_keyword_is_an_entry_like_any_other) {
    EXPECT_EQ(words_in("#k 1 2 "), (Strings{"#k", "1", "2"}));
}

TEST(archive_words, a_raw_text_is_archived_by_its_name_and_quoted) {
    ParserEntry raw("raw", ParserEntry::TYPE_ENTRY, 0, 0);
    raw.add_string("a 1");
    raw.add_string("b");
    raw.set_as_raw_text(true);
    EXPECT_EQ(words_in(raw), (Strings{"raw", "\"a 1\"", "\"b\""}));
}

TEST(archive_words, a_value_is_one_word_as_it_is_written_in_one_line) {
    std::string bytes = "\x01\xFF";
    EXPECT_EQ(words_in(ParserValue(true)), Strings{"yes"});
    EXPECT_EQ(words_in(ParserValue('A')), Strings{"65"});
    EXPECT_EQ(words_in(ParserValue(-5)), Strings{"-5"});
    EXPECT_EQ(words_in(ParserValue(1.5)), Strings{"1.5"});
    EXPECT_EQ(words_in(ParserValue(core("x y\n\"z\""))), Strings{R"("x y\n\"z\"")"});
    EXPECT_EQ(words_in(ParserValue(CoreString())), Strings{"\"\""});
    EXPECT_EQ(words_in(ParserValue(bytes.data(), 2)), Strings{"0x01FF00010000"});
    EXPECT_EQ(words_in(ParserValue(ParserValue::TYPE_WORD, "<empty>")), Strings{"<empty>"});
    EXPECT_EQ(words_in(ParserValue(ParserValue::TYPE_WORD, "")), Strings{""});
}

TEST(archive_words, a_spelling_that_was_read_is_kept) {
    EXPECT_EQ(words_in("a 1.50 007 "), (Strings{"a", "1.50", "007"}));
}

TEST(archive_words, a_group_as_a_value_is_archived_with_braces) {
    EXPECT_EQ(words_in(ParserValue(group_of("a 1 ").release())), (Strings{"g", "{", "a", "1", "}"}));
}

TEST(archive_words, words_are_added_to_those_of_the_archive) {
    ParserArchive archive;
    const auto group = group_of("a 1 ");
    ParserImpl::archive_group(*group, archive, false, nullptr);
    ParserImpl::archive_group(*group, archive, true, nullptr);
    EXPECT_EQ(strings_of(archive), (Strings{"a", "1", "g", "{", "}"}));
    EXPECT_EQ(indices_of(archive), (Indices{0, 1, 2, 3, 0, 1, 4}));
}

TEST(archive_words, the_group_is_as_it_was_afterwards) {
    const auto group = group_of("a 1 { b 2 } f(3) ");
    words_in(*group);
    EXPECT_EQ(written(*group), "g { a 1 { b 2 } f(3) }");
}

TEST(archive_progress, each_entry_is_a_task_of_its_share) {
    RecordingProgress progress;
    ParserArchive archive;
    ParserImpl::archive_group(*group_of("a 1 b 2 c 3 d 4 "), archive, false, &progress);
    const std::string begin = "begin_task(\"\", 0.25, false)";
    const std::string end = "end_task()";
    EXPECT_EQ(progress.calls, (Calls{begin, end, begin, end, begin, end, begin, end}));
}

TEST(archive_progress, tasks_of_groups_inside_are_nested) {
    RecordingProgress progress;
    ParserArchive archive;
    ParserImpl::archive_group(*group_of("a 1 b { c { d 1 } e 2 } "), archive, true, &progress);
    const std::string half = "begin_task(\"\", 0.5, false)";
    const std::string whole = "begin_task(\"\", 1, false)";
    const std::string end = "end_task()";
    EXPECT_EQ(progress.calls, (Calls{half, end, half, half, whole, end, end, half, end, end}));
}

TEST(archive_progress, an_empty_group_makes_no_calls) {
    RecordingProgress progress;
    ParserArchive archive;
    ParserGroup group("g");
    ParserImpl::archive_group(group, archive, true, &progress);
    EXPECT_EQ(progress.calls, Calls{});
}

TEST(archive_progress, an_entry_and_a_value_make_the_calls_of_the_groups_in_them) {
    RecordingProgress progress;
    ParserArchive archive;
    const auto group = group_of("a 1 b { c 2 } ");
    ParserImpl::archive_entry(*group->get_entry("a"), archive, &progress);
    ParserValue number(1);
    ParserImpl::archive_value(number, archive, &progress);
    EXPECT_EQ(progress.calls, Calls{});
    ParserImpl::archive_entry(*group->get_entry("b"), archive, &progress);
    EXPECT_EQ(progress.calls, (Calls{"begin_task(\"\", 1, false)", "end_task()"}));
}
