#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)
#include <csignal>
#include <sys/resource.h>
#endif

namespace {

constexpr std::string_view loose = "// head\na { b 1 c \"x\" } // end\n\n\nd = 1,2\n";
constexpr std::string_view neat = "// head\na {\n    b 1\n    c \"x\"\n} // end\n\nd = 1, 2\n";

std::string without(std::string text, const std::string& part) {
    for (std::size_t i = text.find(part); i != std::string::npos; i = text.find(part)) {
        text.erase(i, part.size());
    }
    return text;
}

TEST(bkdoc_fmt, a_file_is_laid_out_to_standard_output) {
    const ScratchFolder folder;
    folder.write("a.bkd", loose);
    const BkdocRun run = run_bkdoc({"fmt", folder.path("a.bkd")});
    EXPECT_EQ(run.out, neat);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(folder.read("a.bkd"), loose);
}

TEST(bkdoc_fmt, standard_input_is_laid_out_when_no_file_is_named) {
    EXPECT_EQ(run_bkdoc({"fmt"}, loose).out, neat);
    EXPECT_EQ(run_bkdoc({"fmt", "-"}, loose).out, neat);
}

TEST(bkdoc_fmt, files_are_written_with_w_and_only_those_that_change) {
    const ScratchFolder folder;
    folder.write("a.bkd", loose);
    folder.write("b.bkd", neat);
    const BkdocRun run = run_bkdoc({"fmt", "-w", folder.path()});
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "2 files, 1 formatted\n");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(folder.read("a.bkd"), neat);
    EXPECT_EQ(folder.read("b.bkd"), neat);
}

TEST(bkdoc_fmt, check_names_the_files_that_would_change) {
    const ScratchFolder folder;
    folder.write("a.bkd", loose);
    folder.write("b.bkd", neat);
    const BkdocRun run = run_bkdoc({"fmt", "--check", folder.path("a.bkd"), folder.path("b.bkd")});
    EXPECT_EQ(run.out, folder.path("a.bkd") + "\n");
    EXPECT_EQ(run.err, "2 files, 1 not formatted\n");
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run_bkdoc({"fmt", "--check", folder.path("b.bkd")}).code, 0);
    EXPECT_EQ(folder.read("a.bkd"), loose);
}

TEST(bkdoc_fmt, diff_shows_what_would_change) {
    const ScratchFolder folder;
    folder.write("a.bkd", "a  1\nb 2\nc 3\nd 4\ne 5");
    const BkdocRun run = run_bkdoc({"fmt", "--diff", folder.path("a.bkd")});
    EXPECT_EQ(without(run.out, folder.path() + "/"),
              "--- a.bkd\n+++ a.bkd\n@@ -1,5 +1,5 @@\n-a  1\n+a 1\n b 2\n c 3\n"
              " d 4\n-e 5\n\\ No newline at end of file\n+e 5\n");
    EXPECT_EQ(run.code, 1);
}

TEST(bkdoc_fmt, indent_and_width_are_as_asked) {
    EXPECT_EQ(run_bkdoc({"fmt", "--indent", "2", "--width", "10"}, "a { b 1111 2222 3333 }").out,
              "a {\n  b 1111\n    2222\n    3333\n}\n");
}

TEST(bkdoc_fmt, a_file_with_errors_is_left_as_it_is) {
    const ScratchFolder folder;
    folder.write("a.bkd", "a 1\nb 2 )\n");
    folder.write("b.bkd", loose);
    const BkdocRun run = run_bkdoc({"fmt", "-w", folder.path("a.bkd"), folder.path("b.bkd")});
    EXPECT_NE(run.err.find("a.bkd:2:5: error: "), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("a.bkd: has errors; it is left as it is\n2 files, 1 formatted\n"),
              std::string::npos)
        << run.err;
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(folder.read("a.bkd"), "a 1\nb 2 )\n");
    EXPECT_EQ(folder.read("b.bkd"), neat);
}

TEST(bkdoc_fmt, includes_stay_and_are_not_looked_for) {
    EXPECT_EQ(run_bkdoc({"fmt"}, "  #include \"missing.bkd\"\na   1\n").out,
              "#include \"missing.bkd\"\na 1\n");
}

TEST(bkdoc_fmt, what_cannot_be_done_is_refused) {
    const BkdocRun missing = run_bkdoc({"fmt", "missing.bkd"});
    EXPECT_EQ(missing.err, "bkdoc: missing.bkd: no such file\n");
    EXPECT_EQ(missing.code, 2);
    const BkdocRun input = run_bkdoc({"fmt", "-w"}, loose);
    EXPECT_EQ(input.err, "bkdoc: -w cannot write to standard input\n");
    EXPECT_EQ(input.code, 2);
}

#if !defined(_WIN32)

/// While it lives, processes that this one starts cannot write files of more than 1 KiB.
class SmallFiles {
public:
    SmallFiles() : handler_(::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit small{1024, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallFiles() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        ::signal(SIGXFSZ, handler_);
    }
    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;

private:
    void (*handler_)(int);
    rlimit before_{};
};

TEST(bkdoc_fmt, a_file_that_cannot_be_replaced_is_told_with_the_reason_of_the_system) {
    const ScratchFolder folder;
    std::string text;
    for (int i = 0; i < 1000; ++i) {
        text += "a   1\n";
    }
    const std::string file = folder.write("a.bkd", text);
    const SmallFiles limit;
    const BkdocRun run = run_bkdoc({"fmt", "-w", file});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.err, "bkdoc: " + file + ": cannot be written: file too large\n");
    EXPECT_EQ(folder.read("a.bkd"), text);
    EXPECT_EQ(folder.count(), 1u);
}

#endif

TEST(bkdoc_fmt, a_difference_has_the_colours_that_a_change_shows) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", "b { a   1 }\n");
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"fmt", "--diff", "--color", "always", file},
          std::vector<std::string>{"set", "--dry-run", "--color", "always", "b/a", "=2", file}}) {
        const std::string out = run_bkdoc(arguments).out;
        const std::size_t at = out.find("@@ -1");
        ASSERT_NE(at, std::string::npos) << out;
        EXPECT_EQ(out.substr(out.rfind('\n', at) + 1, at - out.rfind('\n', at) - 1), "\033[2m") << out;
    }
}

} // namespace
