#include "tests/support/loaded_document.h"
#include "tests/support/stored_forms.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <thread>

#if !defined(_WIN32)
#include <sys/stat.h>
#endif

// What a load reports for files that it cannot open, or cannot read to the end.

using bk_parser::load;
using bk_parser::LoadOptions;
using bk_parser::LoadResult;
using bk_parser::parse;

TEST(document_reading, an_include_names_each_place_once_and_no_empty_one) {
    EXPECT_EQ(told(parse("#include \"x\"")),
              Lines{":1:1: error: 'x' not found; a search folder adds a place [include-not-found]"});
    LoadOptions options;
    options.search = {"a", "b", "a"};
    EXPECT_EQ(
        told(parse("#include \"x\"", options)),
        Lines{
            ":1:1: error: 'x' not found; tried a/x, b/x; a search folder adds a place [include-not-found]"});
}

TEST(document_reading, a_name_that_is_missing_is_said_to_be) {
    EXPECT_EQ(told(parse("#include \"\"")),
              Lines{":1:1: error: an include without a name [include-not-found]"});
    EXPECT_EQ(told(load("")), Lines{": error: '': no such file [unreadable]"});
}

TEST(document_reading, an_archive_that_is_cut_off_is_one_problem) {
    StoredForms forms("a 1 b { c \"x\" d (1, 2) } e[3] 1 2 3 f yes\n");
    const std::string bytes = forms.archive();
    for (std::size_t size = 16; size < bytes.size(); ++size) {
        const LoadResult result = parse(std::string_view(bytes).substr(0, size));
        EXPECT_EQ(result.problems.size(), 1u) << size << testing::PrintToString(told(result));
        EXPECT_EQ(result.problems.at(0).code, "cut-off") << size;
    }
}

TEST(document_reading, a_large_file_of_another_kind_is_said_to_be_that) {
    const ScratchFolder folder;
    LoadOptions options;
    options.limits.source_size = 10;
    const std::string json = folder.write("x.json", "{\"a\": [1, 2, 3, 4]}");
    EXPECT_EQ(told(load(json, options)),
              Lines{"x.json: error: " + json + " is JSON, not a document [not-a-document]"});
    const std::string text = folder.write("x.bkd", "a 1 2 3 4 5 6 7");
    EXPECT_EQ(told(load(text, options)),
              Lines{"x.bkd: error: " + text +
                    " is too large: 15 bytes, ParserLimits::source_size leaves 10 [too-large]"});
    EXPECT_EQ(
        told(parse("a 1 2 3 4 5 6 7", options)),
        Lines{": error: the text is too large: 15 bytes, ParserLimits::source_size leaves 10 [too-large]"});
}

TEST(document_reading, a_file_of_five_gigabytes_is_refused_with_both_numbers) {
    const ScratchFolder folder;
    const std::string path = folder.write("big.bkd", "a 1 // " + std::string(5000, 'x'));
    std::error_code error;
    std::filesystem::resize_file(path, 5000000000u, error);
    if (error) {
        GTEST_SKIP() << "the file system has no such files";
    }
    const LoadResult result = load(path);
    ASSERT_EQ(result.problems.size(), 1u);
    EXPECT_TRUE(result.problems[0].message.find("5,000,000,000 bytes, at most 4,294,967,294 can be read") !=
                std::string::npos)
        << result.problems[0].message;
}

#if !defined(_WIN32)
TEST(document_reading, a_device_is_refused_at_once) {
    EXPECT_EQ(told(load("/dev/zero")), Lines{"zero: error: /dev/zero: is a device [unreadable]"});
}

TEST(document_reading, a_pipe_without_an_end_is_read_up_to_the_limit) {
    const ScratchFolder folder;
    const std::string path = folder.path("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    std::signal(SIGPIPE, SIG_IGN); // the reader closes the pipe before the writer ends
    std::thread writer([&path] {
        std::ofstream pipe(path, std::ios::binary);
        pipe << std::string(50000, ' ');
    });
    LoadOptions options;
    options.limits.source_size = 20000;
    EXPECT_EQ(load(path, options).problems.at(0).message,
              path + " is too large: more than 20,000 bytes, ParserLimits::source_size leaves 20,000");
    writer.join();
}
#endif
