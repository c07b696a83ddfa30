#pragma once

#include "tests/support/scratch_folder.h"

#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#if defined(_WIN32)
#include "tests/support/wide_text.h"
#else
#include <sys/wait.h>
#endif

/// The result of one run of the command-line tool.
struct BkdocRun {
    int code = -1; // the exit code; -1 when it did not exit by itself
    std::string out;
    std::string err;
};

namespace bkdoc_run_detail {

#if defined(_WIN32)
inline std::string shell_word(std::string_view word) {
    return "\"" + std::string(word) + "\"";
}
// The shell removes the outermost quotes of a line. On a busy machine, starting the shell may fail, and so may starting a program in it.
// Then tries again.
inline int run_line(const std::string& line) {
    constexpr int no_shell = -1;
    constexpr int no_program = 9009;
    const std::wstring quoted = to_wide("\"" + line + "\"");
    int status = no_shell;
    for (int attempt = 0; attempt < 5 && (status == no_shell || status == no_program); ++attempt) {
        status = _wsystem(quoted.c_str());
    }
    return status;
}
inline int exit_code(int status) {
    return status;
}
#else
inline std::string shell_word(std::string_view word) {
    std::string result = "'";
    for (const char character : word) {
        result += character == '\'' ? std::string("'\\''") : std::string(1, character);
    }
    return result + "'";
}
inline int run_line(const std::string& line) {
    return std::system(line.c_str());
}
inline int exit_code(int status) {
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
#endif

} // namespace bkdoc_run_detail

/// The text with the line ends of Unix.
inline std::string with_plain_line_ends(std::string text) {
    std::erase(text, '\r');
    return text;
}

/// Runs the tool with these arguments and a file as its standard input, and waits for it. `before` comes before it in the shell's command line.
inline BkdocRun run_bkdoc_on(const std::string& input_path, const std::vector<std::string>& arguments,
                             const std::string& before = {}) {
    using namespace bkdoc_run_detail;
    const ScratchFolder folder;
    std::string line = before + shell_word(BK_PARSER_BKDOC);
    for (const std::string& argument : arguments) {
        line += " " + shell_word(argument);
    }
    line += " <" + shell_word(input_path) + " >" + shell_word(folder.path("out")) + " 2>" +
            shell_word(folder.path("err"));
    BkdocRun run;
    run.code = exit_code(run_line(line));
    run.out = folder.read("out");
    run.err = folder.read("err");
    return run;
}

/// Runs the tool with `input` as its standard input.
inline BkdocRun run_bkdoc(const std::vector<std::string>& arguments, std::string_view input = {}) {
    const ScratchFolder folder;
    folder.write("in", input);
    return run_bkdoc_on(folder.path("in"), arguments);
}

/// Runs the tool in a folder.
inline BkdocRun run_bkdoc_in(const std::string& folder, const std::vector<std::string>& arguments,
                             std::string_view input = {}) {
    const ScratchFolder other;
    other.write("in", input);
#if defined(_WIN32)
    const std::string change = "cd /d ";
#else
    const std::string change = "cd ";
#endif
    return run_bkdoc_on(other.path("in"), arguments, change + bkdoc_run_detail::shell_word(folder) + " && ");
}

/// The arguments that read the example project.
inline std::string example_path(std::string_view name) {
    return std::string(BK_PARSER_SOURCE_DIR "/examples/") + std::string(name);
}
inline std::vector<std::string> with_project_folders(std::vector<std::string> arguments) {
    for (const char* folder : {"project/library", "project/shots"}) {
        arguments.insert(arguments.end(), {"-I", example_path(folder)});
    }
    return arguments;
}
