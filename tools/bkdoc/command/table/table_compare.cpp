#include "command/table/table_parts.h"

#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr OptionSpec same_options[] = {
    {"--content", "", ValueKind::none, "", false,
     "Only names and values count, a number whatever its type: what every form keeps."},
    json_option};

constexpr OptionSpec diff_options[] = {
    {"--tolerance", "", ValueKind::word, "X", false,
     "Numbers that are no further apart are equal, whatever their types, as in 1e-6."},
    {"--ignore-order", "", ValueKind::none, "", false, "The order of the entries of a group does not count."},
    {"--stat", "", ValueKind::none, "", false, "Only how many differences each file has."},
    json_option,
};

constexpr OperandSpec three_files[] = {{"BASE"}, {"OURS"}, {"THEIRS"}};
constexpr OptionSpec merge_options[] = {
    {"--write", "-w", ValueKind::none, "", false, "Write what was merged to OURS."},
};

constexpr VerbSpec compare_rows[] = {
    {"diff", Task::compare, "Tell every difference of two documents, one a line.",
     "A and B may be of any form. Each line tells the place in B, or in A of what was removed; the path; and "
     "what is "
     "different. Entries of a group are matched by name and first string, then by likeness, so that what was "
     "moved or renamed is told as that. Layout, comments and the spelling of numbers do not count.",
     two_files, diff_options, true, "bkdoc diff --tolerance 1e-6 old/harbour.bkd harbour.bkd",
     "0 the same, 1 different, 2 one could not be read, or not all of it.", run_diff},
    {"same", Task::compare, "Say whether two documents hold the same tree.", "", two_files, same_options,
     true, "bkdoc same scene.bkd scene.archive", "0 the same, 1 different, 2 one could not be read.",
     run_same},
    {"merge", Task::compare, "Merge two texts that were made of one, entry by entry.",
     "Without --write the result goes to standard output. The layout of OURS and its comments stay. What "
     "both "
     "changed in different ways is marked as git marks conflicts, and counted.\n"
     "\n"
     "As a driver of git: merge.bkdoc.driver is 'bkdoc merge -w %O %A %B', and .gitattributes has '*.bkd "
     "merge=bkdoc'.",
     three_files, merge_options, false, "bkdoc merge base.bkd ours.bkd theirs.bkd",
     "0 merged, 1 there are conflicts, 2 it could not be merged or written.", run_merge},
    {"textconv",
     Task::compare,
     "Write a document of any form as text, for git diff.",
     "A text is written as it is, comments and includes too. What cannot be read is said in a comment.\n"
     "\n"
     "As a driver of git: diff.bkdoc.textconv is 'bkdoc textconv', and .gitattributes has '*.bkd "
     "diff=bkdoc'.",
     one_file,
     {},
     true,
     "bkdoc textconv scene.archive",
     "0 always.",
     run_textconv},
};

} // namespace

std::span<const VerbSpec> compare_verbs() noexcept {
    return compare_rows;
}

} // namespace bkdoc
