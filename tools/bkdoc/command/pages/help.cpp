#include "command/pages/help.h"

#include "command/table/command_table.h"
#include "output/display/text_display.h"

#include <algorithm>
#include <span>

namespace bkdoc {

namespace {

constexpr std::size_t verb_column = 12;
constexpr std::size_t exit_code_column = 7;
constexpr std::size_t usage_column = 13;

/// Breaks a list of choices after a "|" where it would be too wide.
std::string wrapped_choices(std::string_view head, std::size_t indent, std::size_t width) {
    const std::size_t begin = head.rfind(' ') + 1;
    std::string line(head.substr(0, begin));
    std::size_t used = indent + count_characters(line);
    const std::size_t margin = used;
    for (std::size_t at = begin; at < head.size();) {
        const std::size_t bar = head.find('|', at);
        const std::string_view word = head.substr(at, bar == std::string_view::npos ? bar : bar - at + 1);
        if (used + word.size() > width && used > margin) {
            line += "\n" + std::string(margin, ' ');
            used = margin;
        }
        line += word;
        used += word.size();
        at += word.size();
    }
    return line;
}

/// A row of two columns: the first padded, the second wrapped.
std::string row(std::string_view head, std::string_view text, std::size_t column, std::size_t width) {
    const std::size_t used = 2 + count_characters(head);
    const std::string gap =
        used + 2 > column ? "\n" + std::string(column, ' ') : std::string(column - used, ' ');
    return "  " + wrapped_choices(head, 2, width) + gap + filled(text, column, width) + "\n";
}

std::string option_rows(std::string_view heading, std::span<const OptionSpec> options, std::size_t width) {
    const std::size_t option_column = width < 60 ? 8 : 24;
    std::string text;
    for (const OptionSpec& option : options) {
        text += row(option_heading(option), option.help, option_column, width);
    }
    return text.empty() ? text : "\n" + std::string(heading) + "\n" + text;
}

std::string options_of(const VerbSpec& verb, std::size_t width) {
    return option_rows("Options", verb.options, width) +
           option_rows("Options for reading documents",
                       verb.opens_documents ? opening_options() : std::span<const OptionSpec>(), width) +
           option_rows("General options", general_options(), width);
}

std::string exit_codes_of(const VerbSpec& verb, std::size_t width) {
    std::string text = "\nExit code\n";
    for_each_exit_code(verb, [&](std::string_view code, std::string_view meaning) {
        text += row(code, meaning, exit_code_column, width);
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
    std::string text = filled("bkdoc: check, find, change, compare and convert bk documents", 0, width) +
                       "\n\nUsage: bkdoc VERB [OPTIONS] FILE...\n";
    const VerbSpec* last = nullptr;
    for (const VerbSpec& verb : all_verbs()) {
        if (last == nullptr || last->task != verb.task) {
            text += "\n" + std::string(task_heading(verb.task)) + "\n";
        }
        text += row(verb.name, verb.summary, verb_column, width);
        last = &verb;
    }
    text += option_rows("Options", general_options(), width) + "\n";
    text += filled("bkdoc help VERB explains a verb and shows an example. A FILE named - is standard input.",
                   0, width);
    return text + "\n";
}

std::string help_text(const VerbSpec& verb, std::size_t width) {
    std::string text = filled(verb.summary, 0, width) + "\n\nUsage: bkdoc " +
                       filled(usage_of(verb), usage_column, width) + "\n";
    if (!verb.description.empty()) {
        text += "\n" + filled(verb.description, 0, width) + "\n";
    }
    text += options_of(verb, width);
    text += "\nExample\n  " + std::string(verb.example) + "\n"; // never wrapped, because people copy it
    return text + exit_codes_of(verb, width);
}

} // namespace bkdoc
