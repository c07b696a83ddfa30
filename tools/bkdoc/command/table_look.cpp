#include "command/table_parts.h"

#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr OptionSpec cat_options[] = {
    {"--compact", "", ValueKind::none, "", false, "All entries on one line."}};
constexpr OptionSpec tree_options[] = {
    {"--depth", "", ValueKind::whole_number, "N", false, "Draw only so many levels."}};

constexpr VerbSpec verbs[] = {
    {"check",
     Task::look,
     "Report the problems of documents, with the place of each.",
     "",
     several_files,
     {},
     true,
     "bkdoc check -I library harbour.bkd",
     "0 no errors, 1 errors, 2 something could not be read.",
     run_check},
    {"tree", Task::look, "Draw the groups, entries and values of documents.", "", several_files, tree_options,
     true, "bkdoc tree --depth 2 harbour.bkd", reading_exit_codes, run_tree},
    {"cat", Task::look, "Write documents as the library writes them, includes spliced in.",
     "Several documents are written as one, behind one version line.", several_files, cat_options, true,
     "bkdoc cat -I library harbour.bkd", reading_exit_codes, run_cat},
    {"info",
     Task::look,
     "Say what documents are made of and which files they need.",
     "",
     several_files,
     {},
     true,
     "bkdoc info harbour.bkd",
     reading_exit_codes,
     run_info},
    {"dump",
     Task::look,
     "Explain the bytes of a binary, enciphered or archive file.",
     "",
     one_file,
     {},
     true,
     "bkdoc dump scene.archive",
     "0 every byte is explained, 1 one is not, 2 the file could not be read.",
     run_dump},
};

} // namespace

std::span<const VerbSpec> look_verbs() noexcept {
    return verbs;
}

} // namespace bkdoc
