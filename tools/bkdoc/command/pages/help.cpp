#include "command/pages/help.h"

#include "command/table/command_table.h"
#include "output/display/text_display.h"

#include <algorithm>

namespace bkdoc {

namespace {

constexpr std::size_t option_column = 24;
constexpr std::size_t verb_column = 12;

/// A row of two columns: what stands in the first, padded, and the filled text behind it.
std::string row(std::string_view head, std::string_view text, std::size_t column, std::size_t width) {
    std::string line = "  " + std::string(head);
    const std::string indent(column, ' ');
    if (count_characters(line) + 2 > column) {
        line += "\n" + indent;
    } else {
        line += std::string(column - count_characters(line), ' ');
    }
    return line + filled(text, column, width) + "\n";
}

std::string options_of(const VerbSpec& verb, std::size_t width) {
    std::string text = "\nOptions\n";
    for_each_option(&verb, [&](const OptionSpec& option) {
        text += row(option_heading(option), option.help, option_column, width);
    });
    return text;
}

} // namespace

std::string filled(std::string_view text, std::size_t indent, std::size_t width) {
    const std::size_t room = width > indent + 20 ? width - indent : 20;
    const std::string margin = "\n" + std::string(indent, ' ');
    std::string result;
    std::size_t used = 0;
    while (!text.empty()) {
        if (text.front() == '\n') {
            const std::size_t line_end = std::min(text.find('\n', 1), text.size());
            const bool is_verbatim = text.size() > 1 && (text[1] == ' ' || text[1] == '\n');
            result += text[1 < text.size() ? 1 : 0] == '\n' ? "\n" : std::string_view(margin);
            used = 0;
            if (is_verbatim && text[1] == ' ') {
                result += text.substr(1, line_end - 1);
                text.remove_prefix(line_end);
            } else {
                text.remove_prefix(1);
            }
            continue;
        }
        const std::size_t end = std::min(text.find_first_of(" \n"), text.size());
        const std::string_view word = text.substr(0, end);
        const std::size_t length = count_characters(word);
        if (used != 0 && used + 1 + length > room) {
            result += margin;
            used = 0;
        }
        if (used != 0) {
            result += ' ';
            ++used;
        }
        result += word;
        used += length;
        text.remove_prefix(end);
        if (text.starts_with(' ')) {
            text.remove_prefix(1);
        }
    }
    return result;
}

std::string option_heading(const OptionSpec& option) {
    std::string heading(option.short_name);
    if (!heading.empty()) {
        heading += ", ";
    }
    heading += option.name;
    if (option.kind != ValueKind::none) {
        heading += " " + std::string(option.value_name);
    }
    return heading;
}

std::string usage_of(const VerbSpec& verb) {
    std::string usage = std::string(verb.name) + " [OPTIONS]";
    for (const OperandSpec& operand : verb.operands) {
        std::string word(operand.name);
        word += operand.repeats ? "..." : "";
        usage += operand.is_optional ? " [" + word + "]" : " " + word;
    }
    return usage;
}

std::string version_text() {
    return "bkdoc " BKDOC_VERSION "\n";
}

std::string help_text(std::size_t width) {
    std::string text = "bkdoc: check, find, change, compare and convert bk documents\n\n"
                       "Usage: bkdoc VERB [OPTIONS] FILE...\n";
    const VerbSpec* last = nullptr;
    for (const VerbSpec& verb : all_verbs()) {
        if (last == nullptr || last->task != verb.task) {
            text += "\n" + std::string(task_heading(verb.task)) + "\n";
        }
        text += row(verb.name, verb.summary, verb_column, width);
        last = &verb;
    }
    text += "\nOptions\n";
    for (const OptionSpec& option : general_options()) {
        text += row(option_heading(option), option.help, option_column, width);
    }
    text += "\n" +
            filled("bkdoc VERB --help describes a verb, with an example. A FILE named - is standard input.",
                   0, width) +
            "\n";
    return text;
}

std::string help_text(const VerbSpec& verb, std::size_t width) {
    std::string text = filled(verb.summary, 0, width) + "\n\nUsage: bkdoc " + usage_of(verb) + "\n";
    if (!verb.description.empty()) {
        text += "\n" + filled(verb.description, 0, width) + "\n";
    }
    text += options_of(verb, width);
    text += "\nExample\n  " + filled(verb.example, 2, width) + "\n";
    text += "\nExit code: " + filled(verb.exit_codes, 11, width) + "\n";
    return text;
}

} // namespace bkdoc
