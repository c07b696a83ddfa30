#include "tests/support/document_folder.h"
#include "tests/support/recording_progress.h"

#include <gtest/gtest.h>

namespace {

using Calls = std::vector<std::string>;
using Steps = std::vector<unsigned int>;

RecordingProgress progress_of(const DocumentFolder& folder, std::string_view text,
                              bool expected_result = true) {
    RecordingProgress progress;
    folder.write("main.bkd", text);
    ParserFile file(CoreString{});
    file.set_search_paths({core(folder.path())});
    const Reading reading = DocumentFolder::read_into(file, "main.bkd", &progress);
    EXPECT_EQ(reading.result, expected_result);
    EXPECT_EQ(progress.open_tasks(), 0);
    return progress;
}

} // namespace

TEST(preprocess_progress, a_read_is_two_tasks_of_which_the_first_holds_the_scan) {
    const DocumentFolder folder;
    EXPECT_EQ(progress_of(folder, "a 1 ").calls,
              (Calls{"set_value(0)", "begin_task(\"\", 0.5, false)", "set_value(0.3)",
                     "begin_task(\"\", 0.7, false)", "set_step_count(4)", "step(1)", "step(2)", "step(3)",
                     "step(4)", "end_task()", "end_task()", "begin_task(false)", "set_value(0)",
                     "set_value(0.5)", "end_task()"}));
}

TEST(preprocess_progress, a_file_of_more_than_four_bytes_is_looked_into_before_it_is_read_as_text) {
    const DocumentFolder folder;
    EXPECT_EQ(progress_of(folder, "a 123").calls_without_steps(),
              (Calls{"set_value(0)", "begin_task(\"\", 0.5, false)", "set_value(0.3)", "set_value(0.3)",
                     "begin_task(\"\", 0.7, false)", "set_step_count(5)", "end_task()", "end_task()",
                     "begin_task(false)", "set_value(0)", "set_value(0.4)", "end_task()"}));
}

TEST(preprocess_progress, an_empty_file_makes_no_steps) {
    const DocumentFolder folder;
    EXPECT_EQ(progress_of(folder, "").calls,
              (Calls{"set_value(0)", "begin_task(\"\", 0.5, false)", "set_value(0.3)",
                     "begin_task(\"\", 0.7, false)", "set_step_count(0)", "end_task()", "end_task()",
                     "begin_task(false)", "end_task()"}));
}

TEST(preprocess_progress, each_byte_copied_is_a_step_to_the_place_after_it) {
    const DocumentFolder folder;
    EXPECT_EQ(progress_of(folder, "a \"x\\\" y\"\n").steps, (Steps{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
}

TEST(preprocess_progress, comments_make_no_steps) {
    const DocumentFolder folder;
    EXPECT_EQ(progress_of(folder, "a//b\nc").steps, (Steps{1, 6}));
}

TEST(preprocess_progress, each_digit_of_a_hexadecimal_run_is_a_step) {
    const DocumentFolder folder;
    EXPECT_EQ(progress_of(folder, "a 0x1F b").steps, (Steps{1, 2, 5, 6, 7, 8}));
}

TEST(preprocess_progress, a_version_line_makes_no_steps) {
    const DocumentFolder folder;
    EXPECT_EQ(progress_of(folder, "#Brellwick_Serial_Version 1.2\na 1").steps, (Steps{31, 32, 33}));
}

TEST(preprocess_progress, included_files_are_processed_without_progress) {
    const DocumentFolder folder;
    folder.write("x.bkd", "b 2 c 3 d 4\n");
    const RecordingProgress progress = progress_of(folder, "a #include \"x.bkd\" 1");
    EXPECT_EQ(progress.steps, (Steps{1, 2, 19, 20}));
    EXPECT_EQ(progress.calls[5], "set_step_count(20)");
}

TEST(preprocess_progress, a_file_that_is_missing_ends_the_task_that_was_begun) {
    RecordingProgress progress;
    ParserFile file(CoreString{});
    EXPECT_FALSE(DocumentFolder::read_into(file, "/nowhere/x", &progress).result);
    EXPECT_EQ(progress.calls, (Calls{"set_value(0)", "begin_task(\"\", 0.5, false)", "end_task()"}));
}

TEST(preprocess_progress, an_include_that_is_missing_ends_every_task_that_was_begun) {
    const DocumentFolder folder;
    EXPECT_EQ(progress_of(folder, "a #include \"missing\"", false).calls,
              (Calls{"set_value(0)", "begin_task(\"\", 0.5, false)", "set_value(0.3)", "set_value(0.3)",
                     "begin_task(\"\", 0.7, false)", "set_step_count(20)", "step(1)", "step(2)", "end_task()",
                     "end_task()"}));
}

TEST(preprocess_progress, an_include_left_open_ends_every_task_that_was_begun) {
    const DocumentFolder folder;
    EXPECT_EQ(progress_of(folder, "#include \"x", false).calls_without_steps(),
              (Calls{"set_value(0)", "begin_task(\"\", 0.5, false)", "set_value(0.3)", "set_value(0.3)",
                     "begin_task(\"\", 0.7, false)", "set_step_count(11)", "end_task()", "end_task()"}));
}

TEST(preprocess_progress, a_version_of_zero_ends_every_task_that_was_begun) {
    const DocumentFolder folder;
    EXPECT_EQ(progress_of(folder, "#Brellwick_Serial_Version 0\n", false).calls_without_steps().back(),
              "end_task()");
}
