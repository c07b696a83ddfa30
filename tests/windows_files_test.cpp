#include "core/sys_file.h"
#include "parser/parser_archive.h"
#include "parser/parser_file.h"

#include "tests/support/document_folder.h"
#include "tests/support/wide_text.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <type_traits>
#include <vector>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

// Specific to Windows: wide names, backslashes, drives, text files with CR LF, and files that other programs
// hold open.

namespace {

namespace fs = std::filesystem;
using Messages = std::vector<std::string>;

// No code page has all of these characters: Latin, Greek, Japanese, and one above U+FFFF.
const std::string many_scripts = "\xC3\xA9t\xC3\xA9 \xCE\xBB \xE6\x97\xA5 \xF0\x9D\x84\x9E";

/// While it lives, a file is open as if another program held it.
class HeldFile {
public:
    HeldFile(const std::string& path, DWORD share)
        : file_(CreateFileW(to_wide(path).c_str(), GENERIC_READ | GENERIC_WRITE, share, nullptr,
                            OPEN_EXISTING, 0, nullptr)) {}
    ~HeldFile() { CloseHandle(file_); }
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;
    bool is_open() const { return file_ != INVALID_HANDLE_VALUE; }

private:
    HANDLE file_;
};

bool is_there(const std::string& path) {
    return GetFileAttributesW(to_wide(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool store(const std::string& path, const std::string& text, SysFile::Type type = SysFile::TYPE_BINARY) {
    SysFile file;
    return file.open(core(path), SysFile::MODE_WRITE, type) &&
           file.write(core(text)) == static_cast<core_int64>(text.size()) && file.close();
}

std::string load(const std::string& path, SysFile::Type type = SysFile::TYPE_BINARY) {
    SysFile file;
    CoreString text;
    if (!file.open(core(path), SysFile::MODE_READ, type)) {
        return "not opened";
    }
    file.read(text, file.get_size());
    return plain(text);
}

std::string backslashes(std::string path) {
    for (char& character : path) {
        character = character == '/' ? '\\' : character;
    }
    return path;
}

bool write_text(const std::string& path, const std::string& text) {
    ParserFile file(core(path));
    file.get_root().set_text(core(text), CoreVersion(1.2), nullptr);
    return file.write(ParserFile::MODE_TEXT, CoreString(), CoreString());
}

Messages messages_of_writing(const std::string& path) {
    const RecordingLog log;
    write_text(path, "a 1");
    Messages messages;
    for (const LoggedMessage& message : log.messages) {
        messages.push_back(message.text);
    }
    return messages;
}

TEST(windows_files, lines_and_columns_are_unsigned_long_of_32_bits) {
    EXPECT_TRUE((std::is_same_v<core_ulong, unsigned long>));
    EXPECT_EQ(sizeof(core_ulong), 4u);
}

TEST(windows_files, names_of_many_scripts_are_stored_under_those_names) {
    const ScratchFolder folder;
    const std::string path = folder.path() + "/" + many_scripts + ".bkd";
    ASSERT_TRUE(store(path, "content"));
    EXPECT_TRUE(is_there(path));
    EXPECT_TRUE(SysFilesystem::file_exists(core(path)));
    EXPECT_EQ(load(path), "content");
    ASSERT_TRUE(store(path, "replaced"));
    EXPECT_EQ(load(path), "replaced");
    EXPECT_EQ(folder.count(), 1u);
}

TEST(windows_files, a_document_and_its_includes_may_have_names_of_many_scripts) {
    const ScratchFolder folder;
    const std::string inner = folder.path() + "/" + many_scripts;
    fs::create_directory(fs::path(to_wide(inner)));
    ASSERT_TRUE(store(inner + "/" + many_scripts + ".bkd", "b 2\n"));
    ASSERT_TRUE(store(folder.path("main.bkd"), "a 1 #include \"" + many_scripts + ".bkd\"\n"));
    ParserFile file(folder.core_path("main.bkd"));
    file.set_search_paths({core(inner)});
    const Reading reading = DocumentFolder::read_into(file, "");
    EXPECT_TRUE(reading.result);
    EXPECT_EQ(reading.messages, Messages{});
    EXPECT_EQ(reading.tree, " a 1 b 2");
    EXPECT_EQ(reading.dependencies,
              Messages{folder.full_path("") + many_scripts + "\\" + many_scripts + ".bkd"});
}

TEST(windows_files, a_name_that_is_not_utf_8_is_no_file) {
    const ScratchFolder folder;
    const std::string path = folder.path() + "/\xE9.bkd";
    EXPECT_FALSE(store(path, "content"));
    EXPECT_FALSE(SysFilesystem::file_exists(core(path)));
    EXPECT_EQ(folder.count(), 0u);
}

TEST(windows_files, the_current_folder_may_have_a_name_of_many_scripts) {
    const ScratchFolder folder;
    const std::string inner = folder.path() + "/" + many_scripts;
    const fs::path before = fs::current_path();
    fs::create_directory(fs::path(to_wide(inner)));
    fs::current_path(fs::path(to_wide(inner)));
    const std::string full = plain(SysFilesystem::get_full_file_path("file"));
    const bool stored = store("file", "content");
    fs::current_path(before);
    EXPECT_EQ(full, backslashes(inner) + "\\file");
    EXPECT_TRUE(stored);
    EXPECT_TRUE(is_there(inner + "/file"));
}

TEST(windows_files, backslashes_and_slashes_separate_alike_in_every_name) {
    const DocumentFolder folder;
    folder.write("parts/deep/x.bkd", "b 2\n");
    for (const char* name : {"deep/x.bkd", "deep\\x.bkd", "deep\\.\\..\\deep/x.bkd"}) {
        folder.write("main.bkd", "#include \"" + std::string(name) + "\"\n");
        ParserFile file(core(backslashes(folder.path("main.bkd"))));
        file.set_search_paths({core(backslashes(folder.path("parts")) + "\\")});
        const Reading reading = DocumentFolder::read_into(file, "");
        EXPECT_EQ(reading.tree, " b 2") << name;
        EXPECT_EQ(reading.dependencies, Messages{folder.full_path("parts/deep/x.bkd")}) << name;
    }
}

TEST(windows_files, a_file_is_one_however_its_name_is_spelt_and_never_depends_on_itself) {
    const DocumentFolder folder;
    folder.write("main.bkd", "a 1 #include \"main.bkd\"\n");
    ParserFile file(core(backslashes(folder.path("main.bkd"))));
    file.set_search_paths({core(folder.path())});
    const Reading reading = DocumentFolder::read_into(file, "");
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.messages, Messages{"File 'main.bkd' includes itself.\n"});
    EXPECT_EQ(reading.dependencies, Messages{});
}

TEST(windows_files, a_path_may_be_longer_than_260_characters) {
    const ScratchFolder folder;
    std::string path = backslashes(folder.path());
    for (int i = 0; i < 6; ++i) {
        path += "\\" + std::string(60, static_cast<char>('a' + i));
        ASSERT_NE(CreateDirectoryW(to_wide("\\\\?\\" + path).c_str(), nullptr), 0) << path;
    }
    const std::string file = path + "\\file.bkd";
    ASSERT_GT(file.size(), 300u);
    EXPECT_TRUE(write_text(file, "a 1"));
    EXPECT_TRUE(SysFilesystem::file_exists(core(file)));
    ParserFile again(core(file));
    EXPECT_EQ(DocumentFolder::read_into(again, "").tree, " a 1");
    EXPECT_TRUE(store(file, "b 2\n"));
    EXPECT_EQ(load("\\\\?\\" + file), "b 2\n");
    EXPECT_NE(DeleteFileW(to_wide("\\\\?\\" + file).c_str()), 0);
    for (int i = 0; i < 6; ++i) { // the destructor of the folder does not support such paths
        EXPECT_NE(RemoveDirectoryW(to_wide("\\\\?\\" + path).c_str()), 0) << path;
        path.resize(path.size() - 61);
    }
}

TEST(windows_files, a_share_that_is_not_there_holds_no_file) {
    const std::string path = "\\\\no_such_server_of_ours\\share\\file.bkd";
    EXPECT_FALSE(SysFilesystem::file_exists(core(path)));
    EXPECT_FALSE(store(path, "content"));
    EXPECT_EQ(plain(SysFilesystem::get_folder(core(path))), "\\\\no_such_server_of_ours\\share\\");
}

TEST(windows_files, names_of_devices_are_no_documents) {
    EXPECT_TRUE(store("NUL", "content")); // this device takes everything
    EXPECT_EQ(load("NUL"), "");
    EXPECT_EQ(plain(SysFilesystem::get_full_file_path("D:\\a\\..\\b")), "D:\\b");
}

TEST(windows_files, a_document_has_cr_lf_on_the_disk_and_reads_the_same_from_either) {
    const ScratchFolder folder;
    ASSERT_TRUE(write_text(folder.path("a.bkd"), "a 1 b { c 2 }"));
    const std::string stored = folder.read("a.bkd");
    EXPECT_NE(stored.find("\r\n"), std::string::npos);
    EXPECT_EQ(stored.find("\r\r"), std::string::npos);
    std::string bare = stored;
    std::erase(bare, '\r');
    EXPECT_EQ(std::count(stored.begin(), stored.end(), '\n'), std::count(stored.begin(), stored.end(), '\r'));
    folder.write("b.bkd", bare);
    ParserFile first(folder.core_path("a.bkd"));
    ParserFile second(folder.core_path("b.bkd"));
    const Reading from_cr_lf = DocumentFolder::read_into(first, "");
    const Reading from_lf = DocumentFolder::read_into(second, "");
    EXPECT_EQ(from_cr_lf.expanded, from_lf.expanded);
    EXPECT_EQ(from_cr_lf.tree, " a 1 b { c 2 }");
    EXPECT_EQ(from_lf.tree, " a 1 b { c 2 }");
}

TEST(windows_files, the_places_of_entries_do_not_depend_on_the_line_ends) {
    const ScratchFolder folder;
    folder.write("a.bkd", "a 1\r\n\r\n  b 2\r\n");
    ParserFile file(folder.core_path("a.bkd"));
    ASSERT_TRUE(file.read("", "", nullptr));
    const ParserEntry* const entry = file.get_root().get_entry("b");
    ASSERT_NE(entry, nullptr);
    folder.write("b.bkd", "a 1\n\n  b 2\n");
    ParserFile other(folder.core_path("b.bkd"));
    ASSERT_TRUE(other.read("", "", nullptr));
    EXPECT_EQ(entry->get_line(), other.get_root().get_entry("b")->get_line());
    EXPECT_EQ(entry->get_column(), other.get_root().get_entry("b")->get_column());
}

TEST(windows_files, enciphered_documents_keep_every_byte) {
    const ScratchFolder folder;
    ParserFile file(folder.core_path("a.bkd"));
    file.get_root().add_entry("a", 0, 0)->add_string("line\r\nline\n\x1A");
    ASSERT_TRUE(file.write(ParserFile::MODE_TEXT, CoreString(), "key"));
    ParserFile again(folder.core_path("a.bkd"));
    ASSERT_TRUE(again.read("", "key", nullptr));
    EXPECT_EQ(plain(again.get_root().get_entry("a")->get_string(0)), "line\r\nline\n\x1A");
}

TEST(windows_files, a_file_that_another_program_holds_is_told_to_be_unopened) {
    const DocumentFolder folder;
    folder.write("main.bkd", "a 1\n");
    const HeldFile held(folder.path("main.bkd"), 0);
    ASSERT_TRUE(held.is_open());
    ParserFile file(folder.core_path("main.bkd"));
    const Reading reading = DocumentFolder::read_into(file, "");
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.messages, Messages{"Failed to open file '" + folder.path("main.bkd") + "'.\n"});
}

TEST(windows_files, an_include_that_another_program_holds_is_told_to_be_unopened) {
    const DocumentFolder folder;
    folder.write("x.bkd", "b 2\n");
    const HeldFile held(folder.path("x.bkd"), 0);
    ASSERT_TRUE(held.is_open());
    const Reading reading = folder.read_text("a 1 #include \"x.bkd\"\n");
    EXPECT_FALSE(reading.result);
    EXPECT_EQ(reading.messages, Messages{"Failed to open file 'x.bkd'.\n"});
}

TEST(windows_files, a_file_that_another_program_holds_is_not_replaced_and_nothing_is_left_beside_it) {
    const ScratchFolder folder;
    folder.write("data.bkd", "old");
    for (const DWORD share : {DWORD{0}, DWORD{FILE_SHARE_READ}, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE}}) {
        const HeldFile held(folder.path("data.bkd"), share);
        ASSERT_TRUE(held.is_open());
        EXPECT_FALSE(store(folder.path("data.bkd"), "new")) << share;
        EXPECT_EQ(messages_of_writing(folder.path("data.bkd")),
                  Messages{"ParserFile.write: Can't save project ''.\n"})
            << share;
        EXPECT_EQ(folder.count(), 1u) << share;
    }
    EXPECT_EQ(folder.read("data.bkd"), "old");
    EXPECT_TRUE(store(folder.path("data.bkd"), "new"));
    EXPECT_EQ(folder.read("data.bkd"), "new");
}

TEST(windows_files, an_archive_that_another_program_holds_is_not_loaded) {
    const ScratchFolder folder;
    const std::string path = folder.path("a.kwaf");
    ParserGroup group("root");
    group.add_entry("a", 0, 0)->add_int(1);
    ParserArchive archive;
    ParserImpl::archive_group(group, archive, false, nullptr);
    const RecordingLog log;
    ASSERT_TRUE(ParserImpl::save_archive(archive, core(path), nullptr).is_empty());
    const HeldFile held(path, 0);
    ASSERT_TRUE(held.is_open());
    ParserArchive loaded;
    EXPECT_FALSE(ParserImpl::load_archive(loaded, core(path), nullptr).is_empty());
}

TEST(windows_files, a_file_that_must_not_be_written_is_not_replaced) {
    const ScratchFolder folder;
    folder.write("data.bkd", "old");
    const std::wstring path = to_wide(folder.path("data.bkd"));
    ASSERT_NE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY), 0);
    EXPECT_FALSE(store(folder.path("data.bkd"), "new"));
    EXPECT_EQ(folder.read("data.bkd"), "old");
    EXPECT_EQ(folder.count(), 1u);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

} // namespace
