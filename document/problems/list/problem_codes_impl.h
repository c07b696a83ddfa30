#pragma once

#include "document/problem.h"

#include <string_view>

namespace bk_parser {

/// The codes of problems. They do not change between versions.
namespace codes {
// Files and directives.
inline constexpr std::string_view unreadable = "unreadable";
inline constexpr std::string_view not_a_document = "not-a-document";
inline constexpr std::string_view too_large = "too-large";
inline constexpr std::string_view cut_off = "cut-off";
inline constexpr std::string_view damaged = "damaged";
inline constexpr std::string_view bytes_after_end = "bytes-after-end";
inline constexpr std::string_view wrong_key = "wrong-key";
inline constexpr std::string_view no_key = "no-key";
inline constexpr std::string_view no_version = "no-version";
inline constexpr std::string_view include_not_found = "include-not-found";
inline constexpr std::string_view include_circle = "include-circle";
inline constexpr std::string_view include_left_open = "include-left-open";
inline constexpr std::string_view included_too_deeply = "included-too-deeply";
inline constexpr std::string_view too_many_includes = "too-many-includes";
// Words that are skipped.
inline constexpr std::string_view no_value = "no-value";
inline constexpr std::string_view not_a_boolean = "not-a-boolean";
inline constexpr std::string_view unquoted_string = "unquoted-string";
inline constexpr std::string_view string_left_open = "string-left-open";
inline constexpr std::string_view unexpected_word = "unexpected-word";
inline constexpr std::string_view no_comment = "no-comment";
inline constexpr std::string_view merge_conflict = "merge-conflict";
inline constexpr std::string_view byte_order_mark = "byte-order-mark";
inline constexpr std::string_view bad_name = "bad-name";
inline constexpr std::string_view bad_template = "bad-template";
inline constexpr std::string_view bad_array_count = "bad-array-count";
inline constexpr std::string_view wrongly_placed = "wrongly-placed";
inline constexpr std::string_view value_without_entry = "value-without-entry";
inline constexpr std::string_view bad_arguments = "bad-arguments";
inline constexpr std::string_view group_without_entry = "group-without-entry";
inline constexpr std::string_view group_left_open = "group-left-open";
inline constexpr std::string_view text_after_end = "text-after-end";
inline constexpr std::string_view nested_too_deeply = "nested-too-deeply";
// Words that are read as something else.
inline constexpr std::string_view comment_joins_line = "comment-joins-line";
inline constexpr std::string_view include_joins_word = "include-joins-word";
inline constexpr std::string_view text_after_number = "text-after-number";
inline constexpr std::string_view exponent_ignored = "exponent-ignored";
inline constexpr std::string_view number_out_of_range = "number-out-of-range";
inline constexpr std::string_view binary_data_empty = "binary-data-empty";
inline constexpr std::string_view binary_data_digits = "binary-data-digits";
inline constexpr std::string_view binary_data_checksum = "binary-data-checksum";
inline constexpr std::string_view unknown_escape = "unknown-escape";
inline constexpr std::string_view escape_without_version = "escape-without-version";
inline constexpr std::string_view quote_inside_string = "quote-inside-string";
inline constexpr std::string_view array_count = "array-count";
inline constexpr std::string_view arguments_left_open = "arguments-left-open";
inline constexpr std::string_view include_misspelled = "include-misspelled";
inline constexpr std::string_view version_misspelled = "version-misspelled";
inline constexpr std::string_view version_too_new = "version-too-new";
inline constexpr std::string_view version_of_include = "version-of-include";
inline constexpr std::string_view version_repeated = "version-repeated";
inline constexpr std::string_view text_after_version = "text-after-version";
inline constexpr std::string_view directive_in_string = "directive-in-string";
inline constexpr std::string_view byte_order_mark_in_string = "byte-order-mark-in-string";
inline constexpr std::string_view nul_byte = "nul-byte";
inline constexpr std::string_view not_utf_8 = "not-utf-8";
// Of paths.
inline constexpr std::string_view malformed_path = "malformed-path";
// Of JSON.
inline constexpr std::string_view json_syntax = "json-syntax";
inline constexpr std::string_view json_shape = "json-shape";
inline constexpr std::string_view json_word = "json-word";
// Of the list itself: an error when it leaves an error out.
inline constexpr std::string_view more_problems = "more-problems";
} // namespace codes

struct ProblemCode {
    std::string_view code;
    Severity severity;
    std::string_view summary;
};

/// Every code, in the order of docs/problems.md.
inline constexpr ProblemCode problem_codes[] = {
    {codes::unreadable, Severity::error, "a file cannot be read"},
    {codes::not_a_document, Severity::error, "a file is not a document"},
    {codes::too_large, Severity::error, "a file or text is larger than the limits allow"},
    {codes::cut_off, Severity::error, "a file ends before its announced size"},
    {codes::damaged, Severity::error, "a file contradicts itself"},
    {codes::bytes_after_end, Severity::error, "bytes follow the end of the document"},
    {codes::wrong_key, Severity::error, "the key is wrong, or the file is damaged"},
    {codes::no_key, Severity::error, "an encrypted file needs a key"},
    {codes::no_version, Severity::error, "a version line has no version"},
    {codes::include_not_found, Severity::error, "an included file was not found"},
    {codes::include_circle, Severity::error, "a file includes itself"},
    {codes::include_left_open, Severity::error, "an include has no closing quote"},
    {codes::included_too_deeply, Severity::error, "includes nest deeper than the limits allow"},
    {codes::too_many_includes, Severity::error, "there are more includes than the limits allow"},
    {codes::no_value, Severity::error, "an entry has no value"},
    {codes::not_a_boolean, Severity::error, "a boolean is neither yes nor no"},
    {codes::unquoted_string, Severity::error, "a string has no double quotes"},
    {codes::string_left_open, Severity::error, "a string is not closed on its line"},
    {codes::unexpected_word, Severity::error, "a word is neither a name nor a value"},
    {codes::no_comment, Severity::error, "a comment does not begin with //"},
    {codes::merge_conflict, Severity::error, "a merge conflict is unresolved"},
    {codes::byte_order_mark, Severity::error, "a byte order mark is part of a word"},
    {codes::bad_name, Severity::error, "a word is not a valid name"},
    {codes::bad_template, Severity::error, "a template is not a name"},
    {codes::bad_array_count, Severity::error, "an array count is not a whole number"},
    {codes::wrongly_placed, Severity::error, "a '=' or ',' is in the wrong place"},
    {codes::value_without_entry, Severity::error, "a value belongs to no entry"},
    {codes::bad_arguments, Severity::error, "a '(' or ')' is in the wrong place"},
    {codes::group_without_entry, Severity::error, "a group has no name"},
    {codes::group_left_open, Severity::error, "a group is not closed"},
    {codes::text_after_end, Severity::error, "a '}' closes nothing"},
    {codes::nested_too_deeply, Severity::error, "groups nest deeper than the limits allow"},
    {codes::comment_joins_line, Severity::warning, "a comment joins the next line to a word"},
    {codes::include_joins_word, Severity::warning, "an include joins the words around it"},
    {codes::text_after_number, Severity::warning, "the characters after a number are ignored"},
    {codes::exponent_ignored, Severity::warning, "an exponent with an upper-case E is ignored"},
    {codes::number_out_of_range, Severity::warning, "a number is too large or too small"},
    {codes::binary_data_empty, Severity::warning, "binary data holds no bytes"},
    {codes::binary_data_digits, Severity::warning, "binary data has characters that are not digits"},
    {codes::binary_data_checksum, Severity::warning, "binary data does not match its checksum"},
    {codes::unknown_escape, Severity::warning, "a backslash in a string is dropped"},
    {codes::escape_without_version, Severity::warning, "escapes are used before version 1.1"},
    {codes::quote_inside_string, Severity::error, "a string does not end at a quote"},
    {codes::array_count, Severity::warning, "an array has more or fewer values than declared"},
    {codes::arguments_left_open, Severity::warning, "an argument list is not closed"},
    {codes::include_misspelled, Severity::warning, "a misspelled include is a keyword"},
    {codes::version_misspelled, Severity::warning, "a misspelled version line is a keyword"},
    {codes::version_too_new, Severity::warning, "the version is newer than this library"},
    {codes::version_of_include, Severity::warning, "an included file has another version"},
    {codes::version_repeated, Severity::warning, "a file states two versions"},
    {codes::text_after_version, Severity::warning, "text after the version is dropped"},
    {codes::directive_in_string, Severity::warning, "a directive is inside a string"},
    {codes::byte_order_mark_in_string, Severity::warning, "a string contains a byte order mark"},
    {codes::nul_byte, Severity::warning, "a file contains NUL bytes"},
    {codes::not_utf_8, Severity::warning, "a file contains bytes that are not UTF-8"},
    {codes::malformed_path, Severity::error, "a path breaks the rules of paths"},
    {codes::json_syntax, Severity::error, "a text is not JSON"},
    {codes::json_shape, Severity::error, "a JSON text does not have the lossless shape"},
    {codes::json_word, Severity::warning, "a text document cannot carry a value of the JSON text"},
    {codes::more_problems, Severity::error, "the list is full"},
};

/// The severity in the table. An unknown code is an error.
constexpr Severity severity_of(std::string_view code) noexcept {
    for (const ProblemCode& row : problem_codes) {
        if (row.code == code) {
            return row.severity;
        }
    }
    return Severity::error;
}

} // namespace bk_parser
