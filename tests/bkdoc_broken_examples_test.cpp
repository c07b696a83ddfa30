#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

#include <set>

namespace {

/// What the check of one document of examples/broken must say: its diagnostics, in order, and its exit code.
struct Expectation {
    const char* document;
    int code;
    std::vector<std::string> diagnostics; // "<file> <line>:<column>: <severity>: <message>"
};

const std::vector<Expectation>& expectations() {
    static const std::vector<Expectation> table = {
        {"wrongly_placed.bkd", 1, {"wrongly_placed.bkd:3:18: warning: Entry ',' wrongly placed."}},
        {"no_value.bkd", 1, {"no_value.bkd:3:1: warning: Entry 'lens' has no value."}},
        {"template_inside_template.bkd",
         1,
         {"template_inside_template.bkd:3:1: warning: Entry 'layers' has template inside template "
          "declaration."}},
        {"value_without_entry.bkd", 1, {"value_without_entry.bkd:3:28: warning: Value without entry: 45.0"}},
        {"group_without_entry.bkd", 1, {"group_without_entry.bkd:4:3: warning: Group without entry"}},
        {"arguments_without_entry.bkd",
         1,
         {"arguments_without_entry.bkd:3:25: warning: Argument list without entry"}},
        {"arguments_after_values.bkd",
         1,
         {"arguments_after_values.bkd:3:13: warning: Cannot mix argument list with entry values"}},
        {"arguments_inside_arguments.bkd",
         1,
         {"arguments_inside_arguments.bkd:3:11: warning: Argument list inside an argument list"}},
        {"arguments_on_keyword.bkd", 1, {"arguments_on_keyword.bkd:2:13: warning: Function call on keyword"}},
        {"closing_without_entry.bkd",
         1,
         {"closing_without_entry.bkd:3:27: warning: Closing an argument list without entry"}},
        {"closing_no_arguments.bkd",
         1,
         {"closing_no_arguments.bkd:3:17: warning: Closing an argument list in a non function call"}},
        {"unknown_word.bkd", 1, {"unknown_word.bkd:3:7: warning: Unknown word type: '%'"}},
        {"unknown_word_bad_array_count.bkd",
         1,
         {"unknown_word_bad_array_count.bkd:4:5: warning: Unknown word type: 'keys[-1]'",
          "unknown_word_bad_array_count.bkd:5:5: warning: Unknown word type: 'keys[many]'"}},
        {"unknown_word_empty_template.bkd",
         1,
         {"unknown_word_empty_template.bkd:4:5: warning: Unknown word type: 'material<>'"}},
        {"string_left_open.bkd", 1, {"string_left_open.bkd:2:23: warning: Unknown word type: '\"Tor Bakke'"}},
        {"invalid_name.bkd", 1, {"invalid_name.bkd:3:5: warning: 'yes' is not a valid entry name"}},
        {"text_after_end.bkd",
         1,
         {"text_after_end.bkd:5:1: warning: Closing brace without a group: the text after it is not read"}},
        {"group_left_open.bkd", 1, {"group_left_open.bkd:2:13: warning: Group is not closed"}},
        {"include_left_open.bkd",
         2,
         {"include_left_open.bkd:5:1: error: Include directive without a closing quote"}},
        {"include_missing.bkd",
         2,
         {"include_missing.bkd:3:5: error: File 'parts/no_such_file.bkd' not found."}},
        {"include_is_a_directory.bkd", 2, {"include_is_a_directory.bkd:2:1: error: File 'parts' not found."}},
        {"include_includes_itself.bkd",
         2,
         {"include_includes_itself.bkd:3:5: error: File 'include_includes_itself.bkd' includes itself."}},
        {"include_includes_itself_through_another.bkd",
         2,
         {"parts/way_back.bkd:1:1: error: File 'include_includes_itself_through_another.bkd' includes "
          "itself."}},
        {"include_cannot_be_deciphered.bkd",
         2,
         {"include_cannot_be_deciphered.bkd:3:5: error: Failed to read binary data from file "
          "'parts/enciphered.bkd'."}},
        {"include_missing_in_included_file.bkd",
         2,
         {"parts/asks_for_more.bkd:2:13: error: File 'glass.bkd' not found."}},
        {"unknown_word_in_included_file.bkd",
         1,
         {"parts/lamp.bkd:3:12: warning: Unknown word type: '?'",
          "parts/lamp.bkd:3:12: warning: Unknown word type: '?'"}},
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

// The lines that name a fault, with paths from the folder of the documents on.
std::vector<std::string> diagnostics_of(const std::string& report, const std::string& folder) {
    std::vector<std::string> diagnostics;
    for (const std::string& line : lines_of(report)) {
        if (line.find(": warning: ") != std::string::npos || line.find(": error: ") != std::string::npos) {
            diagnostics.push_back(line.starts_with(folder) ? line.substr(folder.size()) : line);
        }
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
