#include "core/files/sys_path_impl.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

// Both ways of writing a path are tested on every platform.

namespace {

std::string windows_path(std::string_view path, std::string_view current = "C:\\work\\here") {
    return bk::full_path(path, current, bk::PathStyle::windows);
}

std::string_view windows_folder(std::string_view path) {
    return bk::folder_of(path, bk::PathStyle::windows);
}

TEST(windows_path, a_relative_one_begins_with_the_current_folder) {
    EXPECT_EQ(windows_path("file"), "C:\\work\\here\\file");
    EXPECT_EQ(windows_path("folder/file.txt"), "C:\\work\\here\\folder\\file.txt");
    EXPECT_EQ(windows_path("folder\\..\\file"), "C:\\work\\here\\file");
    EXPECT_EQ(windows_path("..\\file"), "C:\\work\\file");
    EXPECT_EQ(windows_path("..\\..\\..\\file"), "C:\\file");
}

TEST(windows_path, one_with_a_drive_keeps_its_drive) {
    EXPECT_EQ(windows_path("D:\\a\\b"), "D:\\a\\b");
    EXPECT_EQ(windows_path("d:/a/./b/../c"), "d:\\a\\c");
    EXPECT_EQ(windows_path("D:\\"), "D:\\");
    EXPECT_EQ(windows_path("D:\\..\\a"), "D:\\a");
}

TEST(windows_path, one_from_a_root_is_absolute) {
    using bk::is_absolute_path;
    for (const std::string_view path : {"C:\\a", "c:/", "\\\\server\\share", "//server", "\\a", "/a"}) {
        EXPECT_TRUE(is_absolute_path(path, bk::PathStyle::windows)) << path;
        EXPECT_EQ(is_absolute_path(path, bk::PathStyle::posix), path[0] == '/') << path;
    }
    for (const std::string_view path : {"", "a", "a/b", "..\\a", "C:a", "C:"}) {
        EXPECT_FALSE(is_absolute_path(path, bk::PathStyle::windows)) << path;
        EXPECT_FALSE(is_absolute_path(path, bk::PathStyle::posix)) << path;
    }
}

TEST(windows_path, a_drive_without_a_root_means_the_current_folder_of_that_drive) {
    EXPECT_EQ(windows_path("C:file"), "C:\\work\\here\\file");
    EXPECT_EQ(windows_path("c:file"), "c:\\work\\here\\file");
    EXPECT_EQ(windows_path("D:file"), "D:\\file");
}

TEST(windows_path, a_root_without_a_drive_is_that_of_the_current_drive) {
    EXPECT_EQ(windows_path("\\a\\b"), "C:\\a\\b");
    EXPECT_EQ(windows_path("/a/b"), "C:\\a\\b");
    EXPECT_EQ(windows_path("\\a", "\\\\server\\share\\work"), "\\\\server\\share\\a");
}

TEST(windows_path, no_step_leaves_a_share) {
    EXPECT_EQ(windows_path("\\\\server\\share\\a\\..\\b"), "\\\\server\\share\\b");
    EXPECT_EQ(windows_path("//server/share/a"), "\\\\server\\share\\a");
    EXPECT_EQ(windows_path("\\\\server\\share\\..\\..\\a"), "\\\\server\\share\\a");
    EXPECT_EQ(windows_path("\\\\server\\share"), "\\\\server\\share\\");
    EXPECT_EQ(windows_path("file", "\\\\server\\share\\work"), "\\\\server\\share\\work\\file");
}

TEST(windows_path, a_letter_and_a_colon_are_a_drive_and_nothing_else_is) {
    EXPECT_EQ(windows_path("1:file"), "C:\\work\\here\\1:file");
    EXPECT_EQ(windows_path("\xC3\xA9:file"), "C:\\work\\here\\\xC3\xA9:file");
    EXPECT_EQ(windows_path("ab:file"), "C:\\work\\here\\ab:file");
}

TEST(windows_path, doubled_separators_count_once) {
    EXPECT_EQ(windows_path("a\\\\b//c"), "C:\\work\\here\\a\\b\\c");
    EXPECT_EQ(windows_path("D:\\\\a"), "D:\\a");
}

TEST(windows_path, steps_back_go_with_the_names_before_them) {
    const auto plain = [](std::string_view path) {
        return bk::without_steps_back(path, bk::PathStyle::windows);
    };
    EXPECT_EQ(plain("shots\\..\\lib/a.bkd"), "lib/a.bkd");
    EXPECT_EQ(plain("C:\\x\\..\\a"), "C:\\a");
    EXPECT_EQ(plain("C:\\..\\a"), "C:\\..\\a");
    EXPECT_EQ(plain("\\\\server\\share\\..\\a"), "\\\\server\\share\\..\\a");
}

TEST(posix_path, steps_back_go_with_the_names_before_them) {
    const auto plain = [](std::string_view path) {
        return bk::without_steps_back(path, bk::PathStyle::posix);
    };
    EXPECT_EQ(plain("shots/../lib/a.bkd"), "lib/a.bkd");
    EXPECT_EQ(plain("./shots//..//lib/a.bkd"), "./lib/a.bkd");
    EXPECT_EQ(plain("a/b/../../c"), "c");
    EXPECT_EQ(plain("a/./../c"), "c");
    EXPECT_EQ(plain("../a/../../c"), "../../c");
    EXPECT_EQ(plain("/../a"), "/../a");
    EXPECT_EQ(plain("/a/../b"), "/b");
    EXPECT_EQ(plain("a/..b/c..d"), "a/..b/c..d");
    EXPECT_EQ(plain("a/.."), ".");
    EXPECT_EQ(plain(""), "");
}

TEST(windows_path, an_empty_one_stays_empty) {
    EXPECT_EQ(windows_path(""), "");
}

TEST(windows_path, the_folder_ends_before_the_last_separator_of_either_kind) {
    EXPECT_EQ(windows_folder("C:\\a\\b.txt"), "C:\\a");
    EXPECT_EQ(windows_folder("a\\b/c.txt"), "a\\b");
    EXPECT_EQ(windows_folder("a/b\\c.txt"), "a/b");
    EXPECT_EQ(windows_folder("file"), "");
    EXPECT_EQ(windows_folder("C:file"), "");
}

TEST(windows_path, the_folder_of_what_stands_in_a_root_is_the_root_whole) {
    EXPECT_EQ(windows_folder("C:\\file"), "C:\\");
    EXPECT_EQ(windows_folder("\\file"), "\\");
    EXPECT_EQ(windows_folder("\\\\server\\share\\file"), "\\\\server\\share\\");
    EXPECT_EQ(windows_folder("\\\\server\\share\\a\\file"), "\\\\server\\share\\a");
}

TEST(posix_path, backslashes_and_drives_are_parts_of_names) {
    EXPECT_EQ(bk::full_path("C:\\a", "/work", bk::PathStyle::posix), "/work/C:\\a");
    EXPECT_EQ(bk::full_path("//a//b", "/work", bk::PathStyle::posix), "/a/b");
    EXPECT_EQ(bk::folder_of("a/b\\c", bk::PathStyle::posix), "a");
}

} // namespace
