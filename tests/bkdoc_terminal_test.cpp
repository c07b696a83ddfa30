#include "tests/support/bkdoc_run.h"
#include "tests/support/terminal.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)

namespace {

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
