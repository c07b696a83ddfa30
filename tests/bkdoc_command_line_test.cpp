#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

const std::vector<std::string> verbs = {"check", "cat", "tree", "info", "same", "convert", "dump"};

/// What each verb needs, with `file` for its first file.
std::vector<std::string> complete(const std::string& verb, const std::string& file) {
    std::vector<std::string> arguments = {verb, file};
    if (verb == "same" || verb == "convert") {
        arguments.emplace_back("-");
    }
    if (verb == "convert") {
        arguments.insert(arguments.end(), {"--to", "text"});
    }
    return arguments;
}

bool is_one_line(const std::string& text) {
    return std::count(text.begin(), text.end(), '\n') == 1 && text.ends_with('\n');
}

void expect_refusal(const std::vector<std::string>& arguments) {
    const BkdocRun run = run_bkdoc(arguments);
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_TRUE(is_one_line(run.err)) << run.err;
    EXPECT_TRUE(run.err.starts_with("bkdoc: ")) << run.err;
}

TEST(bkdoc_command_line, help_lists_every_verb) {
    const BkdocRun run = run_bkdoc({"--help"});
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.err, "");
    for (const std::string& verb : verbs) {
        EXPECT_NE(run.out.find("\n  " + verb + " "), std::string::npos) << verb;
    }
}

TEST(bkdoc_command_line, every_verb_has_help_and_the_version) {
    for (const std::string& verb : verbs) {
        const BkdocRun help = run_bkdoc({verb, "--help"});
        EXPECT_EQ(help.code, 0);
        EXPECT_EQ(help.out.find("-I DIR") == std::string::npos, verb == "dump") << help.out;
        EXPECT_NE(help.out.find("--key KEY"), std::string::npos) << help.out;
        EXPECT_NE(help.out.find("BKDOC_KEY"), std::string::npos) << help.out;
        EXPECT_NE(help.out.find("Exit code: 0"), std::string::npos) << help.out;
        EXPECT_EQ(run_bkdoc({verb, "--version"}).out, run_bkdoc({"--version"}).out);
    }
    EXPECT_TRUE(run_bkdoc({"--version"}).out.starts_with("bkdoc "));
}

TEST(bkdoc_command_line, a_verb_that_is_not_known_is_refused_by_name) {
    expect_refusal({"frobnicate", "x.bkd"});
    EXPECT_NE(run_bkdoc({"frobnicate"}).err.find("'frobnicate'"), std::string::npos);
}

TEST(bkdoc_command_line, what_is_missing_or_too_much_is_refused) {
    expect_refusal({});
    expect_refusal({"check"});
    expect_refusal({"cat"});
    expect_refusal({"same", "a.bkd"});
    expect_refusal({"cat", "a.bkd", "b.bkd"});
    expect_refusal({"tree", "--depth", "many", "a.bkd"});
    expect_refusal({"tree", "--colour", "a.bkd"});
    expect_refusal({"check", "-I"});
    expect_refusal({"convert", "a.bkd", "--to", "text"});
    expect_refusal({"convert", "a.bkd", "b.bkd"});
    expect_refusal({"convert", "a.bkd", "b.bkd", "--to", "paper"});
    expect_refusal({"dump"});
    expect_refusal({"dump", "a.bkd", "b.bkd"});
}

TEST(bkdoc_command_line, a_file_that_is_not_there_is_refused_by_every_verb) {
    for (const std::string& verb : verbs) {
        const BkdocRun run = run_bkdoc(complete(verb, "no_such_file.bkd"), "a 1\n");
        EXPECT_EQ(run.code, 2) << verb;
        EXPECT_EQ(run.out, "") << verb;
        EXPECT_EQ(run.err, "bkdoc: no_such_file.bkd: no such file\n") << verb;
    }
}

TEST(bkdoc_command_line, a_refusal_stays_on_its_line_whatever_the_file_is_called) {
    EXPECT_EQ(run_bkdoc({"cat", "a\x1B"
                                "b"})
                  .err,
              "bkdoc: a\\x1Bb: no such file\n");
}

TEST(bkdoc_command_line, a_folder_is_refused_as_a_folder) {
    const ScratchFolder folder;
    EXPECT_EQ(run_bkdoc({"cat", folder.path()}).err, "bkdoc: " + folder.path() + ": is a directory\n");
}

TEST(bkdoc_command_line, a_search_folder_takes_one_word_so_that_a_file_may_follow) {
    const ScratchFolder folder;
    folder.write("library/part.bkd", "b 2\n");
    const std::string top = folder.write("top.bkd", "#include \"part.bkd\"\n");
    EXPECT_EQ(run_bkdoc({"check", "-I", folder.path("library"), top}).code, 0);
    EXPECT_EQ(run_bkdoc({"check", "-I" + folder.path("library"), top}).code, 0);
    EXPECT_EQ(run_bkdoc({"check", top, "-I", folder.path("library")}).code, 0);
    EXPECT_EQ(run_bkdoc({"check", top}).code, 2);
}

TEST(bkdoc_command_line, search_folders_are_tried_in_the_order_given) {
    const ScratchFolder folder;
    folder.write("one/part.bkd", "b 1\n");
    folder.write("two/part.bkd", "b 2\n");
    const std::string top = folder.write("top.bkd", "#include \"part.bkd\"\n");
    const auto text_with = [&](const char* first, const char* second) {
        return run_bkdoc({"cat", "-I", folder.path(first), "-I", folder.path(second), top}).out;
    };
    EXPECT_TRUE(text_with("one", "two").ends_with("\nb 1"));
    EXPECT_TRUE(text_with("two", "one").ends_with("\nb 2"));
}

TEST(bkdoc_command_line, standard_input_takes_part_in_includes_like_a_file) {
    const ScratchFolder folder;
    folder.write("part.bkd", "b 2\n");
    const BkdocRun run =
        run_bkdoc({"cat", "--compact", "-I", folder.path(), "-"}, "a 1\n#include \"part.bkd\"\n");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.out, "#Brellwick_Serial_Version 1.2\n a 1 b 2\n");
}

TEST(bkdoc_command_line, a_file_whose_name_looks_like_an_option_follows_two_dashes) {
    const BkdocRun run = run_bkdoc({"check", "--", "-x.bkd"});
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.err, "bkdoc: -x.bkd: no such file\n");
}

} // namespace
