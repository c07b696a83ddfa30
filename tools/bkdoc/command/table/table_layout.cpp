#include "command/table/table_parts.h"

#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr OperandSpec files_or_input[] = {{"FILE", true, true}};

constexpr OptionSpec fmt_options[] = {
    {"--write", "-w", ValueKind::none, "", false, "Write the formatted text back to each file."},
    {"--check", "", ValueKind::none, "", false,
     "Only name the files that would change; the exit code is 1 if there are any."},
    {"--diff", "", ValueKind::none, "", false, "Only show what would change, as a unified diff."},
    {"--indent", "", ValueKind::whole_number, "N", false, "Indent each level by N blanks. The default is 4."},
    {"--width", "", ValueKind::whole_number, "N", false, "Wrap lists at N characters. The default is 100."},
    {"--ext", "", ValueKind::word, "EXT", true,
     "In folders, format the files with this extension instead of judging by content. May be repeated."},
    {"--no-config", "", ValueKind::none, "", false, "Do not use the extensions of a .bkdoc.bkd."},
};

constexpr VerbSpec layout_rows[] = {
    {"fmt", Task::change, "Format texts: one entry per line, indented, long lists wrapped.",
     "The result is printed unless --write, --check or --diff is given. Without FILE, or for -, fmt formats "
     "standard input. A FILE may be a folder or a pattern, as for check. Included files are not formatted.\n"
     "\n"
     "Comments stay where they are. Several blank lines in a row become one. Words keep their "
     "spelling. fmt reads the text before and after, and writes nothing if the two differ. A file with "
     "errors is left as it is.",
     files_or_input, fmt_options, false, "bkdoc fmt -w shots",
     "0 everything is formatted\n1 with --check or --diff: something would change\n"
     "2 a file could not be formatted or written",
     run_fmt},
};

} // namespace

std::span<const VerbSpec> layout_verbs() noexcept {
    return layout_rows;
}

} // namespace bkdoc
