#include "command/table/command_table.h"

#include "command/table/table_parts.h"

#include <algorithm>
#include <vector>

namespace bkdoc {

namespace {

constexpr OptionSpec general[] = {
    {"--color", "", ValueKind::choice, "auto|always|never", false,
     "When to use colours; auto means on a terminal."},
    {"--help", "-h", ValueKind::none, "", false, "Show this help and exit."},
    {"--version", "", ValueKind::none, "", false, "Show the version and exit."},
};

constexpr OptionSpec opening[] = {
    {"-I", "", ValueKind::folder, "DIR", true, "Search this folder for included files. May be repeated."},
    {"--no-includes", "", ValueKind::none, "", false, "Do not read included files."},
    {"--no-config", "", ValueKind::none, "", false,
     "Ignore the .bkdoc.bkd in the folder of a document or above it."},
    {"--trusted", "", ValueKind::none, "", false,
     "Read documents from a trusted source without limits on what includes and archives expand to."},
    key_option,
    key_file_option,
};

std::vector<VerbSpec> joined_verbs() {
    std::vector<VerbSpec> verbs;
    for (const auto& task : {look_verbs(), find_verbs(), change_verbs(), layout_verbs(), compare_verbs(),
                             convert_verbs(), repair_verbs()}) {
        verbs.insert(verbs.end(), task.begin(), task.end());
    }
    return verbs;
}

const OptionSpec* find_among(std::span<const OptionSpec> options, std::string_view name) noexcept {
    const auto found = std::find_if(options.begin(), options.end(), [name](const OptionSpec& option) {
        return option.name == name || (!option.short_name.empty() && option.short_name == name);
    });
    return found == options.end() ? nullptr : &*found;
}

} // namespace

std::string_view task_heading(Task task) noexcept {
    switch (task) {
    case Task::look:
        return "Look at documents";
    case Task::find:
        return "Find";
    case Task::change:
        return "Change";
    case Task::compare:
        return "Compare";
    case Task::convert:
        return "Convert";
    case Task::repair:
        return "Repair";
    }
    return {};
}

std::span<const VerbSpec> all_verbs() {
    static const std::vector<VerbSpec> verbs = joined_verbs();
    return verbs;
}

std::span<const OptionSpec> general_options() noexcept {
    return general;
}

std::span<const OptionSpec> opening_options() noexcept {
    return opening;
}

const VerbSpec* find_verb(std::string_view name) {
    const auto verbs = all_verbs();
    const auto found =
        std::find_if(verbs.begin(), verbs.end(), [name](const VerbSpec& verb) { return verb.name == name; });
    return found == verbs.end() ? nullptr : &*found;
}

const OptionSpec* find_option(const VerbSpec* verb, std::string_view name) noexcept {
    const OptionSpec* option = verb == nullptr ? nullptr : find_among(verb->options, name);
    if (option == nullptr && verb != nullptr && verb->opens_documents) {
        option = find_among(opening, name);
    }
    return option == nullptr ? find_among(general, name) : option;
}

} // namespace bkdoc
