#include "core/sys_file.h"

#include "tests/support/plain_text.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>

namespace {

namespace fs = std::filesystem;

std::string full(const std::string& path) {
    return plain(SysFilesystem::get_full_file_path(CoreString(std::string_view(path))));
}

std::string folder_of(const char* path) {
    return plain(SysFilesystem::get_folder(CoreString(path)));
}

TEST(core_filesystem, a_file_exists_and_a_folder_or_nothing_does_not) {
    const ScratchFolder folder;
    folder.write("file", "content");
    folder.write("empty", "");
    folder.make_folder("inside");
    EXPECT_TRUE(SysFilesystem::file_exists(folder.core_path("file")));
    EXPECT_TRUE(SysFilesystem::file_exists(folder.core_path("empty")));
    EXPECT_FALSE(SysFilesystem::file_exists(folder.core_path("inside")));
    EXPECT_FALSE(SysFilesystem::file_exists(folder.core_path("missing")));
    EXPECT_FALSE(SysFilesystem::file_exists(folder.core_path("missing/file")));
    EXPECT_FALSE(SysFilesystem::file_exists(folder.core_path("file/below")));
    EXPECT_FALSE(SysFilesystem::file_exists(CoreString()));
}

TEST(core_filesystem, a_relative_path_is_looked_for_in_the_current_folder) {
    const ScratchFolder folder;
    folder.write("inside/file", "content");
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    const bool found = SysFilesystem::file_exists(CoreString("inside/file"));
    const bool stepped = SysFilesystem::file_exists(CoreString("inside/../inside/./file"));
    fs::current_path(before);
    EXPECT_TRUE(found);
    EXPECT_TRUE(stepped);
}

TEST(core_filesystem, the_full_path_of_a_relative_one_begins_with_the_current_folder) {
    const fs::path here = fs::current_path();
    EXPECT_EQ(full("file"), (here / "file").string());
    EXPECT_EQ(full("folder/file.txt"), (here / "folder" / "file.txt").string());
    EXPECT_EQ(full("./file"), (here / "file").string());
    EXPECT_EQ(full("folder/../file"), (here / "file").string());
}

TEST(core_filesystem, the_full_path_does_not_depend_on_whether_the_file_is_there) {
    const ScratchFolder folder;
    folder.write("file", "content");
    EXPECT_EQ(full(folder.path("file")), folder.full_path("file"));
    EXPECT_EQ(full(folder.path("missing")), folder.full_path("missing"));
}

#if defined(_WIN32)

TEST(core_filesystem, both_slashes_separate) {
    EXPECT_EQ(folder_of("a\\b/c.txt"), "a\\b");
    EXPECT_EQ(folder_of("a/b\\c.txt"), "a/b");
}

#else

TEST(core_filesystem, the_full_path_has_no_steps_in_it) {
    const std::pair<const char*, const char*> cases[] = {
        {"/a/b/c", "/a/b/c"},     {"/a/./b", "/a/b"},      {"/a/../b", "/b"},        {"/a/b/../../c", "/c"},
        {"/../a", "/a"},          {"/./a", "/a"},          {"/a/..b/c", "/a/..b/c"}, {"/a/.b/c", "/a/.b/c"},
        {"/a/b../c", "/a/b../c"}, {"/../../a/../b", "/b"}, {"/a/.../b", "/a/.../b"}};
    for (const auto& [path, expected] : cases) {
        EXPECT_EQ(full(path), expected) << path;
    }
}

TEST(core_filesystem, symbolic_links_are_not_followed_by_the_full_path) {
    const ScratchFolder folder;
    folder.write("real/file", "content");
    fs::create_symlink("real/file", folder.path("link"));
    EXPECT_EQ(full(folder.path("link")), folder.path("link"));
}

TEST(core_filesystem, a_link_exists_as_a_file_when_it_leads_to_one) {
    const ScratchFolder folder;
    folder.write("real/file", "content");
    fs::create_symlink("real/file", folder.path("to_file"));
    fs::create_directory_symlink("real", folder.path("to_folder"));
    fs::create_symlink("missing", folder.path("to_nothing"));
    EXPECT_TRUE(SysFilesystem::file_exists(folder.core_path("to_file")));
    EXPECT_FALSE(SysFilesystem::file_exists(folder.core_path("to_folder")));
    EXPECT_FALSE(SysFilesystem::file_exists(folder.core_path("to_nothing")));
    EXPECT_TRUE(SysFilesystem::file_exists(folder.core_path("to_folder/file")));
}

TEST(core_filesystem, a_backslash_is_a_character_of_a_name) {
    EXPECT_EQ(folder_of("a\\b"), "");
    EXPECT_EQ(folder_of("a/b\\c"), "a");
}

#endif

TEST(core_filesystem, the_folder_is_the_path_up_to_its_last_separator) {
    const std::pair<const char*, const char*> cases[] = {
        {"a/b.txt", "a"}, {"a/b/c", "a/b"}, {"/a/b", "/a"}, {"/file", "/"},     {"file", ""}, {"", ""},
        {"a/b/", "a/b"},  {"./a", "."},     {"../a", ".."}, {"a.b/c.d", "a.b"}, {"/", "/"}};
    for (const auto& [path, expected] : cases) {
        EXPECT_EQ(folder_of(path), expected) << path;
    }
}

} // namespace
