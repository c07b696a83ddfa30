#include "tests/support/bkdoc_forms.h"

#include "tests/support/bytes.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr std::size_t form_size = 4; // the length of the bytes that identify the form
constexpr std::string_view document =
    "scene {\n    title \"dusk\"\n    size 1 2.5 yes\n    empty <empty>\n}\n";

std::size_t lines_of(const std::string& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

TEST(bkdoc_forms, every_form_is_checked) {
    const ScratchFolder folder;
    for (const std::string& form : bkdoc_forms()) {
        const BkdocRun run = run_with_key({"check", write_in_form(folder, form, document)});
        EXPECT_EQ(run.code, 0) << form;
        EXPECT_EQ(run.out + run.err, "") << form;
    }
}

TEST(bkdoc_forms, every_form_is_written_as_the_same_text) {
    const ScratchFolder folder;
    const std::string expected = run_bkdoc({"cat", write_in_form(folder, "text", document)}).out;
    EXPECT_TRUE(contains(expected, "title \"dusk\"")) << expected;
    for (const std::string& form : bkdoc_forms()) {
        const BkdocRun run = run_with_key({"cat", write_in_form(folder, form, document)});
        EXPECT_EQ(run.code, 0) << form;
        EXPECT_EQ(run.out, expected) << form;
    }
}

TEST(bkdoc_forms, every_form_is_drawn_as_the_same_tree_under_a_heading_of_its_own) {
    const ScratchFolder folder;
    const std::vector<std::string> headings = {"version 1.2, 1 entry", "binary, 1 entry",
                                               "encrypted, version 1.2, 1 entry", "archive, 1 entry"};
    const std::string plain = run_bkdoc({"tree", write_in_form(folder, "text", document)}).out;
    const std::string expected = plain.substr(plain.find('\n'));
    EXPECT_EQ(lines_of(expected), 5u) << expected;
    for (std::size_t i = 0; i < bkdoc_forms().size(); ++i) {
        const std::string file = write_in_form(folder, bkdoc_forms()[i], document);
        EXPECT_EQ(run_with_key({"tree", file}).out, file + "  " + headings[i] + expected);
    }
}

TEST(bkdoc_forms, every_form_holds_the_same_tree_as_every_other) {
    const ScratchFolder folder;
    for (const std::string& first : bkdoc_forms()) {
        for (const std::string& second : bkdoc_forms()) {
            const BkdocRun run = run_with_key(
                {"same", write_in_form(folder, first, document), write_in_form(folder, second, document)});
            EXPECT_EQ(run.code, 0) << first << " " << second << " " << run.out << run.err;
        }
    }
}

TEST(bkdoc_forms, every_form_may_come_from_standard_input) {
    const ScratchFolder folder;
    for (const std::string& form : bkdoc_forms()) {
        write_in_form(folder, form, document);
        const BkdocRun run = run_with_key({"tree", "-"}, folder.read(form + ".bkd"));
        EXPECT_EQ(run.code, 0) << form;
        EXPECT_EQ(lines_of(run.out), 5u) << form << run.out;
    }
}

#if !defined(_WIN32)
TEST(bkdoc_forms, every_form_may_come_from_a_pipe_that_is_read_only_once) {
    const ScratchFolder folder;
    for (const std::string& form : bkdoc_forms()) {
        const std::string file = write_in_form(folder, form, document);
        const std::string line = "cat " + file + " | " + BK_PARSER_BKDOC + " same /dev/stdin " + file +
                                 " --key sesame >" + folder.path("out") + " 2>&1";
        EXPECT_EQ(bkdoc_run_detail::exit_code(std::system(line.c_str())), 0) << folder.read("out");
    }
}
#endif

TEST(bkdoc_forms, info_tells_the_form_and_what_is_special_to_it) {
    const ScratchFolder folder;
    const auto info = [&](const std::string& form) {
        return run_with_key({"info", write_in_form(folder, form, document)}).out;
    };
    EXPECT_TRUE(contains(info("text"), "\nform          text\nversion       1.2\n"));
    const std::string binary = info("binary");
    const std::string binary_size = std::to_string(folder.read("binary.bkd").size());
    EXPECT_TRUE(contains(binary, "\nform          binary\nsize          " + binary_size + " bytes\nentries"))
        << binary;
    const std::string cipher = info("cipher");
    const std::string cipher_size = std::to_string(folder.read("cipher.bkd").size());
    EXPECT_TRUE(contains(cipher, "\nform          encrypted text\nstored        " + cipher_size +
                                     " bytes\nversion       1.2\n"))
        << cipher;
    const std::string archive = info("archive");
    EXPECT_TRUE(contains(archive, "\nstrings       11\n"
                                  "words         11, each the number of a string in 1 byte\n"))
        << archive;
}

TEST(bkdoc_forms, an_archive_of_256_strings_has_wider_numbers) {
    const ScratchFolder folder;
    std::string text;
    for (int i = 0; i < 128; ++i) {
        text += "e" + std::to_string(i) + " " + std::to_string(i) + "\n";
    }
    const std::string info = run_bkdoc({"info", write_in_form(folder, "archive", text)}).out;
    EXPECT_TRUE(contains(info, "\nstrings       256\n"
                               "words         256, each the number of a string in 2 bytes\n"))
        << info;
}

TEST(bkdoc_forms, only_the_content_of_a_document_with_kinds_is_the_same_in_binary_form) {
    const ScratchFolder folder;
    constexpr std::string_view rich = "#units \"m\"\ncamera<wide> { at[2] 1 2 look(3) }\n";
    const std::string text = write_in_form(folder, "text", rich);
    const std::string binary = write_in_form(folder, "binary", rich);
    const BkdocRun whole = run_bkdoc({"same", text, binary});
    EXPECT_EQ(whole.code, 1);
    EXPECT_TRUE(contains(whole.out, "differ at #units, kind:\n")) << whole.out;
    const BkdocRun content = run_bkdoc({"same", "--content", text, binary});
    EXPECT_EQ(content.code, 0);
    EXPECT_TRUE(content.out.ends_with(" hold the same names and values\n")) << content.out;
}

TEST(bkdoc_forms, the_content_differs_where_a_name_or_a_value_does) {
    const ScratchFolder folder;
    const std::string first = folder.write("a.bkd", "a 1 \nb 2 ");
    EXPECT_EQ(run_bkdoc({"same", "--content", first, "-"}, "a 1.0 \nb 2 ").code, 0);
    EXPECT_EQ(run_bkdoc({"same", "--content", first, "-"}, "a 1.5 \nb 2 ").code, 1);
    EXPECT_EQ(run_bkdoc({"same", "--content", first, "-"}, "a yes \nb 2 ").code, 1);
    EXPECT_EQ(run_bkdoc({"same", "--content", first, "-"}, "a 1 \nc 2 ").code, 1);
}

TEST(bkdoc_forms, a_binary_file_that_ends_early_is_told_with_what_is_there) {
    const ScratchFolder folder;
    write_in_form(folder, "binary", document);
    const std::string whole = folder.read("binary.bkd");
    const std::string announced = std::to_string(whole.size());
    for (std::size_t size = form_size; size < whole.size(); ++size) {
        const std::string file = folder.write("cut.bkd", whole.substr(0, size));
        const BkdocRun run = run_bkdoc({"check", file});
        ASSERT_EQ(run.code, 1) << size;
        ASSERT_EQ(run.err, "") << size;
        ASSERT_EQ(run.out, file + ": error: cut off: " + (size < 12 ? "12" : announced) +
                               " bytes announced, " + std::to_string(size) + " present [cut-off]\n1 error\n");
    }
}

TEST(bkdoc_forms, damage_inside_a_binary_file_is_told_and_what_was_read_is_drawn) {
    const ScratchFolder folder;
    const std::string inner = "\xFF\xFF\xFF\xFF" + std::string(4, '\0'); // the size of a group, too large
    const std::string entry = std::string("a\0", 2) + size_field(10) + std::string(2, '\0') + inner;
    const std::string file = folder.write("bad.bkd", "UDFS" + size_field(entry.size()) + entry);
    const BkdocRun run = run_bkdoc({"tree", file});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(lines_of(run.out), 2u) << run.out;
    EXPECT_EQ(run.err,
              file + ": error: damaged at byte 32: a group of 4,294,967,295 bytes, 0 left; what follows "
                     "is not read [damaged]\n");
}

TEST(bkdoc_forms, a_damaged_document_is_not_written) {
    const ScratchFolder folder;
    const std::string entry = std::string("a\0", 2) + size_field(2) + std::string("\0\x07", 2);
    const std::string file = folder.write("bad.bkd", "UDFS" + size_field(entry.size()) + entry);
    const BkdocRun run = run_bkdoc({"cat", file});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err,
              file +
                  ": error: damaged at byte 23: a value of an unknown kind; what follows is not read "
                  "[damaged]\nbkdoc: " +
                  file + ": not written because part of it is missing\n");
}

TEST(bkdoc_forms, an_archive_that_ends_early_is_told_to_be_cut_off) {
    const ScratchFolder folder;
    write_in_form(folder, "archive", document);
    const std::string whole = folder.read("archive.bkd");
    for (std::size_t size = form_size; size < whole.size(); ++size) {
        const std::string file = folder.write("cut.bkd", whole.substr(0, size));
        const BkdocRun run = run_bkdoc({"info", file});
        ASSERT_EQ(run.code, 1) << size;
        ASSERT_TRUE(run.err.starts_with(file + ": error: cut off: ")) << size << run.err;
        ASSERT_TRUE(contains(run.err, " [cut-off]\n")) << size << run.err;
    }
}

std::string archive_of(const std::vector<std::string>& words, const std::vector<int>& indices) {
    std::string bytes = "KWAF" + std::string(8, '\0') + little(words.size(), 4);
    for (const std::string& word : words) {
        for (const char character : word) {
            bytes += static_cast<char>(character - 15);
        }
        bytes += '\0';
    }
    bytes += little(indices.size(), 4);
    for (const int index : indices) {
        bytes += static_cast<char>(index);
    }
    return bytes;
}

TEST(bkdoc_forms, words_of_an_archive_that_are_no_strings_are_counted_as_a_fault) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", archive_of({"a", "1"}, {0, 1, 2, 9}));
    const BkdocRun run = run_bkdoc({"check", file});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.out,
              file + ": error: damaged: 2 words are left out, because its list of words has no such number "
                     "[damaged]\n1 error\n");
    EXPECT_TRUE(contains(run_bkdoc({"info", file}).out, "\nproblems      1\n"));
}

TEST(bkdoc_forms, faults_in_the_words_of_an_archive_have_their_place) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", archive_of({"a", "@", "1"}, {0, 1, 2}));
    const BkdocRun run = run_bkdoc({"check", file});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.out.starts_with(file + ":1:3: error: ")) << run.out;
    EXPECT_TRUE(contains(run.out, "a @ 1")) << run.out;
}

TEST(bkdoc_forms, an_archive_reads_as_the_library_reads_it) {
    const ScratchFolder folder;
    const std::string file =
        folder.write("a.bkd", archive_of({"a", "{", "b", "\"x y\"", "}", "}"}, {0, 1, 2, 3, 4, 2, 3}));
    ParserArchive archive;
    ASSERT_TRUE(ParserImpl::load_archive(archive, folder.core_path("a.bkd"), nullptr).is_empty());
    ParserGroup root("root");
    ParserImpl::group_set_archive(root, archive, nullptr);
    CoreString text;
    root.get_text(text, false, false, 1);
    const BkdocRun run = run_bkdoc({"cat", "--compact", file});
    EXPECT_EQ(run.out, "#Brellwick_Serial_Version 1.2\n" + std::string(text.get_view()) + "\n");
    EXPECT_TRUE(contains(run.out, "b \"x y\"")) << run.out;
}

TEST(bkdoc_forms, an_enciphered_file_without_its_key_is_refused_by_every_verb_that_reads_it) {
    const ScratchFolder folder;
    const std::string file = write_in_form(folder, "cipher", document);
    for (const char* verb : {"check", "cat", "tree", "info"}) {
        const BkdocRun run = run_bkdoc({verb, file});
        EXPECT_EQ(run.code, 2) << verb;
        EXPECT_EQ(run.out, "") << verb;
        EXPECT_EQ(run.err,
                  "bkdoc: " + file +
                      " is encrypted, and no key is given: --key, --key-file or BKDOC_KEY gives one\n");
    }
    EXPECT_EQ(run_bkdoc({"same", file, file}).code, 2);
}

TEST(bkdoc_forms, another_key_is_refused) {
    const ScratchFolder folder;
    const std::string file = write_in_form(folder, "cipher", document);
    const BkdocRun run = run_bkdoc({"cat", file, "--key", "portal"});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "bkdoc: " + folder.path("cipher.bkd") + ": wrong key, or a damaged file\n");
}

TEST(bkdoc_forms, an_enciphered_file_that_ends_early_is_told_to_be_cut_off) {
    const ScratchFolder folder;
    write_in_form(folder, "cipher", document);
    const std::string whole = folder.read("cipher.bkd");
    for (std::size_t size = form_size; size < whole.size(); ++size) {
        const BkdocRun run = run_with_key({"check", folder.write("cut.bkd", whole.substr(0, size))});
        ASSERT_EQ(run.code, 1) << size << run.out;
        ASSERT_TRUE(run.out.starts_with(folder.path("cut.bkd") + ": error: cut off: ")) << size << run.out;
        ASSERT_TRUE(run.out.ends_with(" [cut-off]\n1 error\n")) << size << run.out;
    }
}

TEST(bkdoc_forms, faults_of_an_enciphered_text_have_their_place_in_the_plain_text) {
    const ScratchFolder folder;
    ParserGroup root("root");
    root.add_entry("a", 0, 0)->add_int(1);
    root.add_entry("b", 0, 0)->add_int(2);
    root.get_entry(1)->rename("b @");
    CoreArray<unsigned char> block;
    root.get_encrypted_text(block, CoreString(bkdoc_key), false, true, 1);
    const std::string file = folder.write("a.bkd", "KWBF" + bytes_of(block));
    const BkdocRun run = run_with_key({"check", file});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(contains(run.out, file + ":3:3: error: ")) << run.out;
}

TEST(bkdoc_forms, a_version_that_is_none_is_told_of_an_enciphered_document_too) {
    const ScratchFolder folder;
    folder.write("part.bkd", "#Brellwick_Serial_Version 0\n");
    const std::string top = write_in_form(folder, "cipher", "#include \"part.bkd\"\n");
    const BkdocRun run = run_with_key({"check", "-I", folder.path(""), top});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(contains(run.out, "part.bkd:1:1: error: '0' is no version; the latest is 1.2 [no-version]\n"))
        << run.out;
}

TEST(bkdoc_forms, an_enciphered_include_asks_for_its_key) {
    const ScratchFolder folder;
    const std::string part = write_in_form(folder, "cipher", "a 1\n");
    const std::string top = folder.write("top.bkd", "#include \"" + part + "\"\nb 2\n");
    const BkdocRun run = run_bkdoc({"check", top});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(contains(
        run.out,
        part + " is encrypted, and no key is given: --key, --key-file or BKDOC_KEY gives one [no-key]\n"))
        << run.out;
    EXPECT_EQ(run_bkdoc({"check", top, "--key", std::string(bkdoc_key)}).code, 0);
}

TEST(bkdoc_forms, an_archive_that_would_become_far_too_large_is_refused_unless_it_is_trusted) {
    const ScratchFolder folder;
    ParserArchive archive;
    archive += CoreString("a");
    archive += CoreString(std::string_view(std::string(30000, '1')));
    for (int i = 0; i < 2500; ++i) {
        archive += archive.strings[1];
    }
    const CoreString path = folder.core_path("bomb.bkd");
    ASSERT_TRUE(ParserImpl::save_archive(archive, path, nullptr).is_empty());
    const BkdocRun refused = run_bkdoc({"info", folder.path("bomb.bkd")});
    EXPECT_EQ(refused.code, 2);
    EXPECT_TRUE(
        contains(refused.err, " is too large: its text would have 75,032,503 bytes; --trusted reads it\n"))
        << refused.err;
    const BkdocRun read = run_bkdoc({"info", "--trusted", folder.path("bomb.bkd")});
    EXPECT_EQ(read.code, 0) << read.err;
}

} // namespace
