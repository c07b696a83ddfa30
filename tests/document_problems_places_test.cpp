#include "tests/support/told_problems.h"

namespace {

const std::string skips = "everything up to the next name is skipped";

const ToldRow rows[] = {
    {"an_equals_sign_stands_behind_a_name",
     "a 1 = 2, 3\nb 4\n",
     {{"wrongly-placed", true, 2, 5, 1,
       "unexpected '=': it may only stand between a name and its first value; " + skips}}},
    {"a_comma_stands_between_values",
     "a , 1\nb 4\n",
     {{"wrongly-placed", true, 2, 3, 1, "unexpected ',': it may only stand between two values; " + skips}}},
    {"a_comma_behind_a_comma_is_a_mistake",
     "a 1, , 2\nb 4\n",
     {{"wrongly-placed", true, 2, 6, 1, "unexpected ',': it may only stand between two values; " + skips}}},
    {"values_without_entry_are_one_problem",
     "g { a 1 } 5 6 7\nb 4\n",
     {{"value-without-entry", true, 2, 11, 1,
       "'5' belongs to no entry, and is skipped; 2 more words are skipped, too"}}},
    {"a_group_has_a_name",
     "a 1\n\ng { b 1 } { c 2\n",
     {{"group-without-entry", true, 4, 11, 1,
       "'{' has no name before it: what it holds goes to the group around it"}}},
    {"a_brace_too_many_ends_the_document",
     "a 1\n}\nb 2\n",
     {{"text-after-end", true, 3, 1, 1, "'}' closes nothing, and the text after it is not read"}}},
    {"a_brace_too_many_at_the_end_loses_nothing",
     "a 1\n}\n",
     {{"text-after-end", true, 3, 1, 1, "'}' closes nothing"}}},
    {"a_brace_too_many_may_come_of_one_that_opened_nothing",
     "g { b 1 } { c 2 }\nd 1\n",
     {{"group-without-entry", true, 2, 11, 1,
       "'{' has no name before it: what it holds goes to the group around it"},
      {"text-after-end", true, 2, 17, 1,
       "'}' closes nothing, and the text after it is not read: the '{' of line 2 opened no group"}}},
    {"a_group_is_left_open",
     "a {\n b 1\n",
     {{"group-left-open", true, 2, 3, 1, "this group is not closed: the document ends inside it"}}},
    {"groups_left_open_are_one_problem",
     "a {\n b {\n  c 1\n",
     {{"group-left-open", true, 2, 3, 1,
       "this group is not closed: the document ends inside 2 groups, which begin at lines 2, 3"}}},
    {"an_argument_list_follows_a_name",
     "a 1 (2)\nb 1\n",
     {{"bad-arguments", true, 2, 5, 1,
       "'(' follows a value: an argument list must follow the name directly, and nothing may follow it; 2 "
       "more words are skipped, too"}}},
    {"a_keyword_takes_no_arguments",
     "#k (1)\nb 1\n",
     {{"bad-arguments", true, 2, 4, 1,
       "'(' follows a keyword, which takes no arguments; 2 more words are skipped, too"}}},
    {"a_parenthesis_closes_an_argument_list",
     "a 1)\nb 1\n",
     {{"bad-arguments", true, 2, 4, 1, "')' closes no argument list"}}},
    {"a_value_behind_an_argument_list_belongs_to_nothing",
     "f(1, 2) 3\nb 1\n",
     {{"value-without-entry", true, 2, 9, 1, "'3' belongs to no entry, and is skipped"}}},
};

class DocumentProblemsOfPlaces : public testing::TestWithParam<ToldRow> {};

TEST_P(DocumentProblemsOfPlaces, are_told_by_mistake) {
    EXPECT_EQ(told_of(GetParam().text), GetParam().told);
}

INSTANTIATE_TEST_SUITE_P(rows, DocumentProblemsOfPlaces, testing::ValuesIn(rows), name_of_row);

TEST(document_problems_places, groups_that_nest_too_deeply_are_told) {
    bk_parser::LoadOptions options;
    options.limits.nesting_depth = 2;
    const std::vector<ToldProblem> told = {
        {"nested-too-deeply", true, 1, 11, 1,
         "groups nest deeper than 2: ParserLimits::nesting_depth; the text from here on is not read"}};
    EXPECT_EQ(told_of(bk_parser::parse("a { b { c { d 1 } } }", options)), told);
}

} // namespace
