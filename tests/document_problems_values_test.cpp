#include "tests/support/told_problems.h"

namespace {

const ToldRow rows[] = {
    {"numbers_that_say_what_they_hold_give_none",
     "a 0 -1 +5 2147483647 -2147483648 000000000012\nb 1.5 -.5 .5 1. 1e5 1e-5 1.5e+10 1e308 0.0 "
     "0e999 "
     "12345678901234567890.5 3.1415926535897932384626433832795028841971\n",
     {}},
    {"strings_that_say_what_they_hold_give_none",
     R"(a "" "x" "it's" "a\nb\t\r" "\"quoted\"" "C:\\dir\\x" "a\/b \'c\'")"
     "\n",
     {}},
    {"an_upper_case_exponent_is_ignored",
     "a 1E5\n",
     {{"exponent-ignored", false, 2, 3, 3, "'1E5' is read as 1: write the exponent with a small e"}}},
    {"an_int_has_32_bits",
     "a 99999999999\n",
     {{"number-out-of-range", false, 2, 3, 11,
       "'99999999999' is read as 2147483647: an int has 32 bits; write a point to make it a double"}}},
    {"an_int_just_beyond_is_told",
     "a 2147483648 -2147483649 +2147483648\n",
     {{"number-out-of-range", false, 2, 3, 10,
       "'2147483648' is read as 2147483647: an int has 32 bits; write a point to make it a double"},
      {"number-out-of-range", false, 2, 14, 11,
       "'-2147483649' is read as -2147483648: an int has 32 bits; write a point to make it a double"},
      {"number-out-of-range", false, 2, 26, 11,
       "'+2147483648' is read as 2147483647: an int has 32 bits; write a point to make it a double"}}},
    {"a_double_is_finite",
     "a 1e999\n",
     {{"number-out-of-range", false, 2, 3, 5,
       "'1e999' is read as 1.797e308, the largest double: it is out of range for a double"}}},
    {"a_double_is_no_word",
     "a +nan -inf +inf\n",
     {{"number-out-of-range", false, 2, 3, 4,
       "'+nan' is read as -1.797e308, the lowest double: numbers are finite"},
      {"number-out-of-range", false, 2, 8, 4,
       "'-inf' is read as -1.797e308, the lowest double: numbers are finite"},
      {"number-out-of-range", false, 2, 13, 4,
       "'+inf' is read as 1.797e308, the largest double: numbers are finite"}}},
    {"a_double_is_not_lost",
     "a 1e-999\n",
     {{"number-out-of-range", false, 2, 3, 6, "'1e-999' is read as 0: it is too small for a double"}}},
    {"a_semicolon_behind_a_number_is_ignored",
     "a 60.0;\nb 7;\n",
     {{"text-after-number", false, 2, 7, 1, "'60.0;' is read as 60.0, and ';' is ignored"},
      {"text-after-number", false, 3, 4, 1, "'7;' is read as 7, and ';' is ignored"}}},
    {"a_number_has_one_point",
     "a 1.2.3\n",
     {{"text-after-number", false, 2, 6, 2, "'1.2.3' is read as 1.2, and '.3' is ignored"}}},
    {"letters_behind_a_number_are_ignored",
     "a 12ab 3m\n",
     {{"text-after-number", false, 2, 5, 2, "'12ab' is read as 12, and 'ab' is ignored"},
      {"text-after-number", false, 2, 9, 1, "'3m' is read as 3, and 'm' is ignored"}}},
    {"a_date_is_no_number",
     "a 2014-08-31\n",
     {{"text-after-number", false, 2, 7, 6, "'2014-08-31' is read as 2014, and '-08-31' is ignored"}}},
    {"a_long_number_is_looked_at_to_its_end",
     "a 1.23456789012345678x 12345678.9012345678901234x 1\n",
     {{"text-after-number", false, 2, 22, 1,
       "'1.23456789012345678x' is read as 1.23456789012345678, and 'x' is ignored"},
      {"text-after-number", false, 2, 49, 1,
       "'12345678.9012345678901234x' is read as 12345678.9012345678901234, and 'x' is ignored"}}},
    {"a_hexadecimal_number_is_none",
     "a 0x1F\n",
     {{"binary-data-empty", false, 2, 3, 4,
       "'0x1F' holds no bytes: its last eight digits are a checksum; numbers are decimal"}}},
    {"binary_data_without_bytes_is_written_as_its_checksum", "a 0x00000000\n", {}},
    {"binary_data_has_two_digits_a_byte",
     "a 0x01FF0001000\n",
     {{"binary-data-empty", false, 2, 3, 13, "'0x01FF0001000' holds no bytes: its number of digits is odd"}}},
    {"binary_data_is_in_upper_case",
     "a 0x01ff00010000\n",
     {{"binary-data-digits", false, 2, 7, 1,
       "'f' is not a digit of binary data, and its byte is read as 0: use upper case"}}},
    {"binary_data_is_hexadecimal",
     "a 0x01GG00010000\n",
     {{"binary-data-digits", false, 2, 7, 1,
       "'G' is not a digit of binary data, and its byte is read as 0"}}},
    {"binary_data_fits_its_checksum",
     "good 0x01FF00010000\na 0x01FE00010000\n",
     {{"binary-data-checksum", false, 3, 9, 8,
       "the checksum of the bytes is FF000000, not 00010000: the data is damaged, or was edited"}}},
    {"a_backslash_is_not_dropped_without_a_word",
     R"(a "C:\data\sub")"
     "\n",
     {{"unknown-escape", false, 2, 6, 2, R"('\d' is read as 'd': a backslash is spelled '\\')"},
      {"unknown-escape", false, 2, 11, 2, R"('\s' is read as 's': a backslash is spelled '\\')"}}},
    {"a_backslash_at_the_end_of_a_string_is_dropped",
     "a \"C:\\\"\n",
     {{"unknown-escape", false, 2, 6, 1,
       "a backslash at the end of a string is dropped: it is spelled '\\\\'"}}},
    {"a_string_that_ends_in_a_backslash_runs_on",
     R"(a "C:\\" "x")"
     "\n",
     {{"quote-inside-string", true, 2, 8, 1,
       "the string goes on after this quote, because a backslash is before it: put another value first, or "
       "let the "
       "string end otherwise"}}},
    {"two_strings_without_a_blank_are_one",
     "a \"x\"\"y\"\n",
     {{"quote-inside-string", true, 2, 5, 1,
       "the string goes on after this quote: put a blank between two strings"}}},
    {"an_array_has_as_many_values",
     "a[3] 1 2\nb[2] 1 2\nc[] 1\nd[1] 1\ng { e[2] \"x\" }\n",
     {{"array-count", false, 2, 1, 4, "'a[3]' has 2 values"},
      {"array-count", false, 6, 5, 4, "'e[2]' has 1 value"}}},
    {"an_array_at_the_end_is_counted", "a[3] 1 2", {{"array-count", false, 2, 1, 4, "'a[3]' has 2 values"}}},
    {"an_array_in_a_group_or_in_binary_data_is_not_counted", "a[3] { b 1 }\nc[2] 0x01FF00010000\n", {}},
    {"an_array_count_is_digits",
     "a[3x] 1 2 3\n",
     {{"array-count", false, 2, 1, 5, "'a[3x]' declares 3 values: what follows the number is ignored"}}},
    {"an_argument_list_is_closed",
     "f(1, \"a)\"\ng(2)\nh 1\n",
     {{"arguments-left-open", false, 2, 1, 1, "the argument list of 'f' is not closed"}}},
};

class DocumentProblemsOfValues : public testing::TestWithParam<ToldRow> {};

TEST_P(DocumentProblemsOfValues, are_told_at_the_value) {
    EXPECT_EQ(told_of(GetParam().text), GetParam().told);
}

INSTANTIATE_TEST_SUITE_P(rows, DocumentProblemsOfValues, testing::ValuesIn(rows), name_of_row);

TEST(document_problems_values, escapes_before_their_version_are_told_once) {
    const std::vector<ToldProblem> told = {{"escape-without-version", false, 1, 8, 2,
                                            "before version 1.1 a backslash stands for itself, here and in 1 "
                                            "other string: begin the document with "
                                            "#Brellwick_Serial_Version 1.2"}};
    EXPECT_EQ(told_of(bk_parser::parse(R"(a "say \"hi\"" "\"x" "C:\dir")"
                                       "\nb 1\n")),
              told);
}

} // namespace
