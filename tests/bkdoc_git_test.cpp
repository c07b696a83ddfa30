#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#if !defined(_WIN32)

namespace {

/// The block of docs/version_control.md that contains these words.
std::string block_of_the_page(const std::string& words) {
    std::ifstream file(BK_PARSER_SOURCE_DIR "/docs/version_control.md");
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    const std::size_t place = page.find(words);
    const std::size_t begin = page.find('\n', page.rfind("```", place)) + 1;
    return place == std::string::npos ? "" : page.substr(begin, page.find("```", begin) - begin);
}

/// A repository in which Git passes .bkd files through the tool, set up with the lines of the page.
class Repository {
public:
    Repository() {
        std::filesystem::create_symlink(BK_PARSER_BKDOC, home_.path("bkdoc"));
        run("git init -q -b main . && git config user.name T && git config user.email t@example.org && "
            "git config commit.gpgsign false");
        EXPECT_EQ(run(block_of_the_page("git config --global merge.bkdoc.driver")), 0)
            << folder.read("out.txt");
        folder.write(".gitattributes", block_of_the_page("*.bkd     diff=bkdoc"));
    }

    int run(const std::string& command) const {
        const std::string line = "cd '" + folder.path() + "' && export HOME='" + home_.path() + "' PATH='" +
                                 home_.path() + "':\"$PATH\" && (" + command + ") >out.txt 2>&1";
        return std::system(line.c_str());
    }
    void commit(std::string_view text) const {
        folder.write("a.bkd", text);
        ASSERT_EQ(run("git add -A . && git reset -q out.txt; git commit -q -m x"), 0)
            << folder.read("out.txt");
    }

    ScratchFolder folder;

private:
    ScratchFolder home_; // holds the global settings, and the tool for PATH
};

bool has_git() {
    return std::system("git --version >/dev/null 2>&1") == 0;
}

TEST(bkdoc_git, branches_are_merged_entry_by_entry) {
    if (!has_git()) {
        GTEST_SKIP() << "there is no git";
    }
    const Repository repository;
    repository.commit("l {\n    a 1 // x\n    b 2\n}\n");
    ASSERT_EQ(repository.run("git checkout -q -b other"), 0);
    repository.commit("l {\n    a 1 // x\n    b 3\n}\n");
    ASSERT_EQ(repository.run("git checkout -q main"), 0);
    repository.commit("l {\n    a 5 // x\n    b 2\n}\n");
    EXPECT_EQ(repository.run("git merge -q -m m other"), 0) << repository.folder.read("out.txt");
    EXPECT_EQ(repository.folder.read("a.bkd"), "l {\n    a 5 // x\n    b 3\n}\n");
}

TEST(bkdoc_git, conflicts_stop_the_merge) {
    if (!has_git()) {
        GTEST_SKIP() << "there is no git";
    }
    const Repository repository;
    repository.commit("a 1\nb 2\n");
    ASSERT_EQ(repository.run("git checkout -q -b other"), 0);
    repository.commit("a 3\nb 4\n");
    ASSERT_EQ(repository.run("git checkout -q main"), 0);
    repository.commit("a 5\nb 2\n");
    EXPECT_NE(repository.run("git merge -q -m m other"), 0);
    const std::string told = repository.folder.read("out.txt");
    EXPECT_NE(told.find("bkdoc: a.bkd: 1 conflict\n"), std::string::npos) << told;
    EXPECT_EQ(repository.folder.read("a.bkd"), "<<<<<<< ours\na 5\n=======\na 3\n>>>>>>> theirs\nb 4\n");
}

TEST(bkdoc_git, archives_are_shown_as_text) {
    if (!has_git()) {
        GTEST_SKIP() << "there is no git";
    }
    const Repository repository;
    repository.commit("a 1\n");
    const std::string archive = repository.folder.path("s.archive");
    ASSERT_EQ(run_bkdoc({"convert", "--to", "archive", repository.folder.path("a.bkd"), archive}).code, 0);
    repository.commit("a 1\n");
    repository.folder.write("b.bkd", "a 2\n");
    ASSERT_EQ(repository.run("git add s.archive && git commit -q -m archive --allow-empty"), 0);
    ASSERT_EQ(run_bkdoc({"convert", "--to", "archive", repository.folder.path("b.bkd"), archive}).code, 0);
    EXPECT_EQ(repository.run("git --no-pager diff s.archive"), 0);
    const std::string shown = repository.folder.read("out.txt");
    EXPECT_NE(shown.find("\n-a 1\n+a 2\n"), std::string::npos) << shown;
}

} // namespace

#endif

TEST(bkdoc_textconv, a_text_stays_as_it_is) {
    const std::string_view text = "#include \"x\" // c\n\na   1 )\n";
    const BkdocRun run = run_bkdoc({"textconv", "-"}, text);
    EXPECT_EQ(run.out, text);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.code, 0);
}

TEST(bkdoc_textconv, it_never_fails) {
    const BkdocRun run = run_bkdoc({"textconv", "missing.bkd"});
    EXPECT_EQ(run.out, "// missing.bkd: no such file\n");
    EXPECT_EQ(run.code, 0);
    const BkdocRun image = run_bkdoc({"textconv", "-"}, std::string_view("\x89PNG\r\n\x1A\n\0\0\0", 11));
    EXPECT_EQ(image.code, 0);
    EXPECT_EQ(image.out, "// 11 bytes, hash CBA1B2818F3117E4\n// the file is a PNG image, not a document\n");
    const BkdocRun json = run_bkdoc({"textconv", "-"}, "{\"a\":1}\n");
    EXPECT_NE(json.out.find("\n// the file is JSON, not a document; bkdoc convert reads it\n"),
              std::string::npos)
        << json.out;
    const ScratchFolder folder;
    folder.write("a.bkd", "a 1\n");
    ASSERT_EQ(
        run_bkdoc({"convert", "--to", "cipher", "--key", "k", folder.path("a.bkd"), folder.path("a.kwbf")})
            .code,
        0);
    const BkdocRun cipher = run_bkdoc({"textconv", folder.path("a.kwbf")});
    EXPECT_NE(cipher.out.find("\n// the file is encrypted, and no key is given: "), std::string::npos)
        << cipher.out;
}

TEST(bkdoc_merge, the_result_goes_to_standard_output_or_into_ours) {
    const ScratchFolder folder;
    folder.write("base", "a 1\nb 2\n");
    folder.write("ours", "a 3\nb 2\n");
    folder.write("theirs", "a 1\nb 4\n");
    const BkdocRun shown =
        run_bkdoc({"merge", folder.path("base"), folder.path("ours"), folder.path("theirs")});
    EXPECT_EQ(shown.out, "a 3\nb 4\n");
    EXPECT_EQ(shown.err, "");
    EXPECT_EQ(shown.code, 0);
    EXPECT_EQ(folder.read("ours"), "a 3\nb 2\n");
    EXPECT_EQ(run_bkdoc({"merge", "-w", folder.path("base"), folder.path("ours"), folder.path("theirs")}).out,
              "");
    EXPECT_EQ(folder.read("ours"), "a 3\nb 4\n");
}

TEST(bkdoc_merge, conflicts_are_counted_and_trouble_is_told) {
    const ScratchFolder folder;
    folder.write("base", "a 1\n");
    folder.write("ours", "a 2\n");
    folder.write("theirs", "a 3\n");
    folder.write("faulty", "a 3 )\n");
    const BkdocRun run =
        run_bkdoc({"merge", folder.path("base"), folder.path("ours"), folder.path("theirs")});
    EXPECT_EQ(run.out, "<<<<<<< ours\na 2\n=======\na 3\n>>>>>>> theirs\n");
    EXPECT_EQ(run.err, "bkdoc: " + folder.path("ours") + ": 1 conflict\n");
    EXPECT_EQ(run.code, 1);
    const BkdocRun faulty =
        run_bkdoc({"merge", folder.path("base"), folder.path("ours"), folder.path("faulty")});
    EXPECT_EQ(faulty.err, folder.path("faulty") +
                              ":1:5: error: ')' closes no argument list [bad-arguments]\na 3 )\n    ^\n" +
                              "bkdoc: cannot merge into " + folder.path("ours") + ": theirs has errors\n");
    EXPECT_EQ(faulty.code, 2);
    const BkdocRun named = run_bkdoc(
        {"merge", "--name=a b.bkd", folder.path("base"), folder.path("ours"), folder.path("faulty")});
    EXPECT_EQ(named.err,
              "a b.bkd (theirs):1:5: error: ')' closes no argument list [bad-arguments]\na 3 )\n    ^\n"
              "bkdoc: cannot merge into a b.bkd: theirs has errors\n");
    EXPECT_EQ(run_bkdoc({"merge", "--name=a b.bkd", folder.path("base"), folder.path("ours"),
                         folder.path("theirs")})
                  .err,
              "bkdoc: a b.bkd: 1 conflict\n");
}
