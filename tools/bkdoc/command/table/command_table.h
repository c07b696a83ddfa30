#pragma once

#include "command/arguments.h"
#include "output/output.h"
#include "verbs/exit_code.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>

namespace bkdoc {

/// The kind of value that an option takes.
enum class ValueKind { none, word, whole_number, folder, file, choice };

/// An option of the command line.
struct OptionSpec {
    std::string_view name;       ///< with dashes, such as "--depth"; the short form when there is no long one
    std::string_view short_name; ///< such as "-j"; may be empty
    ValueKind kind = ValueKind::none;
    std::string_view value_name; ///< such as "N"; the words of a choice, separated by "|"
    bool repeats = false;
    std::string_view help;
};

/// The operands of a verb.
struct OperandSpec {
    std::string_view name; ///< such as "FILE"
    bool repeats = false;
    bool is_optional = false;
};

/// The tasks of the verbs, in the order of the help.
enum class Task { look, find, change, compare, convert, repair };

/// A verb: everything that the parser, the help, the manual and the completions know of it.
struct VerbSpec {
    std::string_view name;
    Task task;
    std::string_view summary;     ///< one line
    std::string_view description; ///< paragraphs, separated by blank lines; may be empty
    std::span<const OperandSpec> operands;
    std::span<const OptionSpec> options; ///< its own, besides the shared ones
    bool opens_documents;                ///< also takes opening_options()
    std::string_view example;            ///< a command line; a test runs it on the example project
    std::string_view exit_codes;         ///< lines with a code, a blank and its meaning
    ExitCode (*run)(const Arguments&, Streams&);
};

/// The heading of a task in the help text.
std::string_view task_heading(Task task) noexcept;

/// Every verb, in the order of the help.
std::span<const VerbSpec> all_verbs();
/// Null when no verb has that name.
const VerbSpec* find_verb(std::string_view name);

/// The options that every command line takes: --help, --version, --color.
std::span<const OptionSpec> general_options() noexcept;
/// The options of all verbs that open documents.
std::span<const OptionSpec> opening_options() noexcept;

/// The option of that long or short name among those of a verb, or null. `verb` may be null.
const OptionSpec* find_option(const VerbSpec* verb, std::string_view name) noexcept;

/// Calls `visit` with each exit code of a verb and its meaning.
template <class Visit>
void for_each_exit_code(const VerbSpec& verb, Visit visit) {
    for (std::string_view rest = verb.exit_codes; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        visit(line.substr(0, line.find(' ')), line.substr(line.find(' ') + 1));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    }
}

/// Calls `visit` with each option that a verb takes, its own first. `verb` may be null.
template <class Visit>
void for_each_option(const VerbSpec* verb, Visit visit) {
    if (verb != nullptr) {
        for (const OptionSpec& option : verb->options) {
            visit(option);
        }
        if (verb->opens_documents) {
            for (const OptionSpec& option : opening_options()) {
                visit(option);
            }
        }
    }
    for (const OptionSpec& option : general_options()) {
        visit(option);
    }
}

} // namespace bkdoc
