#include "tests/support/bkdoc_forms.h"

#include "tests/support/bytes.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <regex>

#include <cstdlib>

namespace {

constexpr std::string_view document = "#units \"m\"\n"
                                      "scene<wide> {\n"
                                      "    title \"two words\"\n"
                                      "    at[2] 1 2.5\n"
                                      "    look(yes, 0x01FF00010000)\n"
                                      "    empty <empty>\n"
                                      "}\n";
constexpr std::string_view old_content = "what was there";

/// Sets the environment variable of the key while it lives.
class KeyVariable {
public:
    explicit KeyVariable(const char* key) { set(key); }
    ~KeyVariable() { set(""); }
    KeyVariable(const KeyVariable&) = delete;
    KeyVariable& operator=(const KeyVariable&) = delete;

private:
    static void set(const char* key) {
#if defined(_WIN32)
        _putenv_s("BKDOC_KEY", key);
#else
        setenv("BKDOC_KEY", key, 1);
#endif
    }
};

bool is_one_line(const std::string& text) {
    return text.find('\n') == text.size() - 1;
}

/// Expects that a conversion is refused and the target does not change. After the problems of the document,
/// one line contains `reason`.
void expect_refusal(const ScratchFolder& folder, const std::string& file, std::vector<std::string> options,
                    std::string_view reason) {
    const std::string target = folder.write("target.bkd", old_content);
    const std::size_t count = folder.count();
    std::vector<std::string> arguments = {"convert", file, target};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const BkdocRun run = run_bkdoc(arguments);
    EXPECT_EQ(run.code, 2) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_TRUE(contains(run.err, reason)) << run.err;
    EXPECT_TRUE(is_one_line(run.err.substr(std::min(run.err.find("bkdoc: "), run.err.size())))) << run.err;
    EXPECT_EQ(folder.read("target.bkd"), old_content);
    EXPECT_EQ(folder.count(), count);
}

TEST(bkdoc_convert, every_form_becomes_every_other) {
    const ScratchFolder folder;
    for (const std::string& from : bkdoc_forms()) {
        for (const std::string& to : bkdoc_forms()) {
            const std::string file = write_in_form(folder, from, document);
            const std::string target = folder.path("target");
            const BkdocRun run = run_with_key({"convert", file, target, "--to", to, "--lossy"});
            // A conversion between the binary form and another one loses something.
            const bool has_loss = (from == "binary") != (to == "binary");
            EXPECT_EQ(run.code, has_loss ? 1 : 0) << from << " " << to << run.err;
            EXPECT_EQ(run.out, "");
            const BkdocRun comparison = run_with_key({"same", "--content", file, target});
            EXPECT_EQ(comparison.code, 0) << from << " " << to << comparison.out;
            const std::string name = to == "cipher" ? "encrypted text" : to;
            const std::string info = run_with_key({"info", target}).out;
            EXPECT_TRUE(contains(info, "\nform          " + name + "\n")) << info;
        }
    }
}

TEST(bkdoc_convert, a_text_comes_back_byte_by_byte_from_the_forms_that_keep_all) {
    const ScratchFolder folder;
    const std::string file = write_in_form(folder, "text", document);
    for (const char* form : {"text", "cipher", "archive"}) {
        ASSERT_EQ(run_with_key({"convert", file, folder.path("there"), "--to", form}).code, 0) << form;
        const BkdocRun back =
            run_with_key({"convert", folder.path("there"), folder.path("back"), "--to", "text"});
        EXPECT_EQ(back.code, 0) << form;
        EXPECT_EQ(back.err, "") << form;
        EXPECT_EQ(folder.read("back"), with_plain_line_ends(folder.read("text.bkd"))) << form;
    }
}

TEST(bkdoc_convert, each_form_is_what_the_library_writes) {
    const ScratchFolder folder;
    const std::string file = write_in_form(folder, "text", document);
    for (const std::string& form : bkdoc_forms()) {
        write_in_form(folder, form, document);
        const BkdocRun run = run_with_key({"convert", file, "-", "--to", form, "--lossy"});
        const std::string stored = folder.read(form + ".bkd");
        EXPECT_EQ(hex(run.out), hex(form == "text" ? with_plain_line_ends(stored) : stored)) << form;
    }
}

TEST(bkdoc_convert, the_version_entry_of_an_enciphered_document_does_not_become_a_part_of_the_tree) {
    const ScratchFolder folder;
    const std::string file = write_in_form(folder, "cipher", "a 1 ");
    EXPECT_EQ(hex(run_with_key({"convert", file, "-", "--to", "binary"}).out),
              hex("UDFS" + size_field(16) + "a" + std::string(1, '\0') + size_field(6) +
                  std::string(1, '\0') + unhex("03 01 00 00 00")));
}

TEST(bkdoc_convert, what_the_binary_form_leaves_out_has_to_be_wanted) {
    const ScratchFolder folder;
    const std::string file = write_in_form(folder, "text", document);
    expect_refusal(folder, file, {"--to", "binary"},
                   "bkdoc: this form cannot hold the document (--lossy converts it anyway): at #units, kind: "
                   "keyword reads back as ordinary entry; nothing is written\n");
    const BkdocRun run = run_bkdoc({"convert", file, folder.path("b"), "--to", "binary", "--lossy"});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.err,
              "bkdoc: warning: this form cannot hold the document: at #units, kind: keyword reads back as "
              "ordinary entry\n");
    for (const char* text : {"a<x> 1\n", "a[1] 1\n", "a(1)\n", "#a 1\n"}) {
        EXPECT_EQ(run_bkdoc({"convert", "-", "-", "--to", "binary"}, text).code, 2) << text;
    }
    const BkdocRun whole = run_bkdoc({"convert", "-", "-", "--to", "binary"}, "a 1 { b 2.5 }\n");
    EXPECT_EQ(whole.code, 0);
    EXPECT_EQ(whole.err, "");
}

TEST(bkdoc_convert, a_text_that_stays_a_text_where_it_is_stays_as_it_is) {
    const ScratchFolder folder;
    const std::string text = "// a comment\na   1 // another\r\n\n#include \"part.bkd\"\n";
    const std::string file = folder.write("a.bkd", text);
    folder.write("part.bkd", "b 2\n");
    for (const std::string& target : {file, folder.path() + "/./a.bkd"}) {
        const BkdocRun run = run_bkdoc({"convert", "--to", "text", file, target});
        EXPECT_EQ(run.code, 0);
        EXPECT_EQ(run.out + run.err, "");
        EXPECT_EQ(folder.read("a.bkd"), text);
    }
    // A document from standard input has no folder in which its includes are searched for.
    EXPECT_EQ(run_bkdoc_on(file, {"convert", "--to", "text", "-", file}).code, 1);
    EXPECT_EQ(folder.read("a.bkd"), text);
    folder.write("a.bkd", "a @ 1\n");
    EXPECT_EQ(run_bkdoc({"convert", "--to", "text", file, file}).code, 1);
    EXPECT_EQ(folder.read("a.bkd"), "a @ 1\n");
}

TEST(bkdoc_convert, includes_are_spliced_in) {
    const ScratchFolder folder;
    folder.write("library/part.bkd", "b 2\n");
    const std::string file = folder.write("top.bkd", "a 1\n#include \"part.bkd\"\n");
    const std::string target = folder.path("target");
    EXPECT_EQ(run_bkdoc({"convert", "-I", folder.path("library"), file, target, "--to", "archive"}).code, 0);
    EXPECT_EQ(run_bkdoc({"cat", "--compact", target}).out, "#Brellwick_Serial_Version 1.2\n a 1 b 2\n");
}

TEST(bkdoc_convert, a_document_with_faults_is_converted_as_far_as_it_is_good) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", "a @ 1\nb 2\n");
    for (const std::string& form : bkdoc_forms()) {
        const BkdocRun run = run_with_key({"convert", file, folder.path("target"), "--to", form});
        EXPECT_EQ(run.code, 1) << form;
        EXPECT_TRUE(contains(run.err, file + ":1:3: error: ")) << run.err;
        EXPECT_TRUE(contains(run_with_key({"cat", folder.path("target")}).out, "b 2")) << form;
    }
}

TEST(bkdoc_convert, a_file_may_be_written_over_itself) {
    const ScratchFolder folder;
    const std::string file = write_in_form(folder, "text", document);
    for (const char* form : {"archive", "cipher", "binary", "archive"}) {
        EXPECT_LT(run_with_key({"convert", file, file, "--to", form, "--lossy"}).code, 2) << form;
    }
    EXPECT_TRUE(folder.read("text.bkd").starts_with("KWAF"));
    EXPECT_EQ(folder.count(), 1u);
}

TEST(bkdoc_convert, a_file_with_faults_is_not_written_over_itself) {
    const ScratchFolder folder;
    const std::string text = "a @ 1\nb 2\n";
    const std::string file = folder.write("a.bkd", text);
    folder.make_folder("inner");
    const BkdocRun run = run_bkdoc({"convert", file, folder.path("inner") + "/../a.bkd", "--to", "archive"});
    EXPECT_EQ(run.code, 2);
    EXPECT_TRUE(contains(run.err, "has errors and would replace itself; nothing is written\n")) << run.err;
    EXPECT_EQ(folder.read("a.bkd"), text);
}

TEST(bkdoc_convert, a_file_with_faults_is_not_written_over_itself_when_it_is_standard_input) {
    const ScratchFolder folder;
    const std::string text = "a @ 1\nb 2\n";
    const std::string file = folder.write("a.bkd", text);
    const BkdocRun run = run_bkdoc_on(file, {"convert", "-", file, "--to", "archive"});
    EXPECT_EQ(run.code, 2);
    EXPECT_TRUE(contains(run.err, "has errors and would replace itself; nothing is written\n")) << run.err;
    EXPECT_EQ(folder.read("a.bkd"), text);
    EXPECT_EQ(run_bkdoc_on(file, {"convert", "-", folder.path("b.bkd"), "--to", "text"}).code, 1);
}

TEST(bkdoc_convert, what_a_text_would_take_for_an_include_is_refused) {
    const ScratchFolder folder;
    ParserFile file(folder.core_path("a.bkd"));
    file.get_root().add_entry("a", 0, 0)->add_string("see #include ");
    file.write(ParserFile::MODE_BINARY, "", "");
    for (const char* form : {"text", "cipher"}) {
        expect_refusal(folder, folder.path("a.bkd"), {"--to", form, "--key", std::string(bkdoc_key)},
                       "bkdoc: this form cannot hold the document: ");
    }
}

TEST(bkdoc_convert, a_file_that_the_document_includes_is_not_written_over) {
    const ScratchFolder folder;
    const std::string part = folder.write("part.bkd", "b 2\n");
    const std::string file = folder.write("top.bkd", "#include \"" + part + "\"\n");
    const BkdocRun run = run_bkdoc({"convert", file, part, "--to", "binary"});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.err, "bkdoc: " + part + ": is included by the document; nothing is written\n");
    EXPECT_EQ(folder.read("part.bkd"), "b 2\n");
}

TEST(bkdoc_convert, enciphering_needs_a_key) {
    const ScratchFolder folder;
    expect_refusal(
        folder, folder.write("a.bkd", "a 1\n"), {"--to", "cipher"},
        "bkdoc: --to cipher needs a key, given by --key, --key-file or BKDOC_KEY; nothing is written\n");
}

TEST(bkdoc_convert, bad_input_leaves_the_target_alone) {
    const ScratchFolder folder;
    for (const char* form : {"binary", "cipher", "archive"}) {
        write_in_form(folder, form, document);
        const std::string whole = folder.read(std::string(form) + ".bkd");
        for (const std::size_t size : {std::size_t{4}, std::size_t{11}, whole.size() / 2, whole.size() - 1}) {
            const std::string cut = folder.write("cut.bkd", whole.substr(0, size));
            expect_refusal(folder, cut, {"--to", "text", "--key", std::string(bkdoc_key)}, "bkdoc: ");
        }
    }
    expect_refusal(folder, folder.path("gone.bkd"), {"--to", "text"}, "gone.bkd: no such file\n");
}

TEST(bkdoc_convert, what_a_text_cannot_say_is_refused_unless_the_loss_is_wanted) {
    const ScratchFolder folder;
    ParserFile file(folder.core_path("a.bkd"));
    file.get_root().add_entry("folder", 0, 0)->add_string("scenes\\");
    file.get_root().get_entry(0)->add_int(1);
    file.write(ParserFile::MODE_BINARY, "", "");
    const std::string path = folder.path("a.bkd");
    for (const char* form : {"text", "archive"}) {
        expect_refusal(folder, path, {"--to", form},
                       "cannot hold the document (--lossy converts it anyway): at folder, ");
    }
    const BkdocRun run = run_bkdoc({"convert", path, folder.path("target.bkd"), "--to", "text", "--lossy"});
    EXPECT_EQ(run.code, 1);
    EXPECT_TRUE(run.err.starts_with("bkdoc: warning: this form cannot hold the document: at folder, "))
        << run.err;
    EXPECT_TRUE(contains(folder.read("target.bkd"), "folder \"scenes")) << folder.read("target.bkd");
}

TEST(bkdoc_convert, doubles_of_a_binary_document_keep_type_and_value_in_text) {
    const ScratchFolder folder;
    ParserFile file(folder.core_path("a.bkd"));
    ParserEntry* const entry = file.get_root().add_entry("numbers", 0, 0);
    for (const double number : {60.0, -0.0, 34359738368.0, 1e22, 0.5}) {
        entry->add_double(number);
    }
    file.write(ParserFile::MODE_BINARY, "", "");
    const BkdocRun there = run_bkdoc({"convert", folder.path("a.bkd"), folder.path("b.bkd"), "--to", "text"});
    EXPECT_EQ(there.code, 0);
    EXPECT_EQ(there.err, "");
    EXPECT_TRUE(contains(folder.read("b.bkd"), "numbers 60.0 -0.0 34359738368.0 1e+22 0.5"));
    EXPECT_EQ(run_bkdoc({"convert", folder.path("b.bkd"), folder.path("c.bkd"), "--to", "binary"}).code, 0);
    EXPECT_EQ(folder.read("c.bkd"), folder.read("a.bkd"));
}

TEST(bkdoc_convert, a_name_that_is_none_in_text_is_refused_there) {
    const ScratchFolder folder;
    ParserFile file(folder.core_path("a.bkd"));
    file.get_root().add_entry("a", 0, 0)->add_int(1);
    file.get_root().get_entry(0)->rename("two words");
    file.write(ParserFile::MODE_BINARY, "", "");
    expect_refusal(folder, folder.path("a.bkd"), {"--to", "text"}, "cannot hold the document");
    EXPECT_EQ(run_bkdoc({"convert", folder.path("a.bkd"), folder.path("b.bkd"), "--to", "binary"}).code, 0);
}

TEST(bkdoc_convert, numbers_that_change_their_type_are_a_loss) {
    const ScratchFolder folder;
    ParserFile file(folder.core_path("a.bkd"));
    file.get_root().add_entry("letter", 0, 0)->add_char('A');
    file.write(ParserFile::MODE_BINARY, "", "");
    expect_refusal(folder, folder.path("a.bkd"), {"--to", "text"},
                   "at letter, value 1: char 65 reads back as int 65; nothing is written\n");
}

TEST(bkdoc_convert, characters_that_end_a_string_too_early_are_refused) {
    const ScratchFolder folder;
    const std::string with_nul = folder.write("zero.bkd", std::string("a \"x\0y\"\n", 8));
    expect_refusal(folder, with_nul, {"--to", "binary"}, "cannot hold the document");
    const std::string with_shift = folder.write("shift.bkd", "a \"x\x0Fy\"\n");
    expect_refusal(folder, with_shift, {"--to", "archive"}, "cannot hold the document");
    EXPECT_EQ(run_bkdoc({"convert", with_shift, folder.path("b"), "--to", "binary"}).code, 0);
}

TEST(bkdoc_convert, a_target_that_cannot_be_written_is_told) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", "a 1\n");
    const std::string inner = folder.make_folder("inner");
    const std::string deep = folder.path("no/such/folder.bkd");
    for (const auto& [target, reason] :
         {std::pair(inner, inner + ": is a directory"),
          std::pair(deep, deep + ": there is no folder " + folder.path("no/such")),
          std::pair(std::string(), std::string("'': no such file"))}) {
        const BkdocRun run = run_bkdoc({"convert", file, target, "--to", "text"});
        EXPECT_EQ(run.code, 2) << target;
        EXPECT_EQ(run.err, "bkdoc: " + reason + "; nothing is written\n");
    }
    EXPECT_EQ(folder.count(), 2u);
}

#if !defined(_WIN32)
TEST(bkdoc_convert, a_full_device_is_noticed) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", "a 1\n");
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "there is no device that is always full";
    }
    const BkdocRun run = run_bkdoc({"convert", file, "/dev/full", "--to", "text"});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.err,
              "bkdoc: /dev/full: cannot be written: no space left on the device; nothing is written\n");
}

TEST(bkdoc_convert, a_link_stays_one) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", "a 1\n");
    folder.write("real.bkd", old_content);
    std::filesystem::create_symlink(folder.path("real.bkd"), folder.path("link.bkd"));
    EXPECT_EQ(run_bkdoc({"convert", file, folder.path("link.bkd"), "--to", "archive"}).code, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link.bkd")));
    EXPECT_TRUE(folder.read("real.bkd").starts_with("KWAF"));
}
#endif

TEST(bkdoc_convert, the_key_comes_from_the_command_line_a_file_or_the_environment) {
    const ScratchFolder folder;
    const std::string file = write_in_form(folder, "cipher", "a 1 ");
    EXPECT_EQ(run_bkdoc({"check", file, "--key", "sesame"}).code, 0);
    EXPECT_EQ(run_bkdoc({"check", file, "--key=sesame"}).code, 0);
    for (const char* content : {"sesame", "sesame\n", "sesame\r\n", "sesame\nportal\n"}) {
        EXPECT_EQ(run_bkdoc({"check", file, "--key-file", folder.write("key", content)}).code, 0) << content;
    }
    EXPECT_EQ(run_bkdoc({"check", file, "--key-file", folder.write("key", "portal\nsesame\n")}).code, 2);
    const KeyVariable variable("sesame");
    EXPECT_EQ(run_bkdoc({"check", file}).code, 0);
}

TEST(bkdoc_convert, a_key_that_is_given_goes_before_the_environment) {
    const ScratchFolder folder;
    const std::string file = write_in_form(folder, "cipher", "a 1 ");
    const KeyVariable variable("portal");
    EXPECT_EQ(run_bkdoc({"check", file}).code, 2);
    EXPECT_EQ(run_bkdoc({"check", file, "--key", "sesame"}).code, 0);
    EXPECT_EQ(run_bkdoc({"check", file, "--key-file", folder.write("key", "sesame\n")}).code, 0);
}

TEST(bkdoc_convert, a_key_that_is_none_is_refused_before_anything_is_written) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", "a 1\n");
    const std::string nul = folder.write("nul", std::string("\0sesame", 7));
    const std::string empty = folder.write("empty", "\nsesame\n");
    expect_refusal(folder, file, {"--to", "cipher", "--key", ""}, "--key: the key is empty\n");
    expect_refusal(folder, file, {"--to", "cipher", "--key-file", nul},
                   "the first line of the key file is empty\n");
    expect_refusal(folder, file, {"--to", "cipher", "--key-file", empty},
                   "the first line of the key file is empty\n");
    expect_refusal(folder, file, {"--to", "cipher", "--key-file", folder.path("gone")},
                   "gone: no such file\n");
    expect_refusal(folder, file, {"--to", "cipher", "--key-file", folder.path()}, ": is a directory\n");
    expect_refusal(folder, file, {"--to", "cipher", "--key", "a", "--key-file", empty},
                   "--key and --key-file are both given\n");
}

TEST(bkdoc_convert, no_message_shows_a_key) {
    const ScratchFolder folder;
    const std::string file = write_in_form(folder, "cipher", "a 1 ");
    const std::string secret = "Xq7Zk";
    const std::string key_file = folder.write("key", secret + "\n");
    const KeyVariable variable("Xq7Zk");
    const std::vector<std::vector<std::string>> lines = {
        {"cat", file},
        {"cat", file, "--key", secret},
        {"info", file, "--key-file", key_file},
        {"dump", file, "--key", secret},
        {"same", file, file, "--key", secret},
        {"convert", file, "-", "--to", "text", "--key", secret},
        {"convert", file, "-", "--to", "paper", "--key", secret},
        {"convert", file, "--key", secret},
        {"cat", file, "--kye", secret},
        {"cat", file, "--kye=" + secret},
        {"dump", file, secret},
        {"cat", file, "-k", secret},
        {"cat", file, "-k" + secret},
        {"cat", file, "--key", secret, "--key", secret},
        {"cat", file, "--key", secret, "--key-file", key_file},
        {"--key", secret, "cat", file},
        {"--key=" + secret, "cat", file},
    };
    for (const std::vector<std::string>& line : lines) {
        const BkdocRun run = run_bkdoc(line);
        EXPECT_NE(run.code, 0) << line.back();
        EXPECT_NE(run.err, "");
        EXPECT_FALSE(contains(run.out + run.err, secret)) << run.err;
    }
}

TEST(bkdoc_convert, help_tells_what_becomes_of_faults_and_of_what_a_form_cannot_hold) {
    std::string help = run_bkdoc({"convert", "--help"}).out;
    help = std::regex_replace(help, std::regex("\\s+"), " "); // line breaks depend on the width
    for (const char* part : {"IN has errors", "OUT is as it was", "--lossy", "text|binary|cipher|archive"}) {
        EXPECT_TRUE(contains(help, part)) << part;
    }
}

} // namespace
