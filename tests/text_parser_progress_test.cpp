#include "tests/support/parsed_text.h"
#include "tests/support/recording_progress.h"

#include <gtest/gtest.h>

namespace {

using Values = std::vector<float>;

Values progress_of(std::string_view text) {
    RecordingLog log;
    RecordingProgress progress;
    ParserGroup group("g");
    group.set_text(CoreString(text), CoreVersion(1.2), &progress);
    EXPECT_EQ(progress.calls.size(), progress.values.size()) << "a call other than set_value";
    return progress.values;
}

} // namespace

TEST(text_parser_progress, the_bar_gets_the_fraction_of_the_text_before_each_word) {
    EXPECT_EQ(progress_of("a 1 b 25"), (Values{0.0f, 2.0f / 8.0f, 4.0f / 8.0f, 6.0f / 8.0f}));
}

TEST(text_parser_progress, a_word_before_a_delimiter_leaves_it_for_the_next) {
    EXPECT_EQ(progress_of("a=1"), (Values{0.0f, 1.0f / 3.0f, 2.0f / 3.0f}));
}

TEST(text_parser_progress, the_fraction_is_a_quotient_of_two_floats) {
    EXPECT_EQ(progress_of("aaa 1 2"), (Values{0.0f, 4.0f / 7.0f, 6.0f / 7.0f}));
}

TEST(text_parser_progress, words_inside_groups_are_not_counted) {
    EXPECT_EQ(progress_of("a { b 1 c { d 2 } } e 3 "),
              (Values{0.0f, 2.0f / 24.0f, 19.0f / 24.0f, 22.0f / 24.0f}));
}

TEST(text_parser_progress, white_space_at_the_end_is_a_word_more) {
    EXPECT_EQ(progress_of("a 1   "), (Values{0.0f, 2.0f / 6.0f, 4.0f / 6.0f}));
    EXPECT_EQ(progress_of("  "), (Values{0.0f}));
}

TEST(text_parser_progress, an_empty_text_makes_no_call) {
    EXPECT_EQ(progress_of(""), Values{});
}

TEST(text_parser_progress, nothing_comes_after_a_closing_brace_at_the_top) {
    EXPECT_EQ(progress_of("a 1 } b 2 "), (Values{0.0f, 2.0f / 10.0f, 4.0f / 10.0f}));
}

TEST(text_parser_progress, faults_do_not_change_it) {
    EXPECT_EQ(progress_of("1 : , 2 "), (Values{0.0f, 2.0f / 8.0f, 3.0f / 8.0f, 5.0f / 8.0f}));
}
