#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

#include <set>

namespace {

/// The diagnostics, in order, and the exit code that the check of one document of examples/broken must give.
struct Expectation {
    const char* document;
    int code;
    std::vector<std::string> diagnostics; // "<file> <line>:<column>: <severity>: <message>"
};

const std::vector<Expectation>& expectations() {
    static const std::vector<Expectation> table = {
        {"wrongly_placed.bkd",
         1,
         {"wrongly_placed.bkd:3:18: error: unexpected ',': it may only stand between two values; everything "
          "up to the next name is skipped [wrongly-placed]"}},
        {"no_value.bkd",
         1,
         {"no_value.bkd:2:1: error: 'camera' has no value, and 'lens' is skipped [no-value]"}},
        {"template_inside_template.bkd",
         1,
         {"template_inside_template.bkd:3:1: error: 'layers<stack<wood>>' is not a name: a template cannot "
          "have a template [bad-template]"}},
        {"value_without_entry.bkd",
         1,
         {"value_without_entry.bkd:3:28: error: '45.0' belongs to no entry, and is skipped "
          "[value-without-entry]"}},
        {"group_without_entry.bkd",
         1,
         {"group_without_entry.bkd:4:3: error: '{' has no name before it: what it holds goes to the group "
          "around it [group-without-entry]"}},
        {"arguments_without_entry.bkd",
         1,
         {"arguments_without_entry.bkd:3:25: error: '(' has no name before it [bad-arguments]"}},
        {"arguments_after_values.bkd",
         1,
         {"arguments_after_values.bkd:3:13: error: '(' follows a value: an argument list must follow the "
          "name directly, and nothing may follow it [bad-arguments]"}},
        {"arguments_inside_arguments.bkd",
         1,
         {"arguments_inside_arguments.bkd:3:5: warning: the argument list of 'flash' is not closed "
          "[arguments-left-open]",
          "arguments_inside_arguments.bkd:3:11: error: '(' is inside an argument list, which cannot hold "
          "another "
          "[bad-arguments]"}},
        {"arguments_on_keyword.bkd",
         1,
         {"arguments_on_keyword.bkd:2:13: error: '(' follows a keyword, which takes no arguments "
          "[bad-arguments]"}},
        {"closing_without_entry.bkd",
         1,
         {"closing_without_entry.bkd:3:27: error: ')' closes no argument list [bad-arguments]"}},
        {"closing_no_arguments.bkd",
         1,
         {"closing_no_arguments.bkd:3:17: error: ')' closes no argument list [bad-arguments]"}},
        {"unknown_word.bkd", 1, {"unknown_word.bkd:3:7: error: unexpected '%' [unexpected-word]"}},
        {"unknown_word_bad_array_count.bkd",
         1,
         {"unknown_word_bad_array_count.bkd:4:5: error: '[-1]' is not an array count: write a whole number "
          "or nothing [bad-array-count]",
          "unknown_word_bad_array_count.bkd:5:5: error: '[many]' is not an array count: write a whole number "
          "or nothing [bad-array-count]"}},
        {"unknown_word_empty_template.bkd",
         1,
         {"unknown_word_empty_template.bkd:4:5: error: '<>' is not a template: put a name between '<' and "
          "'>' [bad-template]"}},
        {"string_left_open.bkd",
         1,
         {"string_left_open.bkd:2:23: error: this string is not closed on its line: a line's end is spelled "
          "'\\n' [string-left-open]"}},
        {"invalid_name.bkd",
         1,
         {"invalid_name.bkd:3:5: error: 'yes[2]' is not a name: yes and no are values [bad-name]"}},
        {"text_after_end.bkd",
         1,
         {"text_after_end.bkd:5:1: error: '}' closes nothing, and the text after it is not read "
          "[text-after-end]"}},
        {"group_left_open.bkd",
         1,
         {"group_left_open.bkd:2:13: error: this group is not closed: the document ends inside it "
          "[group-left-open]"}},
        {"include_left_open.bkd",
         1,
         {"include_left_open.bkd:5:1: error: no closing quote after #include; the rest of the file is not "
          "read [include-left-open]"}},
        {"include_missing.bkd",
         1,
         {"include_missing.bkd:3:5: error: 'parts/no_such_file.bkd' not found; tried parts/no_such_file.bkd, "
          "parts/no_such_file.bkd; -I adds a folder [include-not-found]"}},
        {"include_is_a_directory.bkd",
         1,
         {"include_is_a_directory.bkd:2:1: error: 'parts' not found; tried parts (is a directory), parts; -I "
          "adds a folder "
          "[include-not-found]"}},
        {"include_includes_itself.bkd",
         1,
         {"include_includes_itself.bkd:3:5: error: 'include_includes_itself.bkd' includes itself "
          "[include-circle]"}},
        {"include_includes_itself_through_another.bkd",
         1,
         {"parts/way_back.bkd:1:1: error: 'include_includes_itself_through_another.bkd' includes itself: "
          "include_includes_itself_through_another.bkd includes way_back.bkd, which includes "
          "include_includes_itself_through_another.bkd "
          "[include-circle]"}},
        {"include_cannot_be_deciphered.bkd",
         1,
         {"include_cannot_be_deciphered.bkd:3:5: error: parts/enciphered.bkd is encrypted, and no key is "
          "given: --key, --key-file or BKDOC_KEY gives one [no-key]"}},
        {"include_missing_in_included_file.bkd",
         1,
         {"parts/asks_for_more.bkd:2:13: error: 'glass.bkd' not found; tried parts/glass.bkd, glass.bkd, "
          "glass.bkd; -I adds a folder [include-not-found]"}},
        {"unknown_word_in_included_file.bkd",
         1,
         {"parts/lamp.bkd:3:12: error: unexpected '?' [unexpected-word]"}},
    };
    return table;
}

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

// The lines that report a problem. Their paths are relative to the folder of the documents.
std::vector<std::string> diagnostics_of(const std::string& report, const std::string& folder) {
    std::vector<std::string> diagnostics;
    for (std::string line : lines_of(report)) {
        if (line.find(": warning: ") == std::string::npos && line.find(": error: ") == std::string::npos) {
            continue;
        }
        for (std::size_t at = line.find(folder); at != std::string::npos; at = line.find(folder)) {
            line.erase(at, folder.size());
        }
        diagnostics.push_back(line);
    }
    return diagnostics;
}

class BrokenExample : public testing::TestWithParam<Expectation> {};

TEST_P(BrokenExample, is_reported_for_what_its_name_says_and_nothing_else) {
    const Expectation& expected = GetParam();
    const std::string folder = example_path("broken");
    const BkdocRun run = run_bkdoc({"check", "-I", folder, folder + "/" + expected.document});
    EXPECT_EQ(diagnostics_of(run.out, folder + "/"), expected.diagnostics) << run.out;
    EXPECT_EQ(run.code, expected.code);
    EXPECT_EQ(run.err, "");
}

std::string name_of(const testing::TestParamInfo<Expectation>& info) {
    const std::string document = info.param.document;
    return document.substr(0, document.rfind('.'));
}

INSTANTIATE_TEST_SUITE_P(each, BrokenExample, testing::ValuesIn(expectations()), name_of);

TEST(broken_examples, every_document_of_the_folder_is_expected_to_report_something) {
    std::set<std::string> expected;
    for (const Expectation& expectation : expectations()) {
        expected.insert(expectation.document);
    }
    std::set<std::string> found;
    for (const auto& item : std::filesystem::directory_iterator(example_path("broken"))) {
        if (item.is_regular_file()) {
            found.insert(item.path().filename().string());
        }
    }
    EXPECT_EQ(found, expected);
}

} // namespace
