#include "tests/support/bkdoc_forms.h"

#include <gtest/gtest.h>

namespace {

constexpr std::string_view version = "#Brellwick_Serial_Version 1.2\n";

std::string flipped(std::string bytes, std::size_t at, char mask) {
    bytes[at] = static_cast<char>(bytes[at] ^ mask);
    return bytes;
}

TEST(bkdoc_recover, a_file_that_is_cut_off_is_written_as_text_and_the_rest_told) {
    const ScratchFolder folder;
    write_in_form(folder, "binary", "a 1 b { c 2 3 }");
    const std::string bytes = folder.read("binary.bkd");
    const std::string cut = folder.write("cut.bin", bytes.substr(0, bytes.size() - 2));
    const BkdocRun run = run_bkdoc({"recover", cut});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(with_plain_line_ends(run.out), std::string(version) + "\na 1\nb {\n    c 2\n}");
    const std::string size = std::to_string(bytes.size() - 2);
    EXPECT_EQ(run.err, cut + ": binary, 3 entries read, 2 parts are lost\n  bytes " +
                           std::to_string(bytes.size() - 5) + " to " + std::to_string(bytes.size() - 3) +
                           ": values of 'b/c'\n  from byte " + size + " on: cut off, 2 bytes are missing\n");
}

TEST(bkdoc_recover, entries_behind_the_damage_are_written_too) {
    const ScratchFolder folder;
    write_in_form(folder, "binary", "a 1 b 2 c 3");
    std::string bytes = folder.read("binary.bkd");
    bytes[bytes.find("b") + 11] = 99; // an invalid type for its value
    const std::string damaged = folder.write("damaged.bin", bytes);
    const BkdocRun run = run_bkdoc({"recover", damaged, "-o", folder.path("saved.bkd")});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(with_plain_line_ends(folder.read("saved.bkd")), std::string(version) + "\na 1\nc 3");
    EXPECT_EQ(run.err,
              damaged + ": binary, 2 entries read, 1 part is lost\n  bytes 39 to 43: values of 'b'\n");
}

TEST(bkdoc_recover, a_file_without_damage_loses_nothing_in_any_form) {
    const ScratchFolder folder;
    for (const char* form : {"binary", "cipher", "archive"}) {
        const std::string file = write_in_form(folder, form, "a 1 b { c \"x\" }");
        for (const char* to : {"text", "binary", "cipher", "archive"}) {
            const std::string out = folder.path("out");
            const BkdocRun run = run_with_key({"recover", file, "-o", out, "--to", to});
            EXPECT_EQ(run.code, 0) << form << " " << to << run.err;
            EXPECT_TRUE(run.err.ends_with(" entries read, nothing is lost\n")) << run.err;
            EXPECT_EQ(run_with_key({"same", "--content", file, out}).code, 0) << form << " " << to;
        }
    }
}

TEST(bkdoc_recover, a_damaged_cipher_of_full_length_has_errors_and_is_not_told_to_be_whole) {
    const ScratchFolder folder;
    folder.write("a.bkd", "alpha 1\nbeta 2\ngamma 3\n");
    const std::string stored = folder.path("a.kwbf");
    ASSERT_EQ(run_bkdoc({"convert", "--to", "cipher", "--key", "k", folder.path("a.bkd"), stored}).code, 0);
    std::string bytes = folder.read("a.kwbf");
    for (std::size_t i = bytes.size() / 2; i < bytes.size() / 2 + 8; ++i) {
        bytes[i] = static_cast<char>(~bytes[i]);
    }
    folder.write("a.kwbf", bytes);
    const BkdocRun recover = run_bkdoc({"recover", "--key", "k", stored});
    EXPECT_EQ(recover.code, 1);
    EXPECT_NE(recover.err.find(" read, no part is missing, but it has "), std::string::npos) << recover.err;
    EXPECT_EQ(recover.err.find("nothing is lost"), std::string::npos) << recover.err;
}

TEST(bkdoc_recover, what_is_left_is_written_as_json_too) {
    const ScratchFolder folder;
    const std::string file = write_in_form(folder, "binary", "a 1 b { c \"x\" }");
    for (const char* to : {"json", "ndjson"}) {
        const std::string out = folder.path(std::string("out.") + to);
        const BkdocRun run = run_bkdoc({"recover", file, "-o", out, "--to", to});
        EXPECT_EQ(run.code, 0) << to << run.err;
        EXPECT_EQ(folder.read(std::string("out.") + to), run_bkdoc({"convert", file, "-", "--to", to}).out);
        EXPECT_EQ(run_bkdoc({"convert", out, folder.path("back"), "--to", "text"}).code, 0);
        EXPECT_EQ(run_bkdoc({"same", "--content", file, folder.path("back")}).code, 0) << to;
    }
    const BkdocRun plain = run_bkdoc({"recover", file, "--to", "json-plain"});
    EXPECT_EQ(plain.code, 0);
    EXPECT_EQ(plain.out, run_bkdoc({"convert", file, "-", "--to", "json-plain"}).out);
}

TEST(bkdoc_recover, takes_the_forms_that_convert_takes) {
    const auto forms = [](const char* verb) {
        const std::string help = run_bkdoc({verb, "--help"}).out;
        const std::size_t begin = help.find("--to ");
        return help.substr(begin, help.find('\n', begin) - begin);
    };
    EXPECT_TRUE(contains(forms("recover"), "text|binary|cipher|archive|json|json-plain|ndjson"));
    EXPECT_EQ(forms("recover").substr(0, 55), forms("convert").substr(0, 55));
}

TEST(bkdoc_recover, what_is_read_of_an_archive_shows_the_faults_of_its_words) {
    const ScratchFolder folder;
    write_in_form(folder, "archive", "a 1 b \"x\" c 2");
    std::string bytes = folder.read("archive.bkd");
    bytes[bytes.size() - 6] = 77;
    const BkdocRun run = run_bkdoc({"recover", "-"}, bytes);
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.err.starts_with("<stdin>: archive, ")) << run.err;
    EXPECT_TRUE(contains(run.err, ": word 77, which is not in the list of strings\n")) << run.err;
    EXPECT_TRUE(contains(run.out, "c 2")) << run.out;
}

TEST(bkdoc_recover, what_cannot_be_done_is_said) {
    const ScratchFolder folder;
    const std::string text = folder.write("a.bkd", "a 1\n");
    BkdocRun run = run_bkdoc({"recover", text});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "bkdoc: " + text +
                           " is text; recover reads binary, encrypted and archive files; check shows "
                           "what is wrong with a text\n");
    const std::string binary = write_in_form(folder, "binary", "a 1");
    run = run_bkdoc({"recover", binary, "-o", binary});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.err, "bkdoc: " + binary + ": is the damaged file; recover writes to another one\n");
    run = run_bkdoc({"recover", binary, "--to", "cipher", "-o", folder.path("x")});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.err, "bkdoc: --to cipher needs a key, given by --key, --key-file or BKDOC_KEY\n");
    const std::string cipher = write_in_form(folder, "cipher", "a 1");
    run = run_bkdoc({"recover", cipher, "--key", "portal"});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.err, "bkdoc: " + cipher + ": wrong key, or a damaged file\n");
    run = run_bkdoc({"recover", "-"}, "UDFS");
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.err, "<stdin>: binary, 0 entries read, 1 part is lost\n"
                       "  from byte 4 on: cut off, 8 bytes are missing\n"
                       "bkdoc: nothing is left of <stdin>; nothing is written\n");
    run = run_bkdoc({"recover", folder.path("gone.bin")});
    EXPECT_EQ(run.code, 2);
}

TEST(bkdoc_recover, any_damage_leaves_a_text_that_reads_back) {
    const ScratchFolder folder;
    write_in_form(folder, "binary", "a 1 b { c 2 \"x\" d { e 2.5 } } f yes g 0x01FF00010000 h 1 2 3");
    const std::string bytes = folder.read("binary.bkd");
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const BkdocRun run =
            run_bkdoc({"recover", "-"}, flipped(bytes, at, static_cast<char>(1 << (at % 8))));
        ASSERT_TRUE(run.code == 0 || run.code == 1) << at << run.err;
        EXPECT_FALSE(contains(run.err, "cannot be read back")) << at << run.err;
        EXPECT_EQ(run_bkdoc({"check", "-"}, run.out).code, 0) << at << run.out;
    }
}

} // namespace
