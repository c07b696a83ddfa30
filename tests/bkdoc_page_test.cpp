#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)

#include <fstream>
#include <sstream>

// docs/bkdoc.md shows documents, commands and their output. The commands run in the order of the page, in one
// folder.

namespace {

class BkdocPage : public testing::Test {
protected:
    BkdocPage() {
        folder.make_folder("bin");
        folder.make_folder("docs");
        std::filesystem::create_symlink(BK_PARSER_BKDOC, folder.path("bin/bkdoc"));
    }

    void store(const std::string& name, std::istringstream& lines) {
        std::string text;
        for (std::string line; std::getline(lines, line) && line != "```";) {
            text += line + "\n";
        }
        folder.write("docs/" + name, text);
    }

    /// Runs the commands of a block, and compares the block with the commands and their output.
    void run_block(std::istringstream& lines) {
        std::string expected;
        std::string found;
        for (std::string line; std::getline(lines, line) && line != "```";) {
            expected += line + "\n";
            if (line.starts_with("$ ")) {
                found += line + "\n" + output_of(line.substr(2));
                ++commands;
            }
        }
        EXPECT_EQ(found, expected);
    }

    std::string output_of(const std::string& command) {
        folder.write("run", command);
        const std::string script = "cd " + bkdoc_run_detail::shell_word(folder.path("docs")) +
                                   " && unset BKDOC_KEY; PATH=../bin:$PATH sh ../run >../out 2>&1 </dev/null";
        bkdoc_run_detail::run_line(script);
        std::string output = folder.read("out");
        return output.empty() || output.ends_with('\n') ? output : output + "\n";
    }

    const ScratchFolder folder;
    int commands = 0;
};

using bkdoc_page = BkdocPage;

TEST_F(bkdoc_page, every_command_writes_what_the_page_shows) {
    std::ifstream file(BK_PARSER_SOURCE_DIR "/docs/bkdoc.md", std::ios::binary);
    std::stringstream page;
    page << file.rdbuf();
    std::istringstream lines(page.str());
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("```bkd ")) {
            store(line.substr(7), lines);
        } else if (line == "```console") {
            run_block(lines);
        }
    }
    EXPECT_GT(commands, 30);
}

} // namespace

#endif
