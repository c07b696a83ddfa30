#include "command/table/table_parts.h"

#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr OperandSpec path_and_files[] = {{"PATH"}, {"FILE", true}};
constexpr OperandSpec pattern_and_files[] = {{"PATTERN"}, {"FILE", true}};

constexpr OptionSpec values_option = {
    "--values", "",    ValueKind::none,
    "",         false, "Print only the values, one line per match; a single string without its quotes."};
constexpr OptionSpec count_option = {"--count", "",    ValueKind::none,
                                     "",        false, "Print only the number of matches."};
constexpr OptionSpec files_option = {"-l", "",    ValueKind::none,
                                     "",   false, "Print only the names of files with matches."};

constexpr OptionSpec get_options[] = {values_option, count_option, files_option, json_option};

constexpr OptionSpec grep_options[] = {
    {"--in", "", ValueKind::choice, "names|values|both", false, "Where to search. The default is both."},
    {"--ignore-case", "-i", ValueKind::none, "", false, "Ignore the case of ASCII letters."},
    {"--fixed", "-F", ValueKind::none, "", false, "Search for PATTERN literally."},
    path_option,
    values_option,
    count_option,
    files_option,
    json_option};

constexpr std::string_view finding_exit_codes =
    "0 something was found\n1 nothing was found\n"
    "2 a document could not be read, or PATH or PATTERN is malformed";

constexpr VerbSpec find_rows[] = {
    {"get", Task::find, "Print the entries, groups and values that a path finds.",
     "Each match is one line: file:line:column: path = values. A FILE may be a folder or a pattern, as for "
     "check. Missing includes and other errors do not stop the search: what could be read is searched.\n"
     "\n"
     "A path is a row of names with / between them: sequence/shot[\"010\"]/camera@1 is the second value of "
     "camera in the shot whose key is 010. * matches any name, and ** any number of groups, including none: "
     "**/light[power>50] finds every light, at any depth, whose power is above 50.",
     path_and_files, get_options, true, "bkdoc get --values '**/light/power' harbour.bkd", finding_exit_codes,
     run_get},
    {"grep", Task::find, "Search the names and values of documents for a regular expression.",
     "grep searches documents of every form, but not their comments. It matches strings without quotes and "
     "escapes, and numbers as they are spelled; it skips binary data. An entry whose name or template "
     "matches is one match; otherwise each value that matches is one.\n"
     "\n"
     "PATTERN may match any part of a name or value. It knows . [a-z] [^a-z] \\d \\w \\s \\D \\W \\S \\b \\B "
     "^ $ | ( ) (?: ) * + ? {2} {2,} {2,5}, but no backreferences. It may have 5000 steps with all "
     "repetitions written out. The time is at most proportional to the text times these steps.",
     pattern_and_files, grep_options, true, "bkdoc grep -i 'quay_0[1-3]' harbour.bkd", finding_exit_codes,
     run_grep},
};

} // namespace

std::span<const VerbSpec> find_verbs() noexcept {
    return find_rows;
}

} // namespace bkdoc
