#include "tests/support/bkdoc_run.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)

#include <fcntl.h>
#include <unistd.h>

namespace {

/// A terminal of the test's own.
class Terminal {
public:
    Terminal() : master_(posix_openpt(O_RDWR | O_NOCTTY)) {
        if (master_ >= 0 && grantpt(master_) == 0 && unlockpt(master_) == 0) {
            slave_ = open(ptsname(master_), O_RDWR | O_NOCTTY);
        }
    }
    ~Terminal() {
        close(slave_);
        close(master_);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    bool works() const { return slave_ >= 0; }

    /// What a shell command, whose standard output the terminal is, shows on it.
    std::string show(const std::string& command) {
        const pid_t child = fork();
        if (child == 0) {
            dup2(slave_, STDOUT_FILENO);
            execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
            _exit(127);
        }
        close(slave_);
        slave_ = -1;
        std::string shown;
        char buffer[4096];
        for (ssize_t count = 0; (count = read(master_, buffer, sizeof buffer)) > 0;) {
            shown.append(buffer, static_cast<std::size_t>(count));
        }
        int status = 0;
        waitpid(child, &status, 0);
        return shown;
    }

private:
    int master_;
    int slave_ = -1;
};

std::string shown_with(const std::string& environment, const std::string& arguments) {
    Terminal terminal;
    EXPECT_TRUE(terminal.works());
    const std::string tool = bkdoc_run_detail::shell_word(BK_PARSER_BKDOC);
    return terminal.show("unset NO_COLOR; printf 'a 1\\nb @ 2\\n' | " + environment + " " + tool + " " +
                         arguments + " 2>/dev/null");
}

TEST(bkdoc_terminal, names_and_values_are_coloured) {
    const std::string shown = shown_with("TERM=xterm", "tree -");
    EXPECT_NE(shown.find("\x1B[1;34ma\x1B[0m"), std::string::npos) << shown;
    EXPECT_NE(shown.find("\x1B[2mint\x1B[0m"), std::string::npos) << shown;
}

TEST(bkdoc_terminal, errors_are_coloured) {
    EXPECT_NE(shown_with("TERM=xterm", "check -").find("\x1B[1;31merror:\x1B[0m"), std::string::npos);
}

TEST(bkdoc_terminal, no_colours_are_used_against_the_users_will) {
    for (const char* environment : {"TERM=xterm NO_COLOR=1", "TERM=dumb"}) {
        const std::string shown = shown_with(environment, "tree -");
        EXPECT_NE(shown.find("a  int  1"), std::string::npos) << shown;
        EXPECT_EQ(shown.find('\x1B'), std::string::npos) << shown;
    }
}

TEST(bkdoc_terminal, cat_leaves_the_prompt_a_line_of_its_own) {
    EXPECT_TRUE(shown_with("TERM=xterm", "cat -").ends_with("b 2\r\n"));
}

TEST(bkdoc_terminal, only_a_text_is_converted_onto_it) {
    EXPECT_TRUE(shown_with("TERM=xterm", "convert - - --to text").ends_with("b 2\r\n"));
    EXPECT_EQ(shown_with("TERM=xterm", "convert - - --to binary"), "");
}

} // namespace

#endif
