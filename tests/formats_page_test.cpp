#include "parser/parser_archive.h"
#include "parser/parser_file.h"
#include "tests/support/bytes.h"
#include "tests/support/cipher_reference.h"
#include "tests/support/plain_text.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/tree_equal.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>

// The worked examples of docs/formats.md. Each document of the page is encoded and compared with the bytes of
// the page. These are decoded and compared with the document.

namespace {

std::string page() {
    std::ifstream stream(BK_PARSER_SOURCE_DIR "/docs/formats.md", std::ios::binary);
    EXPECT_TRUE(stream.is_open());
    std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    std::erase(text, '\r');
    return text;
}

/// The lines between "```<kind> <name>" and "```".
std::string block(std::string_view kind, std::string_view name) {
    const std::string text = page();
    const std::string opening = "\n```" + std::string(kind) + ' ' + std::string(name) + '\n';
    const std::size_t found = text.find(opening);
    EXPECT_NE(found, std::string::npos) << opening;
    if (found == std::string::npos) {
        return {};
    }
    const std::size_t start = found + opening.size();
    return text.substr(start, text.find("```\n", start) - start);
}

/// Returns a block of one line, without its line end.
std::string line(std::string_view kind, std::string_view name) {
    const std::string text = block(kind, name);
    return text.substr(0, text.find('\n'));
}

/// The bytes of a block. Each of its lines has an offset, the bytes and their meaning, separated by two or
/// more blanks.
std::string bytes(std::string_view name) {
    std::istringstream lines(block("bytes", name));
    std::string result;
    for (std::string row; std::getline(lines, row);) {
        const std::size_t offset = row.find_first_not_of(' ');
        const std::size_t first = row.find("  ", offset) + 2;
        const std::size_t last = row.find("  ", first);
        EXPECT_EQ(row.substr(offset, first - 2 - offset), std::to_string(result.size())) << row;
        EXPECT_GT(row.find_first_not_of(' ', last), last) << "no meaning: " << row;
        const std::string digits = row.substr(first, last - first);
        EXPECT_EQ(hex(unhex(digits)), digits) << row;
        result += unhex(digits);
    }
    EXPECT_FALSE(result.empty()) << name;
    return result;
}

std::unique_ptr<ParserGroup> parsed(const std::string& text) {
    auto group = std::make_unique<ParserGroup>("root");
    group->set_text(core(text), CoreVersion(1.2), nullptr);
    return group;
}

/// The tree of a document of the page.
std::unique_ptr<ParserGroup> document(std::string_view name) {
    auto group = parsed(block("document", name));
    EXPECT_NE(group->get_entries().get_count(), 0u) << name;
    return group;
}

std::string compact(const ParserGroup& group) {
    CoreString text;
    group.get_text(text, false, false, 1);
    return plain(text);
}

CoreString key_of(std::string_view name) {
    return core(line("key", name));
}

/// The hexadecimal form of the group in that example.
std::string hexadecimal(const ParserGroup& group) {
    CoreString text;
    group.get_encrypted_text(text, key_of("hexadecimal"), false, false, 1);
    return plain(text);
}

/// The content of a new group after it has read the bytes from `position` on.
std::string decoded(const std::string& form, core_uint64 position) {
    const CoreVector<char> data = buffer(form);
    ParserGroup group("root");
    EXPECT_TRUE(group.set_binary(data, position));
    EXPECT_EQ(position, form.size());
    return compact(group);
}

} // namespace

TEST(formats_page, a_char_is_these_bytes) {
    const ParserValue value(line("document", "char").at(0));
    CoreVector<char> out;
    core_uint64 count = 0;
    value.get_binary(out, count, true);
    EXPECT_EQ(hex(out), hex(bytes("char")));

    core_uint64 position = 0;
    const std::unique_ptr<ParserValue> again(ParserValue::bin_to_value(buffer(bytes("char")), position));
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(again->get_as_char(), 'A');
    CoreVector<char> encoded;
    again->get_binary(encoded, count, true);
    EXPECT_EQ(hex(encoded), hex(bytes("char")));
}

TEST(formats_page, an_entry_with_every_type_of_the_syntax_is_these_bytes) {
    const auto group = document("entry");
    const ParserEntry& entry = *group->get_entry(0u);
    EXPECT_EQ(hex(entry.get_binary()), hex(bytes("entry")));

    const CoreVector<char> data = buffer(bytes("entry"));
    core_uint64 position = 0;
    ParserGroup again("root");
    ParserEntry* read = again.add_entry(ParserValue::bin_to_string(data, position), 0, 0);
    ASSERT_NE(read, nullptr);
    EXPECT_TRUE(read->set_binary(data, position));
    EXPECT_EQ(position, data.get_count());
    EXPECT_EQ(tree_difference(again, *group), "");
}

TEST(formats_page, a_group_with_its_name_is_these_bytes) {
    const auto group = document("group");
    EXPECT_EQ(hex(group->get_binary(true)), hex(bytes("group")));

    core_uint64 position = 0;
    EXPECT_EQ(plain(ParserValue::bin_to_string(buffer(bytes("group")), position)), "root");
    EXPECT_EQ(decoded(bytes("group"), position), compact(*group));
}

TEST(formats_page, a_binary_document_is_these_bytes) {
    ParserFile file(*document("binary").release());
    EXPECT_EQ(hex(file.get_binary()), hex(bytes("binary")));

    ParserFile again(CoreString{});
    EXPECT_TRUE(again.set_binary(buffer(bytes("binary"))));
    EXPECT_EQ(tree_difference(again.get_root(), file.get_root()), "");
}

TEST(formats_page, an_enciphered_block_is_the_text_and_the_keystream) {
    const std::string key = line("key", "block");
    const std::string seed = std::to_string(cipher_reference::seed(key));
    EXPECT_NE(page().find("has the seed " + seed + "."), std::string::npos) << seed;
    const std::string text = compact(*document("block"));
    const std::string plain_block = bytes("block-plain");
    EXPECT_EQ(hex(plain_block), hex(cipher_reference::plain_block(text.size(), text)));
    const std::string zeros(plain_block.size(), '\0');
    EXPECT_EQ(hex(bytes("block-keystream")), hex(cipher_reference::shifted(zeros, key, true)));
    EXPECT_EQ(hex(bytes("block")), hex(cipher_reference::shifted(plain_block, key, true)));
}

TEST(formats_page, an_enciphered_block_is_these_bytes) {
    const auto group = document("block");
    CoreArray<unsigned char> out;
    group->get_encrypted_text(out, key_of("block"), false, false, 1);
    EXPECT_EQ(hex(bytes_of(out)), hex(bytes("block")));

    ParserGroup again("root");
    EXPECT_TRUE(again.set_encrypted_text(byte_array(bytes("block")), key_of("block")));
    EXPECT_EQ(compact(again), compact(*group));
}

TEST(formats_page, an_enciphered_file_is_these_bytes) {
    const ScratchFolder folder;
    ParserFile file(*document("file").release());
    EXPECT_TRUE(file.write(ParserFile::MODE_TEXT, folder.core_path("written"), key_of("file")));
    EXPECT_EQ(hex(folder.read("written")), hex(bytes("file")));

    folder.write("page", bytes("file"));
    ParserFile again(CoreString{});
    EXPECT_TRUE(again.read(folder.core_path("page"), key_of("file"), nullptr));
    EXPECT_TRUE(again.is_encrypted());
    EXPECT_EQ(compact(again.get_root()), compact(file.get_root()));
    EXPECT_EQ(compact(again.get_root()), compact(*document("file")) + " #Brellwick_Serial_Version 1.2");
}

TEST(formats_page, the_hexadecimal_form_of_a_group_ends_with_its_text) {
    const auto group = document("hexadecimal");
    const std::string form = line("hexadecimal", "group");
    EXPECT_EQ(hexadecimal(*group), form);
    EXPECT_TRUE(form.ends_with(compact(*group)));

    ParserGroup again("root");
    const std::string digits = form.substr(0, form.size() - compact(*group).size());
    EXPECT_TRUE(again.set_encrypted_text(core(digits), key_of("hexadecimal")));
    EXPECT_EQ(compact(again), compact(*group));
}

TEST(formats_page, the_hexadecimal_form_of_an_entry_is_digits_alone) {
    const auto group = document("hexadecimal");
    const std::string form = line("hexadecimal", "entry");
    CoreString text;
    group->get_entry(0u)->get_encrypted_text(text, key_of("hexadecimal"), false, 1);
    EXPECT_EQ(plain(text), form);

    ParserGroup again("root");
    EXPECT_TRUE(again.set_encrypted_text(core(form), key_of("hexadecimal")));
    EXPECT_EQ(compact(again), compact(*group));
}

TEST(formats_page, an_archive_is_these_bytes) {
    const ScratchFolder folder;
    const auto group = document("archive");
    ParserArchive archive;
    ParserImpl::archive_group(*group, archive, false, nullptr);
    EXPECT_EQ(plain(ParserImpl::save_archive(archive, folder.core_path("written"), nullptr)), "");
    EXPECT_EQ(hex(folder.read("written")), hex(bytes("archive")));

    folder.write("page", bytes("archive"));
    ParserArchive loaded;
    EXPECT_EQ(plain(ParserImpl::load_archive(loaded, folder.core_path("page"), nullptr)), "");
    ParserGroup again("root");
    ParserImpl::group_set_archive(again, loaded, nullptr);
    EXPECT_EQ(compact(again), compact(*group));
}

TEST(formats_page, has_no_example_that_is_not_tested) {
    const std::string text = page();
    std::string fences;
    for (std::size_t at = text.find("\n```"); at != std::string::npos; at = text.find("\n```", at + 1)) {
        const std::string fence = text.substr(at + 4, text.find('\n', at + 1) - at - 4);
        fences += fence.empty() ? "" : fence + '\n';
    }
    EXPECT_EQ(fences, "document char\nbytes char\ndocument entry\nbytes entry\ndocument group\nbytes group\n"
                      "document binary\nbytes binary\nkey block\ndocument block\nbytes block-plain\n"
                      "bytes block-keystream\nbytes block\nkey file\ndocument file\nbytes file\n"
                      "key hexadecimal\ndocument hexadecimal\nhexadecimal group\nhexadecimal entry\n"
                      "document archive\nbytes archive\n");
}
