#include "command/table/table_parts.h"

#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr OperandSpec path_and_files[] = {{"PATH"}, {"FILE", true}};
constexpr OperandSpec pattern_and_files[] = {{"PATTERN"}, {"FILE", true}};

constexpr OptionSpec values_option = {
    "--values", "",    ValueKind::none,
    "",         false, "Write the values alone, a line for each match; a single string as it is."};
constexpr OptionSpec count_option = {"--count", "",    ValueKind::none,
                                     "",        false, "Write how many matches there are."};
constexpr OptionSpec files_option = {"-l", "",    ValueKind::none,
                                     "",   false, "Write the names of files with matches."};

constexpr OptionSpec get_options[] = {values_option, count_option, files_option, json_option};

constexpr OptionSpec grep_options[] = {
    {"--in", "", ValueKind::choice, "names|values|both", false,
     "Where to look; in both when it is not given."},
    {"--ignore-case", "-i", ValueKind::none, "", false, "Small and capital ASCII letters are the same."},
    {"--fixed", "-F", ValueKind::none, "", false, "PATTERN is a text, and no expression."},
    path_option,
    values_option,
    count_option,
    files_option,
    json_option};

constexpr std::string_view finding_exit_codes = "0 something was found, 1 nothing was found, 2 a document "
                                                "could not be read, or PATH or PATTERN is malformed.";

constexpr VerbSpec find_rows[] = {
    {"get", Task::find, "Show the entries, groups and values that a path finds.",
     "A line for each: file:line:column: path = values. A FILE may be a folder or a pattern, as for check. "
     "An included file "
     "that is missing, and other errors, stop nothing: what could be read is searched.\n"
     "\n"
     "A path is a row of names with / between them: sequence/shot[\"010\"]/camera@1 is the second value of "
     "camera in the shot "
     "with the key 010. * is any name, ** any number of groups, none too: **/light[power>50] is every light "
     "at any depth whose "
     "power is above 50.",
     path_and_files, get_options, true, "bkdoc get --values '**/light/power' harbour.bkd", finding_exit_codes,
     run_get},
    {"grep", Task::find, "Search the names and values of documents by a regular expression.",
     "It looks at what was read, in every stored form, and not at comments. Strings are looked at without "
     "quotes and "
     "escapes, numbers as they are spelled; binary data is passed over. An entry whose name or template fits "
     "is one match; else each "
     "value that fits is one.\n"
     "\n"
     "PATTERN fits anywhere in a name or value. Known are . [a-z] [^a-z] \\d \\w \\s \\D \\W \\S \\b \\B ^ $ "
     "| ( ) (?: ) * + ? {2} {2,} "
     "{2,5}; there are no references back. It may have 5000 steps, repetitions written out, and the time is "
     "at most in "
     "proportion to the text times these steps.",
     pattern_and_files, grep_options, true, "bkdoc grep -i 'quay_0[1-3]' shots", finding_exit_codes,
     run_grep},
};

} // namespace

std::span<const VerbSpec> find_verbs() noexcept {
    return find_rows;
}

} // namespace bkdoc
