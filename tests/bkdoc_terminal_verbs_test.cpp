#include "tests/support/bkdoc_run.h"
#include "tests/support/terminal.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)

#include <algorithm>
#include <initializer_list>
#include <sstream>
#include <string>

namespace {

/// The output with the line ends of programs, and with colours as text: "{1;34}" and "{}".
std::string readable(const std::string& shown) {
    std::string text;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const std::size_t end = shown.find('m', i);
        if (shown.compare(i, 2, "\x1B[") == 0 && end != std::string::npos) {
            const std::string code = shown.substr(i + 2, end - i - 2);
            text += "{" + (code == "0" ? "" : code) + "}";
            i = end;
        } else if (shown[i] != '\r') {
            text += shown[i];
        }
    }
    return text;
}

/// Removes the colours and the final line ends, because a terminal gets one more line end if the text has
/// none.
std::string plain_of(const std::string& shown) {
    std::string text;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const std::size_t end = shown.find('}', i);
        const bool is_colour = shown[i] == '{' && end != std::string::npos &&
                               shown.find_first_not_of("0123456789;", i + 1) == end;
        i = is_colour ? end : i;
        text += is_colour ? "" : shown.substr(i, 1);
    }
    return text.substr(0, text.find_last_not_of('\n') + 1);
}

class BkdocTerminalVerbs : public testing::Test {
protected:
    BkdocTerminalVerbs() {
        folder.write("lights.bkd", "light \"key\" { power 60.0 }\n");
        folder.write("new.bkd", "light \"key\" { power 66.0 }\n");
        folder.write("top.bkd", "#include \"lights.bkd\"\n#include \"none.bkd\"\n");
    }

    /// What the terminal shows of a run in the folder, without standard error.
    std::string shown(const std::string& arguments, const std::string& environment = "TERM=xterm") const {
        Terminal terminal;
        EXPECT_TRUE(terminal.works());
        return readable(terminal.show(
            "cd " + bkdoc_run_detail::shell_word(folder.path()) + " && unset NO_COLOR; " + environment + " " +
            bkdoc_run_detail::shell_word(BK_PARSER_BKDOC) + " " + arguments + " 2>/dev/null"));
    }

    const ScratchFolder folder;
};

using bkdoc_terminal_verbs = BkdocTerminalVerbs;

TEST_F(bkdoc_terminal_verbs, are_coloured_there) {
    EXPECT_EQ(shown("get '**/power' lights.bkd"), "{2}lights.bkd:1:15:{} {1;34}light/power{} = {36}60.0{}\n");
    EXPECT_EQ(shown("diff lights.bkd new.bkd"),
              "{2}new.bkd:1{} {1}light/power{} {1;31}60.0{} -> {32}66.0{}\n");
    EXPECT_EQ(shown("deps top.bkd"),
              "{1}top.bkd{}\n"
              "{2}├── {}{1;34}lights.bkd{}{2}  line 1{}\n"
              "{2}└── {}{1;34}none.bkd{}{2}  line 2{}  {1;31}not found; tried none.bkd{}\n");
    EXPECT_EQ(shown("check top.bkd"),
              "{1}top.bkd:2:1:{} {1;31}error:{} {1}'none.bkd' not found; tried none.bkd; -I adds a folder{}"
              "{2} [include-not-found]{}\n#include \"none.bkd\"\n{1;32}^~~~~~~~~~~~~~~~~~~{}\n1 error\n");
    const std::string changed = shown("set --dry-run '**/power' '*=1.1' lights.bkd");
    EXPECT_TRUE(changed.starts_with("{1}--- lights.bkd{}\n{1}+++ lights.bkd{}\n")) << changed;
    EXPECT_TRUE(
        changed.ends_with("{1;31}-light \"key\" { power 60.0 }{}\n{32}+light \"key\" { power 66.0 }{}\n"))
        << changed;
    const std::string laid_out = shown("fmt --diff lights.bkd");
    EXPECT_TRUE(laid_out.starts_with("{1}--- lights.bkd{}\n{1}+++ lights.bkd{}\n")) << laid_out;
    EXPECT_TRUE(laid_out.ends_with("{1;31}-light \"key\" { power 60.0 }{}\n{32}+light \"key\" {{}\n"
                                   "{32}+    power 60.0{}\n{32}+}{}\n"))
        << laid_out;
}

TEST_F(bkdoc_terminal_verbs, show_what_a_file_gets_but_for_the_colours) {
    for (const char* form : {"archive", "binary"}) {
        const std::string to = std::string("convert --to ") + form + " new.bkd new." + form;
        ASSERT_EQ(plain_of(shown(to)), "");
    }
    for (const char* verb : {"check top.bkd",
                             "tree lights.bkd",
                             "cat lights.bkd",
                             "info lights.bkd top.bkd",
                             "deps top.bkd",
                             "stats lights.bkd",
                             "dump new.archive",
                             "dump new.binary",
                             "get '**' lights.bkd",
                             "grep key lights.bkd",
                             "set --dry-run light/power =1.0 lights.bkd",
                             "set light/power =1.0 lights.bkd",
                             "add --dry-run a 1 lights.bkd",
                             "rm --dry-run light lights.bkd",
                             "mv --dry-run light lamp lights.bkd",
                             "rename --dry-run light lamp lights.bkd",
                             "fmt lights.bkd",
                             "fmt --check lights.bkd",
                             "diff lights.bkd new.bkd",
                             "diff --stat lights.bkd new.bkd",
                             "diff --json lights.bkd new.bkd",
                             "same lights.bkd new.bkd",
                             "merge lights.bkd new.bkd lights.bkd",
                             "textconv new.archive",
                             "convert --to json lights.bkd -",
                             "recover new.binary"}) {
        const std::string arguments = verb;
        const std::string piped = shown(arguments + " | cat");
        EXPECT_NE(piped, "") << verb;
        EXPECT_EQ(plain_of(shown(arguments)), plain_of(piped)) << verb;
    }
}

TEST_F(bkdoc_terminal_verbs, are_not_coloured_when_that_is_not_wanted) {
    for (const char* verb :
         {"get '**/power' lights.bkd", "grep key lights.bkd", "diff lights.bkd new.bkd", "deps top.bkd",
          "set --dry-run '**/power' '*=1.1' lights.bkd", "fmt --diff lights.bkd", "check top.bkd"}) {
        const std::string arguments = verb;
        const std::string plain = shown(arguments, "TERM=xterm NO_COLOR=1");
        EXPECT_EQ(plain.find('{' + std::string("}")), std::string::npos) << plain;
        EXPECT_EQ(shown(arguments + " --color never"), plain) << verb;
        EXPECT_EQ(shown(arguments + " --color auto", "TERM=dumb"), plain) << verb;
        EXPECT_EQ(shown(arguments + " | cat"), plain) << verb;
        const std::string coloured = shown(arguments);
        EXPECT_NE(coloured, plain) << verb;
        EXPECT_EQ(shown(arguments + " --color always | cat"), coloured) << verb;
        EXPECT_EQ(shown(arguments + " --color auto"), coloured) << verb;
    }
}

TEST_F(bkdoc_terminal_verbs, fit_their_help_into_its_width) {
    std::size_t lines_before = 0;
    for (const unsigned short width : std::initializer_list<unsigned short>{100, 80, 60}) {
        Terminal terminal;
        terminal.set_width(width);
        std::istringstream shown(
            readable(terminal.show(bkdoc_run_detail::shell_word(BK_PARSER_BKDOC) + " check --help")));
        std::size_t lines = 0;
        std::size_t longest = 0;
        for (std::string line; std::getline(shown, line); ++lines) {
            longest = std::max(longest, line.size());
        }
        EXPECT_LE(longest, width);
        EXPECT_GT(longest, width - 15u);
        EXPECT_GT(lines, lines_before);
        lines_before = lines;
    }
}

/// A document that takes long enough to read that the tool shows its progress. Empty if no document is large
/// enough.
class BkdocLongWork : public testing::Test {
protected:
    static std::string long_text() {
        std::string text = "light \"key\" { power 60.0 }\nrow";
        text.append(std::size_t{24} << 20, ' ');
        for (std::size_t i = text.size() - (std::size_t{24} << 20); i + 4 < text.size(); i += 5) {
            text.replace(i, 4, " 1.5");
        }
        return text + "\n";
    }

    /// Whether the progress is still below 60 %.
    static bool is_early(const std::string& shown) {
        const std::size_t percent = shown.find('%');
        const std::size_t blank = shown.rfind(' ', percent);
        return percent != std::string::npos && std::stoi(shown.substr(blank)) < 60;
    }

    /// Runs a verb on larger and larger documents until it shows its progress early, and then calls `act`.
    /// Returns the whole output.
    template <class Act>
    std::string run_long(const std::vector<std::string>& words, Act act, int& code) {
        for (; text_.size() < (std::size_t{1} << 29); grow()) {
            std::vector<std::string> command = {BK_PARSER_BKDOC};
            command.insert(command.end(), words.begin(), words.end());
            command.push_back(file_);
            Terminal terminal;
            terminal.start(command, true);
            std::string shown = terminal.read_until("%");
            const bool is_long = is_early(shown);
            if (is_long) {
                act(terminal);
            }
            shown += terminal.read_until({});
            code = terminal.wait();
            if (is_long) {
                return shown;
            }
        }
        return {};
    }

    bool is_untouched() const { return folder_.count() == 1 && folder_.read("long.bkd") == text_; }

private:
    void grow() {
        text_ += text_;
        folder_.write("long.bkd", text_);
    }

    const ScratchFolder folder_;
    std::string text_ = long_text();
    std::string file_ = folder_.write("long.bkd", text_);
};

using bkdoc_long_work = BkdocLongWork;

TEST_F(bkdoc_long_work, shows_its_progress_and_takes_it_away) {
    int code = -1;
    const std::string shown = run_long(
        {"get", "--values", "**/power"}, [](const Terminal&) {}, code);
    EXPECT_EQ(code, 0);
    EXPECT_TRUE(shown.starts_with("\rreading ")) << shown;
    EXPECT_NE(shown.find("%\x1B[K\r\x1B[K60.0\r\n"), std::string::npos) << shown;
}

TEST_F(bkdoc_long_work, is_interrupted_and_writes_nothing) {
    for (const std::vector<std::string>& words : {std::vector<std::string>{"set", "-w", "**/power", "*=2"},
                                                  {"get", "**/power"},
                                                  {"check"},
                                                  {"info"}}) {
        int code = -1;
        const std::string shown = run_long(
            words, [](const Terminal& terminal) { terminal.press_interrupt(); }, code);
        EXPECT_EQ(code, 130) << words[0] << shown;
        EXPECT_NE(shown.find("bkdoc: interrupted"), std::string::npos) << words[0] << shown;
        EXPECT_TRUE(is_untouched());
    }
}

} // namespace

#endif
