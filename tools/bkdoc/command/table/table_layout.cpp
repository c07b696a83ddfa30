#include "command/table/table_parts.h"

#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr OperandSpec files_or_input[] = {{"FILE", true, true}};

constexpr OptionSpec fmt_options[] = {
    {"--write", "-w", ValueKind::none, "", false, "Write each file in its new layout."},
    {"--check", "", ValueKind::none, "", false,
     "Only name the files whose layout would change; the exit code is 1 when there is one."},
    {"--diff", "", ValueKind::none, "", false, "Only show what would change, as a unified diff."},
    {"--indent", "", ValueKind::whole_number, "N", false, "Blanks for each level; 4 when it is not given."},
    {"--width", "", ValueKind::whole_number, "N", false,
     "Where lists go on in the next line, in characters; 100 when it is not given."},
    {"--ext", "", ValueKind::word, "EXT", true,
     "Of folders, take the files with this extension; may be given again. Without it the content decides."},
    {"--no-config", "", ValueKind::none, "", false, "Do not use the extensions of a .bkdoc.bkd."},
};

constexpr VerbSpec layout_rows[] = {
    {"fmt", Task::change, "Lay out texts: an entry a line, indented, lists wrapped.",
     "Without --write, --check and --diff the result goes to standard output. Without FILE, or for -, "
     "standard "
     "input is laid out. A FILE may be a folder or a pattern, as for check; included files are left alone.\n"
     "\n"
     "Comments stay where they stand, blank lines too, of several one. Words keep their spelling. The text "
     "is read "
     "before and after, and nothing is written when the two differ; a file with errors is left as it is.",
     files_or_input, fmt_options, false, "bkdoc fmt -w shots",
     "0 all is laid out, 1 with --check or --diff when something would change, 2 a file could not be laid "
     "out or "
     "written.",
     run_fmt},
};

} // namespace

std::span<const VerbSpec> layout_verbs() noexcept {
    return layout_rows;
}

} // namespace bkdoc
