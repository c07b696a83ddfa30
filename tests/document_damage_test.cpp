#include "tests/support/loaded_document.h"
#include "tests/support/stored_forms.h"

#include <gtest/gtest.h>

// Loading a truncated or damaged document gives a problem and the content before the damage.

using bk_parser::load;
using bk_parser::LoadOptions;
using bk_parser::LoadResult;

namespace {

std::string many_entries(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += "entry_" + std::to_string(i) + " " + std::to_string(i) + " ";
    }
    return text;
}

} // namespace

TEST(document_damage, a_binary_document_that_is_cut_off_gives_the_entries_that_are_whole) {
    const ScratchFolder folder;
    const std::string bytes = StoredForms("a 1 b { c 2 d 3 } e 4").binary();
    const std::string path = folder.write("cut.bin", bytes.substr(0, bytes.size() - 25));
    const LoadResult result = load(path);
    EXPECT_EQ(told(result),
              Lines{"cut.bin: error: " + path + " is cut off: " + std::to_string(bytes.size()) +
                    " bytes announced, " + std::to_string(bytes.size() - 25) + " present [cut-off]"});
    EXPECT_EQ(tree_of(result), " a 1 b { c 2 }");
}

TEST(document_damage, a_binary_document_that_is_cut_off_behind_a_group_keeps_the_group) {
    ParserGroup root("root");
    ParserEntry& entry = *root.add_entry("b", 0, 0);
    entry.add_group(nullptr)->add_entry("c", 0, 0)->add_int(2);
    entry.add_int(3);
    const CoreVector<char> data = root.get_binary(false);
    const std::string whole = "UDFS" + std::string(data.get_data(), data.get_count());
    const std::size_t int_size = 5; // with its tag
    const LoadResult result = bk_parser::parse(whole.substr(0, whole.size() - int_size));
    ASSERT_EQ(result.problems.size(), 1u);
    EXPECT_EQ(result.problems[0].code, "cut-off");
    EXPECT_EQ(tree_of(result), " b { c 2 }");
}

TEST(document_damage, numbers_are_told_in_groups_of_three_digits) {
    const std::string bytes = StoredForms(many_entries(100)).binary();
    ASSERT_EQ(bytes.size() / 1000, 2u);
    const LoadResult result = bk_parser::parse(bytes.substr(0, 1988));
    EXPECT_EQ(told(result),
              Lines{": error: the document is cut off: 2," + std::to_string(bytes.size() % 1000) +
                    " bytes announced, 1,988 present [cut-off]"});
}

TEST(document_damage, every_cut_of_a_binary_document_is_told_once) {
    const std::string bytes = StoredForms("a 1 b { c \"text\" 2.5 d { e yes } } f 0x01FF00010000").binary();
    for (std::size_t size = 4; size < bytes.size(); ++size) {
        const LoadResult result = bk_parser::parse(bytes.substr(0, size));
        ASSERT_EQ(result.problems.size(), 1u) << size;
        EXPECT_EQ(result.problems[0].code, "cut-off") << size;
    }
}

TEST(document_damage, a_damaged_binary_document_is_told_with_the_place) {
    std::string bytes = StoredForms("a 1 b 2 c 3").binary();
    const std::size_t tag = 12 + 2 + 8 + 1;
    bytes[tag] = 99;
    const LoadResult result = bk_parser::parse(bytes);
    EXPECT_EQ(told(result),
              Lines{": error: the document is damaged at byte 23: a value of an unknown kind; what "
                    "follows is not read [damaged]"});
    EXPECT_EQ(tree_of(result), "");
}

TEST(document_damage, every_size_of_a_binary_document_is_checked) {
    const std::string bytes = StoredForms("a 1 b { c 2 } d 3").binary();
    for (std::size_t at = 4; at < bytes.size(); ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            std::string flipped = bytes;
            flipped[at] = static_cast<char>(flipped[at] ^ (1 << bit));
            const LoadResult result = bk_parser::parse(flipped);
            EXPECT_TRUE(!result.ok() || tree_of(result) != tree_of(bk_parser::parse(bytes)) ||
                        bytes[at] == '\0')
                << at << " " << bit << ": a change is told, or shows in the tree, or is in a reserved byte";
        }
    }
}

TEST(document_damage, bytes_behind_the_end_are_told) {
    StoredForms forms("a 1");
    EXPECT_EQ(told(bk_parser::parse(forms.binary() + "xyz")),
              Lines{": error: 3 bytes after the end of the document are not read [bytes-after-end]"});
    EXPECT_EQ(told(bk_parser::parse(forms.archive() + "x")),
              Lines{": error: 1 byte after the end of the document is not read [bytes-after-end]"});
}

TEST(document_damage, bytes_behind_an_enciphered_text_are_told) {
    StoredForms forms("a 1");
    const ScratchFolder folder;
    const std::string path = folder.write("stored", forms.enciphered("k") + "wxyz");
    LoadOptions options;
    options.key = "k";
    const std::string message = "4 bytes after the end of " + path + " are not read";
    const LoadResult loaded = bk_parser::load(path, options);
    ASSERT_EQ(loaded.problems.size(), 1u) << testing::PrintToString(told(loaded));
    EXPECT_EQ(loaded.problems[0].code, "bytes-after-end");
    EXPECT_EQ(loaded.problems[0].message, message);
    EXPECT_EQ(tree_of(loaded), " a 1");
    const LoadResult included = bk_parser::load(folder.write("main", "#include \"stored\"\n"), options);
    ASSERT_EQ(included.problems.size(), 1u) << testing::PrintToString(told(included));
    EXPECT_EQ(included.problems[0].message, message);
    EXPECT_EQ(included.problems[0].line, 1u);
    EXPECT_EQ(told(bk_parser::parse(forms.enciphered("k") + "wxyz", options)),
              Lines{": error: 4 bytes after the end of the document are not read [bytes-after-end]"});
}

TEST(document_damage, an_archive_that_is_cut_off_gives_the_words_that_are_there) {
    const std::string bytes = StoredForms("a 1 b { c 2 d 3 } e 4").archive();
    const LoadResult result = bk_parser::parse(bytes.substr(0, bytes.size() - 5));
    EXPECT_EQ(told(result),
              Lines{": error: the document is cut off: " + std::to_string(bytes.size()) +
                    " bytes announced, " + std::to_string(bytes.size() - 5) + " present [cut-off]"});
    EXPECT_EQ(tree_of(result), " a 1 b { c 2 }");
    EXPECT_EQ(told(bk_parser::parse(bytes.substr(0, 10))),
              Lines{": error: the document is cut off: 20 bytes announced, 10 present [cut-off]"});
    EXPECT_EQ(told(bk_parser::parse(bytes.substr(0, 18))),
              Lines{": error: the document is cut off: it ends inside its list of words [cut-off]"});
}

TEST(document_damage, words_of_an_archive_that_name_no_string_are_told) {
    std::string bytes = StoredForms("a 1 b 2").archive();
    bytes.back() = 77;
    bytes[bytes.size() - 2] = 78;
    const LoadResult result = bk_parser::parse(bytes);
    EXPECT_EQ(told(result),
              Lines{": error: the document is damaged: 2 words are left out, because its list of words has "
                    "no such number [damaged]"});
    EXPECT_EQ(tree_of(result), " a 1");
}

TEST(document_damage, an_archive_past_a_limit_is_refused) {
    const std::string bytes = StoredForms(many_entries(100)).archive();
    LoadOptions options;
    options.limits.archive_size = 100;
    const LoadResult result = bk_parser::parse(bytes, options);
    ASSERT_EQ(result.problems.size(), 1u);
    EXPECT_EQ(result.problems[0].code, "too-large");
    EXPECT_EQ(tree_of(result), "");
}

TEST(document_damage, groups_nested_too_deeply_are_told_in_every_form) {
    StoredForms forms("a { b { c { d 1 } } } e 2");
    LoadOptions options;
    options.limits.nesting_depth = 2;
    for (const std::string& bytes : {forms.text(), forms.binary(), forms.archive()}) {
        const LoadResult result = bk_parser::parse(bytes, options);
        ASSERT_EQ(result.problems.size(), 1u) << testing::PrintToString(told(result));
        EXPECT_EQ(result.problems[0].code, "nested-too-deeply");
        EXPECT_NE(result.problems[0].message.find("ParserLimits::nesting_depth"), std::string::npos)
            << result.problems[0].message;
    }
}

TEST(document_damage, an_enciphered_document_tells_a_wrong_key_from_a_cut) {
    const ScratchFolder folder;
    const std::string bytes = StoredForms("a 1 b 2").enciphered("lantern");
    const std::string path = folder.write("x.bkd", bytes);
    LoadOptions options;
    EXPECT_EQ(told(load(path)),
              Lines{"x.bkd: error: " + path + " is encrypted, and no key is given [no-key]"});
    options.key = "lamp";
    EXPECT_EQ(told(load(path, options)),
              Lines{"x.bkd: error: " + path + ": wrong key, or a damaged file [wrong-key]"});
    options.key = "lantern";
    for (std::size_t size = 12; size < bytes.size(); ++size) {
        folder.write("x.bkd", bytes.substr(0, size));
        EXPECT_EQ(told(load(path, options)),
                  Lines{"x.bkd: error: " + path + " is cut off: " + std::to_string(bytes.size()) +
                        " bytes announced, " + std::to_string(size) + " present [cut-off]"});
    }
    for (std::size_t size = 4; size < 12; ++size) {
        folder.write("x.bkd", bytes.substr(0, size));
        EXPECT_EQ(
            told(load(path, options)),
            Lines{"x.bkd: error: " + path + " is cut off: it ends before the encrypted text [cut-off]"});
    }
}

TEST(document_damage, a_text_that_ends_early_or_late_is_told) {
    const LoadResult after = bk_parser::parse("a 1 }\nb 2");
    ASSERT_EQ(after.problems.size(), 1u);
    EXPECT_EQ(after.problems[0].code, "text-after-end");
    EXPECT_EQ(after.problems[0].offset, 4u);
    EXPECT_EQ(tree_of(after), " a 1");
    const LoadResult open = bk_parser::parse("a 1\nb { c 2\n");
    ASSERT_EQ(open.problems.size(), 1u);
    EXPECT_EQ(open.problems[0].code, "group-left-open");
    EXPECT_EQ(open.problems[0].line, 2u);
    EXPECT_EQ(tree_of(open), " a 1 b { c 2 }");
}
