#include "core/sys_file.h"

#include "tests/support/plain_text.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <thread>

#if !defined(_WIN32)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

namespace fs = std::filesystem;

class core_file_replace : public testing::Test {
protected:
    ScratchFolder folder;
    SysFile file;

    bool open(std::string_view name) {
        return file.open(folder.core_path(name), SysFile::MODE_WRITE, SysFile::TYPE_BINARY);
    }
    bool store(std::string_view name, const std::string& bytes) {
        return open(name) && file.write(CoreString(std::string_view(bytes))) > 0 && file.close();
    }
};

TEST_F(core_file_replace, the_old_file_stays_as_it_was_until_close) {
    folder.write("data", "old");
    ASSERT_TRUE(open("data"));
    EXPECT_EQ(folder.read("data"), "old");
    EXPECT_EQ(file.write("new content", 11), 11);
    EXPECT_EQ(folder.read("data"), "old");
    EXPECT_TRUE(file.close());
    EXPECT_EQ(folder.read("data"), "new content");
}

TEST_F(core_file_replace, a_new_file_appears_with_close) {
    ASSERT_TRUE(open("data"));
    EXPECT_EQ(file.write("abc", 3), 3);
    EXPECT_FALSE(folder.exists("data"));
    EXPECT_TRUE(file.close());
    EXPECT_EQ(folder.read("data"), "abc");
}

TEST_F(core_file_replace, nothing_else_is_left_in_the_folder) {
    folder.write("data", "old");
    ASSERT_TRUE(store("data", "new"));
    ASSERT_TRUE(store("second", "new"));
    EXPECT_EQ(folder.count(), 2u);
}

TEST_F(core_file_replace, a_shorter_content_replaces_a_longer_one_whole) {
    folder.write("data", std::string(100000, 'x'));
    ASSERT_TRUE(store("data", "y"));
    EXPECT_EQ(folder.read("data"), "y");
}

TEST_F(core_file_replace, of_two_writers_the_last_to_close_wins) {
    folder.write("data", "old");
    SysFile other;
    ASSERT_TRUE(open("data"));
    ASSERT_TRUE(other.open(folder.core_path("data"), SysFile::MODE_WRITE, SysFile::TYPE_BINARY));
    EXPECT_EQ(file.write("first", 5), 5);
    EXPECT_EQ(other.write("second", 6), 6);
    EXPECT_TRUE(other.close());
    EXPECT_EQ(folder.read("data"), "second");
    EXPECT_TRUE(file.close());
    EXPECT_EQ(folder.read("data"), "first");
    EXPECT_EQ(folder.count(), 1u);
}

#if !defined(_WIN32)

TEST_F(core_file_replace, a_reader_keeps_what_it_opened) {
    folder.write("data", "old content");
    SysFile reader;
    ASSERT_TRUE(reader.open(folder.core_path("data"), SysFile::MODE_READ, SysFile::TYPE_BINARY));
    ASSERT_TRUE(store("data", "new"));
    CoreString text;
    EXPECT_EQ(reader.read(text, reader.get_size()), 11);
    EXPECT_EQ(plain(text), "old content");
}

TEST_F(core_file_replace, a_file_named_without_a_folder_is_stored_in_the_current_one) {
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    const bool opened = file.open(CoreString("plain"), SysFile::MODE_WRITE, SysFile::TYPE_BINARY);
    const bool stored = opened && file.write("abc", 3) == 3 && file.close();
    fs::current_path(before);
    EXPECT_TRUE(stored);
    EXPECT_EQ(folder.read("plain"), "abc");
    EXPECT_EQ(folder.count(), 1u);
}

TEST_F(core_file_replace, the_permissions_of_the_old_file_stay) {
    for (const mode_t mode : {0600u, 0640u, 0755u, 0666u, 0604u}) {
        folder.write("data", "old");
        ASSERT_EQ(chmod(folder.path("data").c_str(), mode), 0);
        ASSERT_TRUE(store("data", "new"));
        struct stat info {};
        ASSERT_EQ(stat(folder.path("data").c_str(), &info), 0);
        EXPECT_EQ(info.st_mode & 07777u, mode);
        EXPECT_EQ(folder.read("data"), "new");
    }
}

TEST_F(core_file_replace, a_new_file_gets_the_permissions_that_the_process_gives_to_new_files) {
    for (const mode_t mask : {022u, 077u, 0u}) {
        const mode_t before = umask(mask);
        const std::string name = "file" + std::to_string(mask);
        const bool stored = store(name, "new");
        umask(before);
        ASSERT_TRUE(stored);
        struct stat info {};
        ASSERT_EQ(stat(folder.path(name).c_str(), &info), 0);
        EXPECT_EQ(info.st_mode & 07777u, 0666u & ~mask);
    }
}

TEST_F(core_file_replace, the_target_of_a_symbolic_link_is_what_is_replaced) {
    folder.write("real/data", "old");
    fs::create_symlink(folder.path("real/data"), folder.path("absolute"));
    fs::create_symlink("real/data", folder.path("relative"));
    fs::create_symlink("relative", folder.path("chain"));
    for (const char* name : {"absolute", "relative", "chain"}) {
        ASSERT_TRUE(store(name, name));
        EXPECT_EQ(folder.read("real/data"), name);
        EXPECT_TRUE(fs::is_symlink(folder.path(name)));
        EXPECT_FALSE(fs::is_symlink(folder.path("real/data")));
    }
    EXPECT_EQ(folder.count(), 4u);
}

TEST_F(core_file_replace, a_link_to_nothing_gets_its_target) {
    fs::create_symlink("fresh", folder.path("link"));
    ASSERT_TRUE(store("link", "new"));
    EXPECT_TRUE(fs::is_symlink(folder.path("link")));
    EXPECT_EQ(folder.read("fresh"), "new");
    EXPECT_FALSE(fs::is_symlink(folder.path("fresh")));
    EXPECT_EQ(folder.count(), 2u);
}

TEST_F(core_file_replace, links_that_lead_in_a_circle_are_not_opened) {
    fs::create_symlink("two", folder.path("one"));
    fs::create_symlink("one", folder.path("two"));
    EXPECT_FALSE(open("one"));
    EXPECT_TRUE(fs::is_symlink(folder.path("one")));
    EXPECT_EQ(folder.count(), 2u);
}

TEST_F(core_file_replace, a_file_in_a_linked_folder_is_replaced_there) {
    folder.write("real/data", "old");
    fs::create_directory_symlink("real", folder.path("linked"));
    ASSERT_TRUE(store("linked/data", "new"));
    EXPECT_EQ(folder.read("real/data"), "new");
    EXPECT_TRUE(fs::is_symlink(folder.path("linked")));
}

TEST_F(core_file_replace, a_link_to_a_folder_is_not_opened) {
    folder.make_folder("real");
    fs::create_directory_symlink("real", folder.path("linked"));
    EXPECT_FALSE(open("linked"));
    EXPECT_EQ(folder.count(), 2u);
}

TEST_F(core_file_replace, a_pipe_is_written_in_place) {
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::string got;
    std::thread reader([&] {
        const int handle = ::open(pipe.c_str(), O_RDONLY);
        char buffer[64];
        for (ssize_t size = 0; (size = ::read(handle, buffer, sizeof(buffer))) > 0;) {
            got.append(buffer, static_cast<std::size_t>(size));
        }
        ::close(handle);
    });
    const bool stored = store("pipe", "through the pipe");
    if (!stored) {
        ::close(::open(pipe.c_str(), O_WRONLY | O_NONBLOCK));
    }
    reader.join();
    EXPECT_TRUE(stored);
    EXPECT_EQ(got, "through the pipe");
    EXPECT_TRUE(fs::is_fifo(pipe));
    EXPECT_EQ(folder.count(), 1u);
}

TEST_F(core_file_replace, a_device_is_written_in_place) {
    ASSERT_TRUE(file.open(CoreString("/dev/null"), SysFile::MODE_WRITE, SysFile::TYPE_BINARY));
    EXPECT_EQ(file.write("abc", 3), 3);
    EXPECT_TRUE(file.close());
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(core_file_replace, a_device_without_space_does_not_close_well) {
    if (!fs::is_character_file("/dev/full")) {
        GTEST_SKIP() << "this platform has no device that is always full";
    }
    ASSERT_TRUE(file.open(CoreString("/dev/full"), SysFile::MODE_WRITE, SysFile::TYPE_BINARY));
    const bool taken = file.write("abc", 3) == 3;
    const bool closed = file.close();
    EXPECT_FALSE(taken && closed);
}

TEST_F(core_file_replace, a_folder_without_permission_refuses_a_new_file) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "nothing is refused to this user";
    }
    folder.make_folder("locked");
    fs::permissions(folder.path("locked"), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_FALSE(open("locked/data"));
    fs::permissions(folder.path("locked"), fs::perms::owner_all);
}

#endif

} // namespace
