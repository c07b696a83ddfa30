#include "tests/support/page_blocks.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

// Runs every block "```console" of every page. Lines that begin with "$ " are commands, the others their
// output. The blocks of a page share a folder with copies of the examples. The lines are for a POSIX shell.

#if !defined(_WIN32)

namespace {

namespace fs = std::filesystem;
const fs::path root = BK_PARSER_SOURCE_DIR;

void copy_examples(const ScratchFolder& folder) {
    fs::copy(root / "examples/lamp.bkd", folder.path("lamp.bkd"));
    for (const char* name : {"project", "broken"}) {
        fs::copy(root / "examples" / name, folder.path(name), fs::copy_options::recursive);
    }
}

/// The block with the real output of its commands.
std::string run_block(const ScratchFolder& folder, const std::string& block) {
    std::string shown;
    std::istringstream lines(block);
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with("$ ")) {
            continue;
        }
        folder.write(".command", line.substr(2) + "\n");
        const std::string run = "cd '" + folder.path() + "' && PATH='" +
                                fs::path(BK_PARSER_BKDOC).parent_path().string() +
                                "':$PATH sh .command >.shown 2>&1 </dev/null";
        const int status = std::system(run.c_str());
        EXPECT_NE(status, -1);
        shown += line + "\n" + folder.read(".shown");
    }
    return shown;
}

/// Whether another test runs the commands of a page. The first lines of the page then name it.
bool has_test_of_its_own(const std::string& page) {
    const std::size_t mark = page.find("<!-- checked by ");
    return mark != std::string::npos &&
           page.substr(mark, page.find("-->", mark) - mark).find(" console") != std::string::npos;
}

void run_page(const fs::path& page, unsigned int& count) {
    if (has_test_of_its_own(text_of_file(page))) {
        return;
    }
    const ScratchFolder folder;
    copy_examples(folder);
    for (const PageBlock& block : blocks_of(text_of_file(page))) {
        if (block.kind == "console") {
            EXPECT_EQ(run_block(folder, block.text), block.text) << page << ":" << block.line;
            ++count;
        }
    }
}

} // namespace

TEST(bkdoc_pages, the_commands_that_they_show_print_what_they_show) {
    unsigned int count = 0;
    run_page(root / "README.md", count);
    for (const auto& entry : fs::directory_iterator(root / "docs")) {
        if (entry.path().extension() == ".md") {
            run_page(entry.path(), count);
        }
    }
    EXPECT_GT(count, 10u);
}

#endif
