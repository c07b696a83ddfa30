#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

const std::vector<std::string> verbs = {"check", "cat", "tree", "info", "same", "convert", "dump"};

/// The arguments that each verb needs. The first file is `file`.
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
        EXPECT_NE(help.out.find("\nExit code\n  0    "), std::string::npos) << help.out;
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
    for (const char* verb : {"dump", "recover", "textconv"}) {
        const BkdocRun run = run_bkdoc({verb, folder.path()});
        EXPECT_NE((run.err + run.out).find(folder.path() + ": is a directory\n"), std::string::npos) << verb;
    }
}

TEST(bkdoc_command_line, a_search_folder_takes_one_word_so_that_a_file_may_follow) {
    const ScratchFolder folder;
    folder.write("library/part.bkd", "b 2\n");
    const std::string top = folder.write("top.bkd", "#include \"part.bkd\"\n");
    EXPECT_EQ(run_bkdoc({"check", "-I", folder.path("library"), top}).code, 0);
    EXPECT_EQ(run_bkdoc({"check", "-I" + folder.path("library"), top}).code, 0);
    EXPECT_EQ(run_bkdoc({"check", top, "-I", folder.path("library")}).code, 0);
    EXPECT_EQ(run_bkdoc({"check", top}).code, 1);
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

/// The one line with which the tool refuses, without the name of the tool.
std::string refusal_of(const std::vector<std::string>& arguments) {
    const BkdocRun run = run_bkdoc(arguments);
    EXPECT_EQ(run.code, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_TRUE(run.err.starts_with("bkdoc: ") && run.err.ends_with("\n")) << run.err;
    return run.err.size() > 8 ? run.err.substr(7, run.err.size() - 8) : run.err;
}

TEST(bkdoc_command_line, a_misspelt_word_is_answered_with_the_one_that_was_meant) {
    EXPECT_EQ(refusal_of({"chek", "x.bkd"}), "unknown verb 'chek'; did you mean 'check'?");
    EXPECT_EQ(refusal_of({"--verison"}), "unknown option '--verison'; did you mean '--version'?");
    EXPECT_EQ(refusal_of({"check", "--hlep"}), "unknown option '--hlep'; did you mean '--help'?");
    EXPECT_EQ(refusal_of({"tree", "x.bkd", "--dept=3"}), "unknown option '--dept'; did you mean '--depth'?");
    EXPECT_EQ(refusal_of({"frobnicate"}), "unknown verb 'frobnicate'; bkdoc --help lists them");
    EXPECT_EQ(refusal_of({"check", "-q", "x.bkd"}), "unknown option '-q'; bkdoc check --help lists them");
    EXPECT_EQ(refusal_of({}), "no verb is given; bkdoc --help lists them");
}

TEST(bkdoc_command_line, a_value_that_does_not_suit_is_refused_with_what_would) {
    EXPECT_EQ(refusal_of({"tree", "--depth", "x", "a.bkd"}), "--depth needs a whole number, not 'x'");
    EXPECT_EQ(refusal_of({"tree", "--depth=-1", "a.bkd"}), "--depth needs a whole number, not '-1'");
    EXPECT_EQ(refusal_of({"tree", "--depth=99999999999999999999", "a.bkd"}),
              "--depth takes no number as large as 99999999999999999999");
    EXPECT_EQ(refusal_of({"tree", "a.bkd", "--depth"}), "--depth needs a whole number");
    EXPECT_EQ(refusal_of({"tree", "--depth", "1", "--depth=2", "a.bkd"}), "--depth is given twice");
    EXPECT_EQ(refusal_of({"cat", "--compact=yes", "a.bkd"}), "--compact takes no value");
    EXPECT_EQ(refusal_of({"convert", "a", "b", "--to", "paper"}),
              "--to needs a form: text, binary, cipher, archive, json, json-plain, ndjson, not 'paper'");
    EXPECT_EQ(refusal_of({"convert", "a", "b"}),
              "--to needs a form: text, binary, cipher, archive, json, json-plain, ndjson");
    EXPECT_EQ(refusal_of({"cat", "a", "--color", "blue"}),
              "--color needs one of auto, always, never, not 'blue'");
    EXPECT_EQ(refusal_of({"check", "-I"}), "-I needs a folder");
    EXPECT_EQ(refusal_of({"check", "-j", "1000", "a.bkd"}), "--jobs takes at most 256");
    EXPECT_EQ(refusal_of({"same", "a.bkd"}), "same needs B; bkdoc same --help shows an example");
    EXPECT_EQ(refusal_of({"dump", "a", "b"}),
              "too many arguments for dump; bkdoc dump --help shows an example");
}

TEST(bkdoc_command_line, options_may_stand_anywhere) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", "a { b { c 1 } }\n");
    const std::string shown = run_bkdoc({"tree", "--depth", "1", file}).out;
    EXPECT_NE(shown, run_bkdoc({"tree", file}).out);
    EXPECT_EQ(run_bkdoc({"tree", file, "--depth=1"}).out, shown);
    EXPECT_EQ(run_bkdoc({"--depth", "1", "tree", file}).out, shown);
    EXPECT_EQ(run_bkdoc({"--color", "never", "tree", file, "--depth", "1"}).out, shown);
    EXPECT_EQ(run_bkdoc({"tree", "--depth", "1", "--", file}).out, shown);
}

TEST(bkdoc_command_line, colours_are_always_or_never_there_when_that_is_said) {
    const ScratchFolder folder;
    const std::string file = folder.write("a.bkd", "a 1\n");
    EXPECT_NE(run_bkdoc({"tree", "--color=always", file}).out.find('\x1B'), std::string::npos);
    EXPECT_EQ(run_bkdoc({"tree", "--color=never", file}).out.find('\x1B'), std::string::npos);
    EXPECT_EQ(run_bkdoc({"tree", file}).out.find('\x1B'), std::string::npos);
}

TEST(bkdoc_command_line, each_verb_shows_an_example_and_stands_in_the_manual_and_in_each_completion) {
    for (const char* page : {"man", "bash", "zsh", "fish"}) {
        const BkdocRun run = run_bkdoc({"generate", page});
        EXPECT_EQ(run.code, 0) << page;
        for (const std::string& verb : verbs) {
            EXPECT_NE(run.out.find(verb), std::string::npos) << page << " " << verb;
            const std::string help = run_bkdoc({verb, "--help"}).out;
            EXPECT_NE(help.find("\nExample\n  bkdoc " + verb + " "), std::string::npos) << help;
        }
    }
    EXPECT_EQ(refusal_of({"generate", "paper"}), "unknown verb 'generate'; bkdoc --help lists them");
}

} // namespace
