#include "command/table/table_parts.h"

#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr OptionSpec same_options[] = {
    {"--content", "", ValueKind::none, "", false,
     "Compare only what every form can store: names and values, and numbers without their types."},
    json_option};

constexpr OptionSpec diff_options[] = {
    {"--tolerance", "", ValueKind::word, "X", false,
     "Treat numbers as equal that differ by no more than X, such as 1e-6, whatever their types."},
    {"--ignore-order", "", ValueKind::none, "", false, "Ignore the order of the entries in a group."},
    {"--stat", "", ValueKind::none, "", false, "Show only how many differences each file has."},
    {"--ext", "", ValueKind::word, "EXT", true,
     "In folders, compare the files with this extension instead of judging by content. May be repeated."},
    json_option,
};

constexpr OperandSpec three_files[] = {{"BASE"}, {"OURS"}, {"THEIRS"}};
constexpr OptionSpec merge_options[] = {
    {"--write", "-w", ValueKind::none, "", false, "Write the result to OURS."},
    {"--name", "", ValueKind::word, "NAME", false, "The name of the file in messages; git writes it for %P."},
};

constexpr VerbSpec compare_rows[] = {
    {"diff", Task::compare, "Show every difference between two documents or folders, one per line.",
     "A and B may be of any form. Each line has the place in B (in A for what was removed), the path and the "
     "difference. Entries of a group are matched by name and first string, then by likeness, so that moved "
     "and renamed entries are shown as such. Layout, comments and the spelling of numbers do not count.\n"
     "\n"
     "A and B may be two folders. diff then compares the documents that have the same path in both, and "
     "shows which are in one of them only. A difference in an included file is shown once.",
     two_files, diff_options, true, "bkdoc diff --tolerance 1e-6 old/harbour.bkd harbour.bkd",
     "0 the same\n1 different\n2 a document could not be read, or only in part", run_diff},
    {"same", Task::compare, "Tell whether two documents hold the same tree.",
     "A and B may be of any form. They may be two folders: same then compares the documents that have the "
     "same "
     "path in both.",
     two_files, same_options, true, "bkdoc same harbour.bkd harbour.archive",
     "0 the same\n1 different\n2 a document could not be read", run_same},
    {"merge", Task::compare, "Merge two versions of a text, entry by entry.",
     "OURS and THEIRS were both made from BASE. The result is printed, or written to OURS with --write. It "
     "keeps the layout and the comments of OURS. Where both changed the same thing in different ways, the "
     "result has conflict markers as git writes them, and merge says how many.\n"
     "\n"
     "To use it in git, set merge.bkdoc.driver to 'bkdoc merge -w --name=%P %O %A %B', and write '*.bkd "
     "merge=bkdoc' into .gitattributes.",
     three_files, merge_options, false, "bkdoc merge base.bkd ours.bkd theirs.bkd",
     "0 merged\n1 merged, with conflicts\n2 not merged, or not written", run_merge},
    {"textconv",
     Task::compare,
     "Print a document of any form as text, for git diff.",
     "A text is printed unchanged, with its comments and includes. Comments say what could not be read.\n"
     "\n"
     "To use it in git, set diff.bkdoc.textconv to 'bkdoc textconv', and write '*.bkd diff=bkdoc' into "
     ".gitattributes.",
     one_file,
     {},
     true,
     "bkdoc textconv harbour.archive",
     "0 always",
     run_textconv},
};

} // namespace

std::span<const VerbSpec> compare_verbs() noexcept {
    return compare_rows;
}

} // namespace bkdoc
