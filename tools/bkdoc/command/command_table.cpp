#include "command/command_table.h"

#include "command/verb_entries.h"

#include <algorithm>

namespace bkdoc {

namespace {

constexpr std::string_view reading_exit_codes =
    "0 clean, 1 the document has faults, 2 it could not be read or written.";

constexpr OptionSpec general[] = {
    {"--color", "", ValueKind::choice, "auto|always|never", false,
     "Colours: on a terminal, always, or never."},
    {"--help", "-h", ValueKind::none, "", false, "Show this help, and end."},
    {"--version", "", ValueKind::none, "", false, "Show the version, and end."},
};

constexpr OptionSpec key_option = {"--key",
                                   "",
                                   ValueKind::word,
                                   "KEY",
                                   false,
                                   "Key of enciphered documents. Other users of the machine can see it; a "
                                   "file, or the environment variable BKDOC_KEY, "
                                   "keeps it from them."};
constexpr OptionSpec key_file_option = {
    "--key-file", "",    ValueKind::file,
    "FILE",       false, "The first line of this file is the key; here - is a name as any other."};

constexpr OptionSpec opening[] = {
    {"-I", "", ValueKind::folder, "DIR", true, "Look for included files in this folder; may be given again."},
    {"--trusted", "", ValueKind::none, "", false,
     "Read the document however much its includes or its archive make of it."},
    key_option,
    key_file_option,
};

constexpr OperandSpec one_file[] = {{"FILE"}};
constexpr OperandSpec files[] = {{"FILE", true}};
constexpr OperandSpec two_files[] = {{"A"}, {"B"}};
constexpr OperandSpec in_and_out[] = {{"IN"}, {"OUT"}};

constexpr OptionSpec cat_options[] = {
    {"--compact", "", ValueKind::none, "", false, "All entries on one line."}};
constexpr OptionSpec tree_options[] = {
    {"--depth", "", ValueKind::whole_number, "N", false, "Draw only so many levels."}};
constexpr OptionSpec same_options[] = {
    {"--content", "", ValueKind::none, "", false,
     "Only names and values count, a number whatever its type: what every form keeps."}};
constexpr OptionSpec convert_options[] = {
    {"--to", "", ValueKind::choice, "text|binary|cipher|archive", false, "Form to store the document in."},
    {"--lossy", "", ValueKind::none, "", false, "Convert even what reads back with other names or values."},
};

constexpr OptionSpec dump_options[] = {key_option, key_file_option};

constexpr VerbSpec verbs[] = {
    {"check",
     Task::look,
     "Report the faults of documents, with the place of each.",
     "",
     files,
     {},
     true,
     "bkdoc check -I library harbour.bkd",
     reading_exit_codes,
     check_entry},
    {"tree", Task::look, "Draw the groups, entries and values of a document.", "", one_file, tree_options,
     true, "bkdoc tree --depth 2 harbour.bkd", reading_exit_codes, tree_entry},
    {"cat", Task::look, "Write a document as the library writes it, includes spliced in.", "", one_file,
     cat_options, true, "bkdoc cat -I library harbour.bkd", reading_exit_codes, cat_entry},
    {"info",
     Task::look,
     "Say what a document is made of and which files it needs.",
     "",
     one_file,
     {},
     true,
     "bkdoc info harbour.bkd",
     reading_exit_codes,
     info_entry},
    {"dump", Task::look, "Explain the bytes of a binary, enciphered or archive file.", "", one_file,
     dump_options, false, "bkdoc dump scene.archive",
     "0 every byte is explained, 1 one is not, 2 the file could not be read.", dump_entry},
    {"same", Task::compare, "Say whether two documents hold the same tree.", "", two_files, same_options,
     true, "bkdoc same scene.bkd scene.archive", "0 the same, 1 different, 2 one could not be read.",
     same_entry},
    {"convert", Task::convert, "Store a document in another form.",
     "The form of IN shows in its first bytes. Includes are spliced in. No form keeps the comments and the "
     "layout of a text. "
     "What is made is read back and compared before OUT is replaced, in one step; OUT may be IN when IN has "
     "no faults. The "
     "binary form keeps names and values only, without kinds, templates and array counts; a text tells "
     "numbers apart by their "
     "spelling alone.",
     in_and_out, convert_options, true, "bkdoc convert --to binary scene.bkd scene.bin",
     "0 converted, 1 converted, but IN has faults (what is good of it is in OUT) or --lossy lost something, "
     "2 not converted: "
     "OUT is as it was.",
     convert_entry},
};

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

std::span<const VerbSpec> all_verbs() noexcept {
    return verbs;
}

std::span<const OptionSpec> general_options() noexcept {
    return general;
}

std::span<const OptionSpec> opening_options() noexcept {
    return opening;
}

const VerbSpec* find_verb(std::string_view name) noexcept {
    const auto found = std::find_if(std::begin(verbs), std::end(verbs),
                                    [name](const VerbSpec& verb) { return verb.name == name; });
    return found == std::end(verbs) ? nullptr : &*found;
}

const OptionSpec* find_option(const VerbSpec* verb, std::string_view name) noexcept {
    const OptionSpec* option = verb == nullptr ? nullptr : find_among(verb->options, name);
    if (option == nullptr && verb != nullptr && verb->opens_documents) {
        option = find_among(opening, name);
    }
    return option == nullptr ? find_among(general, name) : option;
}

} // namespace bkdoc
