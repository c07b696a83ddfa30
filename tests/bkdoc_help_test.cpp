#include "tests/support/bkdoc_run.h"
#include "tests/support/terminal.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <sstream>

// Terminals of every width must show the help well, and its examples must run when users copy them.

namespace {

/// The first word of each line with an indent of 2, up to the line "Options".
std::vector<std::string> verbs_of(const std::string& help) {
    std::vector<std::string> verbs;
    std::istringstream lines(help);
    for (std::string line; std::getline(lines, line) && line != "Options";) {
        if (line.starts_with("  ") && line[2] != ' ') {
            verbs.push_back(line.substr(2, line.find(' ', 2) - 2));
        }
    }
    return verbs;
}

TEST(bkdoc_help, is_there_for_the_tool_and_for_each_verb) {
    const BkdocRun all = run_bkdoc({"help"});
    EXPECT_EQ(all.code, 0);
    EXPECT_EQ(all.err, "");
    EXPECT_EQ(all.out, run_bkdoc({"--help"}).out);
    EXPECT_EQ(verbs_of(all.out).size(), 21u);
    for (const std::string& verb : verbs_of(all.out)) {
        const BkdocRun run = run_bkdoc({"help", verb});
        EXPECT_EQ(run.code, 0) << verb;
        EXPECT_EQ(run.out, run_bkdoc({verb, "--help"}).out);
    }
    const BkdocRun misspelt = run_bkdoc({"help", "chek"});
    EXPECT_EQ(misspelt.code, 2);
    EXPECT_EQ(misspelt.err, "bkdoc: unknown verb 'chek'; did you mean 'check'?\n");
}

TEST(bkdoc_help, of_a_verb_has_its_use_its_options_an_example_and_the_exit_codes) {
    EXPECT_EQ(run_bkdoc({"help", "merge"}).out,
              R"(Merge two versions of a text, entry by entry.

Usage: bkdoc merge [OPTIONS] BASE OURS THEIRS

OURS and THEIRS were both made from BASE. The result is printed, or written to
OURS with --write. It keeps the layout and the comments of OURS. Where both
changed the same thing in different ways, the result has conflict markers as git
writes them, and merge says how many.

To use it in git, set merge.bkdoc.driver to 'bkdoc merge -w --name=%P %O %A %B',
and write '*.bkd merge=bkdoc' into .gitattributes.

Options
  -w, --write           Write the result to OURS.
  --name NAME           The name of the file in messages; git writes it for %P.

General options
  --color auto|always|never
                        When to use colours; auto means on a terminal.
  -h, --help            Show this help and exit.
  --version             Show the version and exit.

Example
  bkdoc merge base.bkd ours.bkd theirs.bkd

Exit code
  0    merged
  1    merged, with conflicts
  2    not merged, or not written
)");
}

#if !defined(_WIN32)

/// The command below "Example".
std::string example_of(const std::string& verb) {
    const std::string help = run_bkdoc({"help", verb}).out;
    const std::size_t begin = help.find("\nExample\n  ") + 11;
    return help.substr(begin, help.find('\n', begin) - begin);
}

/// The example project, and the files that the examples need.
class ExampleProject {
public:
    ExampleProject() {
        std::filesystem::copy(example_path("project"), folder_.path("."),
                              std::filesystem::copy_options::recursive);
        folder_.make_folder("bin");
        std::filesystem::create_symlink(BK_PARSER_BKDOC, folder_.path("bin/bkdoc"));
        folder_.write(".bkdoc.bkd", "search \"library\" \"shots\"\n");
        folder_.write("base.bkd", "a 1\nb 1\nc 1\n");
        folder_.write("ours.bkd", "a 2\nb 1\nc 1\n");
        folder_.write("theirs.bkd", "a 1\nb 1\nc 3\n");
        std::string old = folder_.read("harbour.bkd");
        old.replace(old.find("#revision 118"), 13, "#revision 117");
        folder_.write("old/harbour.bkd", old);
        run("bkdoc convert --to archive harbour.bkd harbour.archive");
        run("bkdoc convert --to binary base.bkd damaged.bin");
        const std::string whole = folder_.read("damaged.bin");
        folder_.write("damaged.bin", std::string_view(whole).substr(0, whole.size() - 9));
    }

    /// The standard output of a shell in the project, followed by its standard error.
    std::string run(const std::string& command) {
        code_ = bkdoc_run_detail::exit_code(bkdoc_run_detail::run_line(
            "cd " + bkdoc_run_detail::shell_word(folder_.path()) + " && unset BKDOC_KEY; PATH=bin:$PATH; { " +
            command + "; } >out 2>err </dev/null"));
        return folder_.read("out") + folder_.read("err");
    }

    int code() const { return code_; }

private:
    const ScratchFolder folder_;
    int code_ = -1;
};

struct ExampleRun {
    int code;
    std::string_view text; // a part of the output of the example
};

const std::map<std::string, ExampleRun> example_runs = {
    {"check", {0, "6 files, 2 with problems ("}},
    {"tree", {0, "harbour.bkd  version 1.2, 17 entries\n├── #project       keyword, string"}},
    {"cat", {0, "#Brellwick_Serial_Version 1.2\n\n#project \"Harbour at dusk\"\n"}},
    {"info", {0, "entries       1,119  (1,045 ordinary, 13 keywords, 61 function calls)\n"}},
    {"deps", {0, "library/lights.bkd\n└── harbour.bkd  line 234\n"}},
    {"stats", {0, "bytes   share       entries        values  name\n"}},
    {"dump", {0, "magic               an archive of words\n"}},
    {"get", {0, "60.0\n90.0\n60.0\n"}},
    {"grep", {0, "light[\"quay_03\"]@0 = \"quay_03\"\n"}},
    {"set", {0, "library/lights.bkd: 9 values set\n"}},
    {"add", {0, "harbour.bkd: 1 entry added\n"}},
    {"rm", {0, "\n-    power 140.0\n"}},
    {"mv", {0, "harbour.bkd: 1 entry moved\n"}},
    {"rename", {0, "16 names changed in 2 files\n"}},
    {"fmt", {0, "5 files, 0 "}},
    {"diff", {1, "harbour.bkd:6 #revision 117 -> 118\n"}},
    {"same", {0, "harbour.bkd and harbour.archive hold the same tree\n"}},
    {"merge", {0, "a 2\nb 1\nc 3\n"}},
    {"textconv", {0, "// archive, "}},
    {"convert", {0, ""}},
    {"recover", {1, "damaged.bin: binary, 2 entries read, 2 parts are lost\n"}},
};

TEST(bkdoc_help, shows_examples_that_work) {
    for (const std::string& verb : verbs_of(run_bkdoc({"help"}).out)) {
        ASSERT_TRUE(example_runs.contains(verb)) << verb;
        const ExampleRun& expected = example_runs.at(verb);
        const std::string example = example_of(verb);
        EXPECT_TRUE(example.starts_with("bkdoc " + verb + " ")) << example;
        ExampleProject project;
        const std::string printed = project.run(example);
        EXPECT_EQ(project.code(), expected.code) << example << "\n" << printed;
        EXPECT_NE(printed.find(expected.text), std::string::npos) << example << "\n" << printed;
    }
}

/// The output of the tool on a terminal, without colours.
std::string shown_at(unsigned short width, const std::string& arguments) {
    Terminal terminal;
    EXPECT_TRUE(terminal.works());
    terminal.set_width(width);
    std::string shown =
        terminal.show(bkdoc_run_detail::shell_word(BK_PARSER_BKDOC) + " --color never " + arguments);
    std::erase(shown, '\r');
    return shown;
}

TEST(bkdoc_help, fits_terminals_of_every_width) {
    std::vector<std::string> pages = {"help"};
    for (const std::string& verb : verbs_of(run_bkdoc({"help"}).out)) {
        pages.push_back("help " + verb);
    }
    for (const std::string& page : pages) {
        for (const unsigned short width : std::initializer_list<unsigned short>{40, 60, 80, 100}) {
            std::istringstream lines(shown_at(width, page));
            for (std::string line; std::getline(lines, line);) {
                EXPECT_TRUE(line.size() <= width || line.starts_with("  bkdoc ")) << page << "\n" << line;
            }
        }
    }
}

#endif

} // namespace
