#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

// The command line, the environment and the streams are in UTF-8, whatever the code page is.

namespace {

// No code page has all of these characters: Latin, Greek and Japanese.
const std::string many_scripts = "\xC3\xA9t\xC3\xA9 \xCE\xBB \xE6\x97\xA5";

void set_key(const std::string& key) {
#if defined(_WIN32)
    _wputenv_s(L"BKDOC_KEY", to_wide(key).c_str());
#else
    setenv("BKDOC_KEY", key.c_str(), 1);
#endif
}

/// Renames a file to the name in many scripts.
std::string rename_file(const ScratchFolder& folder, const std::string& from) {
    const std::u8string name(many_scripts.begin(), many_scripts.end());
    std::filesystem::rename(from, std::filesystem::path(folder.path()) / name);
    return folder.path() + "/" + many_scripts;
}

TEST(bkdoc_names, a_document_may_have_a_name_of_many_scripts) {
    const ScratchFolder folder;
    const std::string file = rename_file(folder, folder.write("a.bkd", "name \"\xC3\xA9\xE6\x97\xA5\"\n"));
    const BkdocRun run = run_bkdoc({"cat", file, "--compact"});
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_NE(run.out.find("name \"\xC3\xA9\xE6\x97\xA5\""), std::string::npos) << run.out;
}

TEST(bkdoc_names, a_fault_names_its_file_in_utf_8) {
    const ScratchFolder folder;
    const std::string file = rename_file(folder, folder.write("a.bkd", "a ?? 1\n"));
    const BkdocRun run = run_bkdoc({"check", file});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE((run.out + run.err).find(many_scripts + ":1:3") != std::string::npos) << run.out << run.err;
}

TEST(bkdoc_names, what_is_written_may_have_a_name_of_many_scripts) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", "a 1\n");
    const std::string target = folder.path() + "/" + many_scripts;
    EXPECT_EQ(run_bkdoc({"convert", file, target, "--to", "binary"}).code, 0);
    EXPECT_EQ(run_bkdoc({"same", "--content", file, target}).code, 0);
    EXPECT_EQ(folder.count(), 2u);
}

TEST(bkdoc_names, a_key_from_the_command_line_is_the_one_from_the_environment) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", "a 1\n");
    const std::string target = folder.path("b.bkd");
    ASSERT_EQ(run_bkdoc({"convert", file, target, "--to", "cipher", "--key", many_scripts}).code, 0);
    set_key(many_scripts);
    const BkdocRun run = run_bkdoc({"cat", "--compact", target});
    set_key("");
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_NE(run.out.find("a 1"), std::string::npos) << run.out;
}

} // namespace
