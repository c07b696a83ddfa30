#include "command/table/table_parts.h"

#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr OperandSpec files_or_folders[] = {{"FILE", true, true}};

constexpr OptionSpec check_options[] = {
    {"--ext", "", ValueKind::word, "EXT", true,
     "In folders, check the files with this extension instead of judging by content. May be repeated."},
    {"--files-from", "", ValueKind::file, "FILE", false,
     "Also check the files that FILE names, one per line; - reads the names from standard input."},
    {"-0", "", ValueKind::none, "", false,
     "The names that --files-from reads end with a NUL byte, not with a line end."},
    {"--jobs", "-j", ValueKind::whole_number, "N", false,
     "Check N files at a time, at most 256; 0, the default, means one per processor."},
    {"--strict", "", ValueKind::none, "", false, "Treat warnings as errors."},
    {"--allow", "", ValueKind::word, "CODE", true,
     "Do not report problems with this code, such as comment-joins-line. May be repeated."},
    {"--max-problems", "", ValueKind::whole_number, "N", false,
     "Report at most N problems per file; 0 means all. The default is 50."},
    {"--format", "", ValueKind::choice, "text|json|sarif|gcc", false,
     "Write for people (text, the default), for programs (json, sarif) or for editors (gcc, one line per "
     "problem). gcc counts screen columns, with a tab stop every 8; the others count characters."},
    {"--json", "", ValueKind::none, "", false, "Same as --format json."},
    {"--watch", "", ValueKind::none, "", false,
     "Keep running, and check again whenever one of the files or a file that they include changes."},
};
constexpr OptionSpec cat_options[] = {
    {"--compact", "", ValueKind::none, "", false, "Print all entries on one line."}, path_option};
constexpr OptionSpec info_options[] = {path_option, json_option};
constexpr OptionSpec stats_options[] = {
    {"--by", "", ValueKind::choice, "path|name|type", false,
     "Add up by path (an entry with everything below it), by name (all entries of that name, without what "
     "is below them) or by the type of values. The default is path."},
    {"--top", "", ValueKind::whole_number, "N", false, "Show the N largest; 0 means all. The default is 20."},
    json_option,
};
constexpr OptionSpec deps_options[] = {
    {"--reverse", "", ValueKind::file, "FILE", false,
     "Show instead which of the documents include FILE, and through which other files."},
    {"--missing", "", ValueKind::none, "", false,
     "Show only the files that are missing, with the places that were tried."},
    {"--dot", "", ValueKind::none, "", false, "Print a graph in the DOT language of Graphviz."},
    json_option,
};
constexpr OptionSpec tree_options[] = {
    {"--depth", "", ValueKind::whole_number, "N", false, "Draw only the first N levels."}, path_option};

constexpr OptionSpec dump_options[] = {key_option, key_file_option};

constexpr VerbSpec look_rows[] = {
    {"check", Task::look, "Report the problems of documents, and where they are.",
     "A FILE may be a folder: bkdoc then checks the documents in it and in the folders below. These are the "
     "files that begin as a document does and those named *.bkd, or those that --ext selects. Hidden files "
     "and backups (*.bak, *~) are skipped. A FILE may also be a pattern, in which * matches any characters "
     "and ** any number of folders.\n"
     "\n"
     "An error means that part of the document was lost. A warning means that something was read, but "
     "probably not as it was meant. A problem in a file that several documents include is reported once.\n"
     "\n"
     "A file .bkdoc.bkd in the folder of a document, or above it, sets search folders and rules:\n"
     "  search \"library\" \"shots\"\n"
     "  allow \"comment-joins-line\"\n"
     "  strict yes\n"
     "  max_problems 20\n"
     "  ext \"bkd\"",
     files_or_folders, check_options, true, "bkdoc check -I library harbour.bkd shots",
     "0 no errors\n1 errors were found\n2 something could not be read\n130 interrupted", run_check},
    {"tree", Task::look, "Draw the groups, entries and values of documents.",
     "A FILE may be a folder or a pattern, as for check.", several_files, tree_options, true,
     "bkdoc tree --depth 2 harbour.bkd", reading_exit_codes, run_tree},
    {"cat", Task::look, "Print documents as the library writes them, with includes spliced in.",
     "Several documents are printed as one, with one version line. A FILE may be a folder or a pattern, as "
     "for "
     "check.",
     several_files, cat_options, true, "bkdoc cat -I library harbour.bkd", reading_exit_codes, run_cat},
    {"info", Task::look, "Summarise what documents contain and which files they include.",
     "A FILE may be a folder or a pattern, as for check.", several_files, info_options, true,
     "bkdoc info harbour.bkd", reading_exit_codes, run_info},
    {"deps", Task::look, "Show which files documents include, and where each was found.",
     "A FILE may be a folder or a pattern, as for check. What a file includes is shown once, however often "
     "that file is included. A missing file is shown with the places that were tried.\n"
     "\n"
     "With --json, --reverse and --missing leave out the files and directives that they do not ask for.",
     several_files, deps_options, true, "bkdoc deps --reverse library/lights.bkd harbour.bkd shots",
     "0 every file was found\n1 a file is missing\n2 a document could not be read", run_deps},
    {"stats", Task::look, "Show what takes the space in documents, largest first.",
     "Sizes are bytes of the text that the library writes on one line, with includes spliced in. Comments, "
     "indentation and the sizes of other forms do not count. Several documents are added up. A FILE may be a "
     "folder or a pattern, as for check.",
     several_files, stats_options, true, "bkdoc stats --by name harbour.bkd", reading_exit_codes, run_stats},
    {"dump", Task::look, "Explain the bytes of a binary, encrypted or archive file.",
     "Bytes that have no meaning are shown as they are. The explanation goes on after them where a stored "
     "size says how far they reach.",
     one_file, dump_options, false, "bkdoc dump harbour.archive",
     "0 every byte is explained\n1 some bytes are not explained\n2 the file could not be read", run_dump},
};

} // namespace

std::span<const VerbSpec> look_verbs() noexcept {
    return look_rows;
}

} // namespace bkdoc
