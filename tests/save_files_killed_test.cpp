#include "tests/support/sanitizer.h"

#if defined(__linux__) && !defined(BK_PARSER_SANITIZED_MEMORY) // a sanitizer makes hundreds of calls

#include "document/document.h"
#include "tests/support/killed_child.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

// A process that saves a document of three files is killed before and after each of its system calls. Each
// file must then be complete, old or new. The document's own file must be replaced last.

using namespace bk_parser;
using namespace killed_child;

namespace {

constexpr std::string_view names[] = {"one", "two", "document"};

void save_changed(const std::string& path) {
    LoadResult loaded = load(path);
    for (const char* const name : {"a", "b", "c"}) {
        loaded.document.root().get_entry(name)->set_int(2, 0);
    }
    if (!save(loaded.document).ok()) {
        ::_exit(1);
    }
}

} // namespace

TEST(save_files_killed,
     at_any_system_call_leaves_each_file_whole_and_the_document_new_only_with_its_includes) {
    const ScratchFolder folder;
    const std::string old_texts[] = {"b 1 // " + std::string(20000, 'x') + "\n", "c 1\n",
                                     "a 1\n#include \"one\"\n#include \"two\"\n"};
    const std::string new_texts[] = {"b 2 // " + std::string(20000, 'x') + "\n", "c 2\n",
                                     "a 2\n#include \"one\"\n#include \"two\"\n"};
    int mixed = 0;
    std::vector<long> calls;
    for (int n = 1;; ++n) {
        ASSERT_LT(n, more_than_any_needs);
        for (std::size_t i = 0; i < 3; ++i) {
            folder.write(names[i], old_texts[i]);
        }
        const End end = run_killed_at(
            n, [&folder] { save_changed(folder.path("document")); }, calls);
        if (end == End::not_traced) {
            GTEST_SKIP() << "this process may not trace another one";
        }
        int replaced = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            const std::string bytes = folder.read(names[i]);
            EXPECT_TRUE(bytes == old_texts[i] || bytes == new_texts[i]) << names[i] << " at place " << n;
            replaced += bytes == new_texts[i] ? 1 : 0;
        }
        mixed += replaced == 1 || replaced == 2 ? 1 : 0;
        if (folder.read("document") == new_texts[2]) {
            EXPECT_EQ(replaced, 3) << "place " << n;
        }
        for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
            const std::string name = entry.path().filename().string();
            if (std::find(std::begin(names), std::end(names), name) == std::end(names)) {
                EXPECT_TRUE(name.starts_with(".bk_parser_new_")) << name;
                EXPECT_NE(end, End::done) << "nothing is left by a save that ended";
                std::filesystem::remove(entry.path());
            }
        }
        if (end == End::done) {
            EXPECT_EQ(replaced, 3);
            EXPECT_GT(mixed, 0)
                << "a kill between two names leaves files of both kinds: docs/guarantees.md says so";
            return;
        }
    }
}

/// The new bytes are in a new file. Other hard links to the old file therefore keep the old bytes, whenever
/// the process is killed.
TEST(save_files_killed, at_any_system_call_leaves_the_other_hard_links_of_a_file_as_they_were) {
    const ScratchFolder folder;
    const std::string old_texts[] = {"b 1\n", "c 1\n", "a 1\n#include \"one\"\n#include \"two\"\n"};
    const std::string new_texts[] = {"b 2\n", "c 2\n", "a 2\n#include \"one\"\n#include \"two\"\n"};
    std::vector<long> calls;
    for (int n = 1;; ++n) {
        ASSERT_LT(n, more_than_any_needs);
        for (std::size_t i = 0; i < 3; ++i) {
            std::filesystem::remove(folder.path(std::string(names[i])));
            std::filesystem::remove(folder.path(std::string(names[i]) + ".link"));
            folder.write(names[i], old_texts[i]);
            std::filesystem::create_hard_link(folder.path(std::string(names[i])),
                                              folder.path(std::string(names[i]) + ".link"));
        }
        const End end = run_killed_at(
            n, [&folder] { save_changed(folder.path("document")); }, calls);
        if (end == End::not_traced) {
            GTEST_SKIP() << "this process may not trace another one";
        }
        for (std::size_t i = 0; i < 3; ++i) {
            const std::string bytes = folder.read(names[i]);
            EXPECT_TRUE(bytes == old_texts[i] || bytes == new_texts[i]) << names[i] << " at place " << n;
            EXPECT_EQ(folder.read(std::string(names[i]) + ".link"), old_texts[i]) << "at place " << n;
        }
        if (end == End::done) {
            EXPECT_EQ(folder.read("document"), new_texts[2]);
            return;
        }
        for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
            if (entry.path().filename().string().starts_with(".bk_parser_new_")) {
                std::filesystem::remove(entry.path());
            }
        }
    }
}

#endif
