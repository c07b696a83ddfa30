#include "command/table/table_parts.h"

#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr OperandSpec files_or_folders[] = {{"FILE", true, true}};

constexpr OptionSpec check_options[] = {
    {"--ext", "", ValueKind::word, "EXT", true,
     "Of folders, check the files with this extension; may be given again. Without it the content decides."},
    {"--files-from", "", ValueKind::file, "FILE", false,
     "Check what the lines of this file name, too; - is standard input."},
    {"-0", "", ValueKind::none, "", false, "The names of --files-from end with a NUL, not with their line."},
    {"--jobs", "-j", ValueKind::whole_number, "N", false,
     "Check so many files at a time; as many as there are processors when it is 0 or not given."},
    {"--strict", "", ValueKind::none, "", false, "Take warnings for errors."},
    {"--allow", "", ValueKind::word, "CODE", true,
     "Do not tell problems of this code, as in comment-joins-line; may be given again."},
    {"--max-problems", "", ValueKind::whole_number, "N", false,
     "Tell at most so many problems of a file; 50 when it is not given, all when it is 0."},
    {"--format", "", ValueKind::choice, "text|json|sarif|gcc", false,
     "For people, for programs, or a line a problem for editors, as gcc writes it: a column is "
     "one of the screen, with a tab stop at each eighth, and elsewhere a character."},
    {"--json", "", ValueKind::none, "", false, "The same as --format json."},
    {"--watch", "", ValueKind::none, "", false,
     "Check again whenever one of the files changes, or one that they include."},
};
constexpr OptionSpec cat_options[] = {
    {"--compact", "", ValueKind::none, "", false, "All entries on one line."}, path_option};
constexpr OptionSpec info_options[] = {path_option, json_option};
constexpr OptionSpec stats_options[] = {
    {"--by", "", ValueKind::choice, "path|name|type", false,
     "Sum up by the names on the way to an entry, with all that is below it; by the names of entries, "
     "without "
     "what is below; or by the types of values. By path when it is not given."},
    {"--top", "", ValueKind::whole_number, "N", false,
     "Only the N largest; 20 when it is not given, all when it is 0."},
    json_option,
};
constexpr OptionSpec deps_options[] = {
    {"--reverse", "", ValueKind::file, "FILE", false,
     "Draw instead which of the documents include this file, and by which way."},
    {"--missing", "", ValueKind::none, "", false,
     "Only the files that are missing, with the places looked at."},
    {"--dot", "", ValueKind::none, "", false, "A graph in the language of Graphviz."},
    json_option,
};
constexpr OptionSpec tree_options[] = {
    {"--depth", "", ValueKind::whole_number, "N", false, "Draw only so many levels."}, path_option};

constexpr OptionSpec dump_options[] = {key_option, key_file_option};

constexpr VerbSpec look_rows[] = {
    {"check", Task::look, "Report the problems of documents, with the place of each.",
     "A FILE may be a folder, which stands for the documents in it and below it: without --ext those are the "
     "files that begin as a document does, and those whose names end in .bkd. Names that begin with a dot "
     "are left out, and so are backups, whose names end in .bak or ~. A FILE may be a pattern, too: * is any "
     "number of characters, ** any number of folders.\n"
     "\n"
     "A problem of a file that several documents include is told once. Errors lost something of the "
     "document; "
     "warnings are read otherwise than they were surely meant.\n"
     "\n"
     "A file .bkdoc.bkd in the folder of a document, or above it, says search folders and rules, as in:\n"
     "  search \"library\" \"shots\"\n"
     "  allow \"comment-joins-line\"\n"
     "  strict yes\n"
     "  max_problems 20\n"
     "  ext \"bkd\"",
     files_or_folders, check_options, true, "bkdoc check -I library harbour.bkd shots",
     "0 no errors, 1 errors, 2 something could not be read, 130 interrupted.", run_check},
    {"tree", Task::look, "Draw the groups, entries and values of documents.", "", several_files, tree_options,
     true, "bkdoc tree --depth 2 harbour.bkd", reading_exit_codes, run_tree},
    {"cat", Task::look, "Write documents as the library writes them, includes spliced in.",
     "Several documents are written as one, behind one version line.", several_files, cat_options, true,
     "bkdoc cat -I library harbour.bkd", reading_exit_codes, run_cat},
    {"info", Task::look, "Say what documents are made of and which files they need.", "", several_files,
     info_options, true, "bkdoc info harbour.bkd", reading_exit_codes, run_info},
    {"deps", Task::look, "Draw which files documents include, and where each was found.",
     "A FILE may be a folder or a pattern, as for check. What a file includes is drawn once. A file that is "
     "not "
     "found is shown with the places that were looked at.",
     several_files, deps_options, true, "bkdoc deps --reverse library/steel.bkd shots",
     "0 every file was found, 1 one is missing, 2 a document could not be read.", run_deps},
    {"stats", Task::look, "Say what takes the space of documents, the largest first.",
     "Bytes are those of the text that the library writes on one line, includes spliced in: what comments "
     "and "
     "indents take, or what another form takes, does not count. Several documents are summed up together.",
     several_files, stats_options, true, "bkdoc stats --by name harbour.bkd", reading_exit_codes, run_stats},
    {"dump", Task::look, "Explain the bytes of a binary, enciphered or archive file.",
     "What cannot be explained is shown as it is, and the map goes on behind it where a size says how far it "
     "goes.",
     one_file, dump_options, false, "bkdoc dump scene.archive",
     "0 every byte is explained, 1 one is not, 2 the file could not be read.", run_dump},
};

} // namespace

std::span<const VerbSpec> look_verbs() noexcept {
    return look_rows;
}

} // namespace bkdoc
