#include "core/sys_file.h"

#include "tests/support/plain_text.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

using namespace std::literals;

namespace {

class core_file : public testing::Test {
protected:
    ScratchFolder folder;
    SysFile file;

    bool open(std::string_view name, SysFile::Mode mode, SysFile::Type type = SysFile::TYPE_BINARY) {
        return file.open(folder.core_path(name), mode, type);
    }
    bool store(std::string_view name, const std::string& bytes, SysFile::Type type = SysFile::TYPE_BINARY) {
        return open(name, SysFile::MODE_WRITE, type) &&
               file.write(bytes.data(), static_cast<core_int64>(bytes.size())) ==
                   static_cast<core_int64>(bytes.size()) &&
               file.close();
    }
    std::string load(std::string_view name, SysFile::Type type = SysFile::TYPE_BINARY) {
        CoreString text("unread");
        if (!open(name, SysFile::MODE_READ, type)) {
            return "not opened";
        }
        const core_int64 size = file.read(text, file.get_size());
        EXPECT_EQ(size, text.get_length());
        EXPECT_TRUE(file.close());
        return plain(text);
    }
};

TEST_F(core_file, what_was_written_is_read_back_byte_for_byte) {
    std::string bytes;
    for (int i = 0; i < 256; ++i) {
        bytes += static_cast<char>(i);
    }
    ASSERT_TRUE(store("data.bin", bytes));
    EXPECT_EQ(folder.read("data.bin"), bytes);
    EXPECT_EQ(load("data.bin"), bytes);
}

TEST_F(core_file, the_modes_and_types_have_their_numbers) {
    EXPECT_EQ(SysFile::MODE_READ, 0u);
    EXPECT_EQ(SysFile::MODE_WRITE, 1u);
    EXPECT_EQ(SysFile::TYPE_TEXT, 0u);
    EXPECT_EQ(SysFile::TYPE_BINARY, 1u);
}

TEST_F(core_file, a_text_file_translates_line_ends_only_where_the_platform_does) {
#if defined(_WIN32)
    const std::string stored = "a\r\nb\r\n";
#else
    const std::string stored = "a\nb\n";
#endif
    ASSERT_TRUE(store("text.txt", "a\nb\n", SysFile::TYPE_TEXT));
    EXPECT_EQ(folder.read("text.txt"), stored);
    EXPECT_EQ(load("text.txt", SysFile::TYPE_TEXT), "a\nb\n");
}

TEST_F(core_file, a_binary_file_keeps_line_ends_as_they_are) {
    ASSERT_TRUE(store("text.bin", "a\r\nb\n\r\x1A"));
    EXPECT_EQ(folder.read("text.bin"), "a\r\nb\n\r\x1A");
    EXPECT_EQ(load("text.bin"), "a\r\nb\n\r\x1A");
}

#if !defined(_WIN32)
TEST_F(core_file, a_text_file_keeps_carriage_returns) {
    ASSERT_TRUE(store("text.txt", "a\r\nb\r", SysFile::TYPE_TEXT));
    EXPECT_EQ(folder.read("text.txt"), "a\r\nb\r");
    EXPECT_EQ(load("text.txt", SysFile::TYPE_TEXT), "a\r\nb\r");
}
#endif

TEST_F(core_file, a_file_that_is_not_there_is_not_opened_for_reading) {
    EXPECT_FALSE(open("missing", SysFile::MODE_READ));
    EXPECT_FALSE(open("missing", SysFile::MODE_READ, SysFile::TYPE_TEXT));
    EXPECT_EQ(folder.count(), 0u);
}

TEST_F(core_file, an_empty_path_is_not_opened) {
    EXPECT_FALSE(file.open(CoreString(), SysFile::MODE_READ, SysFile::TYPE_BINARY));
    EXPECT_FALSE(file.open(CoreString(), SysFile::MODE_WRITE, SysFile::TYPE_BINARY));
}

TEST_F(core_file, a_folder_is_not_opened_in_any_mode) {
    folder.make_folder("inside");
    for (const SysFile::Type type : {SysFile::TYPE_TEXT, SysFile::TYPE_BINARY}) {
        EXPECT_FALSE(open("inside", SysFile::MODE_READ, type));
        EXPECT_FALSE(open("inside", SysFile::MODE_WRITE, type));
    }
    EXPECT_EQ(folder.count(), 1u);
    EXPECT_TRUE(std::filesystem::is_directory(folder.path("inside")));
}

TEST_F(core_file, a_file_in_a_folder_that_is_not_there_is_not_opened_for_writing) {
    EXPECT_FALSE(open("missing/new", SysFile::MODE_WRITE));
    EXPECT_EQ(folder.count(), 0u);
}

TEST_F(core_file, the_size_is_known_after_opening_for_reading) {
    folder.write("five", "12345");
    EXPECT_EQ(file.get_size(), 0);
    ASSERT_TRUE(open("five", SysFile::MODE_READ));
    EXPECT_EQ(file.get_size(), 5);
    EXPECT_TRUE(file.close());
    ASSERT_TRUE(open("other", SysFile::MODE_WRITE));
    EXPECT_EQ(file.get_size(), 0);
}

TEST_F(core_file, an_empty_file_is_stored_and_read) {
    ASSERT_TRUE(store("empty", ""));
    EXPECT_TRUE(folder.exists("empty"));
    EXPECT_EQ(load("empty"), "");
}

TEST_F(core_file, opening_for_writing_and_closing_without_a_write_leaves_an_empty_file) {
    folder.write("old", "content");
    ASSERT_TRUE(open("old", SysFile::MODE_WRITE));
    EXPECT_TRUE(file.close());
    EXPECT_EQ(folder.read("old"), "");
}

TEST_F(core_file, a_buffer_is_filled_by_items_of_a_given_size) {
    folder.write("ten", "0123456789");
    char buffer[16] = {};
    ASSERT_TRUE(open("ten", SysFile::MODE_READ));
    EXPECT_EQ(file.read(buffer, 2, 3), 6);
    EXPECT_EQ(std::string(buffer, 6), "012345");
    EXPECT_EQ(buffer[6], '\0');
    EXPECT_EQ(file.read(buffer, 1, 16), 4);
    EXPECT_EQ(std::string(buffer, 4), "6789");
    EXPECT_EQ(file.read(buffer, 1, 16), 0);
}

TEST_F(core_file, a_string_holds_just_what_was_read_into_it) {
    folder.write("ten", "0123456789");
    CoreString text("a text that was there before and is longer");
    ASSERT_TRUE(open("ten", SysFile::MODE_READ));
    EXPECT_EQ(file.read(text, 4), 4);
    EXPECT_EQ(plain(text), "0123");
    EXPECT_EQ(file.read(text, 100), 6);
    EXPECT_EQ(plain(text), "456789");
    EXPECT_EQ(file.read(text, 100), 0);
    EXPECT_TRUE(text.is_empty());
}

TEST_F(core_file, a_string_is_written_whole_with_its_nul_bytes) {
    ASSERT_TRUE(open("data", SysFile::MODE_WRITE));
    EXPECT_EQ(file.write(CoreString("a\0b", 3)), 3);
    EXPECT_EQ(file.write(CoreString()), 0);
    EXPECT_EQ(file.write("cdef", 2), 2);
    EXPECT_TRUE(file.close());
    EXPECT_EQ(folder.read("data"), "a\0bcd"s);
}

TEST_F(core_file, a_closed_file_gives_and_takes_nothing) {
    char buffer[4] = "...";
    CoreString text;
    EXPECT_LE(file.read(buffer, 1, 3), 0);
    EXPECT_EQ(std::string(buffer), "...");
    EXPECT_LE(file.read(text, 3), 0);
    EXPECT_LE(file.write("abc", 3), 0);
    EXPECT_TRUE(file.close());
}

TEST_F(core_file, closing_twice_is_legal) {
    ASSERT_TRUE(open("data", SysFile::MODE_WRITE));
    EXPECT_TRUE(file.close());
    EXPECT_TRUE(file.close());
}

TEST_F(core_file, a_file_object_is_used_again) {
    for (const char* name : {"one", "two", "three"}) {
        EXPECT_TRUE(store(name, name));
        EXPECT_EQ(load(name), name);
    }
    EXPECT_EQ(folder.count(), 3u);
}

TEST_F(core_file, a_failed_open_leaves_the_object_closed) {
    EXPECT_FALSE(open("missing", SysFile::MODE_READ));
    char byte = '.';
    EXPECT_LE(file.read(&byte, 1, 1), 0);
    EXPECT_TRUE(file.close());
    EXPECT_TRUE(store("data", "abc"));
}

TEST_F(core_file, the_destructor_closes_the_file_and_leaves_nothing_that_was_not_closed_well) {
    folder.write("old", "old content");
    for (const char* name : {"old", "new"}) {
        SysFile written;
        ASSERT_TRUE(written.open(folder.core_path(name), SysFile::MODE_WRITE, SysFile::TYPE_BINARY));
        EXPECT_EQ(written.write("abc", 3), 3);
    }
    EXPECT_EQ(folder.read("old"), "old content");
    EXPECT_EQ(folder.count(), 1u);
}

TEST_F(core_file, eight_megabytes_in_pieces_of_every_size_are_stored_whole) {
    std::string expected;
    ASSERT_TRUE(open("large", SysFile::MODE_WRITE));
    for (std::size_t size = 1; expected.size() < 8u << 20; size = size * 3 % 200003) {
        const std::string piece(size, static_cast<char>('a' + size % 26));
        ASSERT_EQ(file.write(piece.data(), static_cast<core_int64>(size)), static_cast<core_int64>(size));
        expected += piece;
    }
    EXPECT_TRUE(file.close());
    EXPECT_EQ(std::filesystem::file_size(folder.path("large")), expected.size());
    EXPECT_TRUE(load("large") == expected);
}

TEST_F(core_file, names_are_utf_8) {
    const CoreString path = core(folder.path() + "/\xC3\xA9t\xC3\xA9 \xE6\x97\xA5.txt");
    ASSERT_TRUE(file.open(path, SysFile::MODE_WRITE, SysFile::TYPE_BINARY));
    EXPECT_EQ(file.write("abc", 3), 3);
    EXPECT_TRUE(file.close());
    EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(folder.path()) / u8"\u00E9t\u00E9 \u65E5.txt"));
    EXPECT_TRUE(SysFilesystem::file_exists(path));
}

} // namespace
