#include "command/pages/manual.h"

#include "command/pages/help.h"
#include "command/table/command_table.h"

#include <string_view>

namespace bkdoc {

namespace {

/// Escapes a text for troff: dashes stay as typed, and no line begins with a request.
std::string literal(std::string_view text) {
    std::string result;
    bool is_line_start = true;
    for (const char character : text) {
        if (is_line_start && (character == '.' || character == '\'')) {
            result += "\\&";
        }
        if (character == '-') {
            result += "\\-";
        } else if (character == '\\') {
            result += "\\e";
        } else {
            result += character;
        }
        is_line_start = character == '\n';
    }
    return result;
}

/// Writes paragraphs. Blank lines separate them, and lines that begin with a blank are shown as they are.
std::string paragraphs(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        if (line.empty()) {
            result += ".PP\n";
        } else if (line.front() == ' ') {
            result += ".nf\n" + literal(line) + "\n.fi\n";
        } else {
            result += literal(line) + "\n";
        }
    }
    return result;
}

std::string described(const OptionSpec& option) {
    return ".TP\n.B " + literal(option_heading(option)) + "\n" + literal(option.help) + "\n";
}

std::string section(const VerbSpec& verb) {
    std::string text = ".SS " + literal(usage_of(verb)) + "\n" + literal(verb.summary) + "\n";
    if (!verb.description.empty()) {
        text += ".PP\n" + paragraphs(verb.description);
    }
    for (const OptionSpec& option : verb.options) {
        text += described(option);
    }
    if (verb.opens_documents) {
        text += ".PP\nIt also takes the options for reading documents, below.\n";
    }
    text += ".PP\nExample:\n.PP\n.nf\n  " + literal(verb.example) + "\n.fi\n";
    text += ".PP\nExit code:\n";
    for_each_exit_code(verb, [&text](std::string_view code, std::string_view meaning) {
        text += ".TP\n.B " + std::string(code) + "\n" + literal(meaning) + "\n";
    });
    return text;
}

} // namespace

std::string manual_page() {
    std::string text =
        ".TH BKDOC 1 \"\" \"bk_parser " BKDOC_VERSION "\" \"User commands\"\n"
        ".SH NAME\nbkdoc \\- check, find, change, compare and convert bk documents\n"
        ".SH SYNOPSIS\n.B bkdoc\n.I VERB\n.RI [ OPTIONS ]\n.IR FILE ...\n"
        ".SH DESCRIPTION\nA document is a tree of groups, entries and values. It is stored as text, as "
        "binary "
        "data, as encrypted text or as an archive; its first bytes show the form. Options may be "
        "anywhere; \\-\\- ends them. A FILE named \\- is standard input.\n.PP\n"
        "bkdoc help lists the verbs; bkdoc help VERB explains one.\n"
        ".SH VERBS\n";
    for (const VerbSpec& verb : all_verbs()) {
        text += section(verb);
    }
    text += ".SH OPTIONS FOR READING DOCUMENTS\n";
    for (const OptionSpec& option : opening_options()) {
        text += described(option);
    }
    text += ".SH GENERAL OPTIONS\n";
    for (const OptionSpec& option : general_options()) {
        text += described(option);
    }
    return text + ".SH ENVIRONMENT\n.TP\n.B BKDOC_KEY\nThe key of encrypted documents, unless \\-\\-key or "
                  "\\-\\-key\\-file gives one.\n.TP\n.B NO_COLOR\nIf set, bkdoc uses no colours unless "
                  "\\-\\-color asks for them.\n"
                  ".SH EXIT STATUS\n0 if all is well, 1 if the answer is no (errors, differences, nothing "
                  "found), 2 if "
                  "the work could not be done, 130 if it was interrupted.\n";
}

} // namespace bkdoc
