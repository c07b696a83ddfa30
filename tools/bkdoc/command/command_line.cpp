#include "command/command_line.h"

#include "command/pages/completions.h"
#include "command/pages/help.h"
#include "command/pages/manual.h"
#include "command/suggestion.h"
#include "command/table/command_table.h"

#include <algorithm>

namespace bkdoc {

namespace {

// "-=5" is a change of values and "-3" a number: both are operands.
bool is_option_word(std::string_view word) noexcept {
    return word.size() > 1 && word[0] == '-' && word != "-0" &&
           (word[1] == '-' || (word[1] >= 'a' && word[1] <= 'z') || (word[1] >= 'A' && word[1] <= 'Z'));
}

/// Whether the word is an option that takes the next word as its value.
bool takes_next_word(std::string_view word) noexcept {
    if (word.find('=') != std::string_view::npos) {
        return false;
    }
    const auto takes_value = [word](const OptionSpec* option) {
        return option != nullptr && option->kind != ValueKind::none &&
               (option->name == word || option->short_name == word);
    };
    return takes_value(find_option(nullptr, word)) ||
           std::any_of(all_verbs().begin(), all_verbs().end(),
                       [&](const VerbSpec& verb) { return takes_value(find_option(&verb, word)); });
}

/// The position of the verb: the first word that is neither an option nor an option's value.
std::size_t verb_position(const std::vector<std::string>& words) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (!is_option_word(words[i])) {
            return i;
        }
        if (takes_next_word(words[i])) {
            ++i;
        }
    }
    return words.size();
}

std::string unknown_verb(std::string_view word) {
    std::vector<std::string_view> names;
    for (const VerbSpec& verb : all_verbs()) {
        names.push_back(verb.name);
    }
    names.push_back(help_verb);
    std::string meant = did_you_mean(word, names);
    if (meant.empty()) {
        meant = "; bkdoc --help lists them";
    }
    return "unknown verb '" + std::string(word) + "'" + meant;
}

std::string unknown_option(const VerbSpec* verb, std::string_view word) {
    std::vector<std::string_view> names;
    for_each_option(verb, [&names](const OptionSpec& option) { names.push_back(option.name); });
    std::string meant = did_you_mean(word, names);
    if (meant.empty()) {
        meant = "; bkdoc " + (verb == nullptr ? std::string() : std::string(verb->name) + " ") +
                "--help lists them";
    }
    return "unknown option '" + std::string(word) + "'" + meant;
}

/// What the value of an option must be.
std::string wanted(const OptionSpec& option) {
    switch (option.kind) {
    case ValueKind::whole_number:
        return "a whole number";
    case ValueKind::folder:
        return "a folder";
    case ValueKind::file:
        return "a file";
    case ValueKind::choice: {
        std::string words;
        for (const char character : option.value_name) {
            words += character == '|' ? std::string(", ") : std::string(1, character);
        }
        return (option.name == "--to" ? "a form: " : "one of ") + words;
    }
    default:
        return "a value: " + std::string(option.value_name);
    }
}

bool is_choice(std::string_view choices, std::string_view word) {
    while (!word.empty() && !choices.empty()) {
        const std::size_t end = choices.find('|');
        if (choices.substr(0, end) == word) {
            return true;
        }
        choices = end == std::string_view::npos ? std::string_view() : choices.substr(end + 1);
    }
    return false;
}

/// Parses the words of a command line once.
class Parser {
public:
    Parser(const std::vector<std::string>& words, std::size_t verb_at, const VerbSpec& verb)
        : words_(words), verb_at_(verb_at), arguments_(verb) {}

    /// Empty when the command line is correct.
    std::string parse() {
        for (; next_ < words_.size() && refusal_.empty(); ++next_) {
            if (next_ == verb_at_) {
                continue;
            }
            const std::string_view word = words_[next_];
            const bool is_digit_option = word == "-0" && find_option(&arguments_.verb(), word) != nullptr;
            if (options_ended_ || !(is_option_word(word) || is_digit_option)) {
                arguments_.add_operand(std::string(word));
            } else if (word == "--") {
                options_ended_ = true;
            } else if (word.starts_with("--")) {
                take_long(word);
            } else {
                take_short(word);
            }
        }
        return refusal_;
    }

    Arguments& arguments() noexcept { return arguments_; }

private:
    void take_long(std::string_view word) {
        const std::size_t equals = word.find('=');
        const std::string_view name = word.substr(0, equals);
        const OptionSpec* const option = find_option(&arguments_.verb(), name);
        if (option == nullptr) {
            refusal_ = unknown_option(&arguments_.verb(), name);
        } else if (equals != std::string_view::npos) {
            if (option->kind == ValueKind::none) {
                refusal_ = std::string(name) + " takes no value";
            } else {
                take(*option, name, word.substr(equals + 1));
            }
        } else {
            take_with_next(*option, name);
        }
    }

    /// "-lw" has two flags, "-Ilib" an option with its value.
    void take_short(std::string_view word) {
        for (std::size_t i = 1; i < word.size() && refusal_.empty(); ++i) {
            const std::string name = {'-', word[i]};
            const OptionSpec* const option = find_option(&arguments_.verb(), name);
            if (option == nullptr) {
                refusal_ = unknown_option(&arguments_.verb(), name);
            } else if (option->kind != ValueKind::none && i + 1 < word.size()) {
                take(*option, name, word.substr(i + 1));
                return;
            } else {
                take_with_next(*option, name);
            }
        }
    }

    void take_with_next(const OptionSpec& option, std::string_view shown_name) {
        if (option.kind == ValueKind::none) {
            take(option, shown_name, {});
        } else if (next_ + 1 >= words_.size()) {
            refusal_ = std::string(shown_name) + " needs " + wanted(option);
        } else {
            ++next_;
            take(option, shown_name, words_[next_]);
        }
    }

    void take(const OptionSpec& option, std::string_view shown_name, std::string_view value) {
        const bool fits = option.kind == ValueKind::whole_number ? whole_number(value).has_value()
                          : option.kind == ValueKind::choice     ? is_choice(option.value_name, value)
                                                                 : true;
        const bool is_too_large = !fits && option.kind == ValueKind::whole_number && !value.empty() &&
                                  value.find_first_not_of("0123456789") == std::string_view::npos;
        if (is_too_large) {
            refusal_ = std::string(shown_name) + " takes no number as large as " + std::string(value);
        } else if (!fits) {
            refusal_ =
                std::string(shown_name) + " needs " + wanted(option) + ", not '" + std::string(value) + "'";
        } else if (!option.repeats && option.kind != ValueKind::none && arguments_.has(option.name)) {
            refusal_ = std::string(shown_name) + " is given twice";
        } else {
            arguments_.add_option(option.name, std::string(value));
        }
    }

    const std::vector<std::string>& words_;
    std::size_t verb_at_;
    Arguments arguments_;
    std::size_t next_ = 0;
    bool options_ended_ = false;
    std::string refusal_;
};

/// Why the verb cannot take these operands; empty when it can.
std::string count_refusal(const Arguments& arguments) {
    const VerbSpec& verb = arguments.verb();
    std::size_t least = 0;
    bool may_repeat = false;
    for (const OperandSpec& operand : verb.operands) {
        least += operand.is_optional ? 0 : 1;
        may_repeat = may_repeat || operand.repeats;
    }
    const std::string name(verb.name);
    if (arguments.operands().size() < least) {
        std::size_t required = 0;
        for (const OperandSpec& operand : verb.operands) {
            if (!operand.is_optional && required++ == arguments.operands().size()) {
                std::string refusal = name;
                refusal += " needs ";
                refusal += operand.name;
                return refusal.append("; bkdoc ").append(name).append(" --help shows an example");
            }
        }
    }
    if (!may_repeat && arguments.operands().size() > verb.operands.size()) {
        return "too many arguments for " + name + "; bkdoc " + name + " --help shows an example";
    }
    return {};
}

/// Answers a command line without a verb.
CommandLine without_verb(const std::vector<std::string>& words, std::size_t width) {
    CommandLine line;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const OptionSpec* const option =
            find_option(nullptr, std::string_view(words[i]).substr(0, words[i].find('=')));
        if (option == nullptr) {
            line.refusal = unknown_option(nullptr, std::string_view(words[i]).substr(0, words[i].find('=')));
            return line;
        }
        if (option->name == "--help") {
            line.answer = help_text(width);
            return line;
        }
        if (option->name == "--version") {
            line.answer = version_text();
            return line;
        }
        if (takes_next_word(words[i])) {
            ++i;
        }
    }
    line.refusal = "no verb is given; bkdoc --help lists them";
    return line;
}

/// Answers "help" and "help VERB".
CommandLine asked_help(const std::vector<std::string>& words, std::size_t verb_at, std::size_t width) {
    CommandLine line;
    if (verb_at + 1 == words.size() || is_option_word(words[verb_at + 1]) ||
        words[verb_at + 1] == help_verb) {
        line.answer = help_text(width);
    } else if (const VerbSpec* const asked = find_verb(words[verb_at + 1]); asked != nullptr) {
        line.answer = help_text(*asked, width);
    } else {
        line.refusal = unknown_verb(words[verb_at + 1]);
    }
    return line;
}

} // namespace

CommandLine understand(const std::vector<std::string>& words, std::size_t width) {
    const std::size_t verb_at = verb_position(words);
    if (verb_at == words.size()) {
        return without_verb(words, width);
    }
    CommandLine line;
    const VerbSpec* const verb = find_verb(words[verb_at]);
    if (verb == nullptr && words[verb_at] == help_verb) {
        return asked_help(words, verb_at, width);
    }
    if (verb == nullptr) {
        line.answer =
            words[verb_at] == generate_verb && words.size() == verb_at + 2 ? generated(words.back()) : "";
        line.refusal = line.answer.empty() ? unknown_verb(words[verb_at]) : "";
        return line;
    }
    Parser parser(words, verb_at, *verb);
    line.refusal = parser.parse();
    Arguments& arguments = parser.arguments();
    if (!line.refusal.empty()) {
        return line;
    }
    if (arguments.has("--help")) {
        line.answer = help_text(*verb, width);
    } else if (arguments.has("--version")) {
        line.answer = version_text();
    } else if (line.refusal = count_refusal(arguments); line.refusal.empty()) {
        line.color = arguments.value_or("--color", "auto");
        line.arguments = std::move(arguments);
    }
    return line;
}

} // namespace bkdoc
