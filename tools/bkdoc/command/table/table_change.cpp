#include "command/table/table_parts.h"

#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr OperandSpec set_operands[] = {{"PATH"}, {"CHANGE"}, {"FILE", true}};
constexpr OperandSpec add_operands[] = {{"PATH"}, {"VALUE", true, true}, {"FILE"}};
constexpr OperandSpec rm_operands[] = {{"PATH"}, {"FILE", true}};
constexpr OperandSpec mv_operands[] = {{"FROM"}, {"TO"}, {"FILE"}};
constexpr OperandSpec rename_operands[] = {{"PATH"}, {"NAME"}, {"FILE", true}};

constexpr OptionSpec write_option = {
    "-w", "", ValueKind::none, "", false, "Change the files; without it the result goes to standard output."};
constexpr OptionSpec dry_option = {
    "--dry-run", "",    ValueKind::none,
    "",          false, "Write nothing, and show as a unified diff what would change."};
constexpr OptionSpec backup_option = {"--backup", "",    ValueKind::none,
                                      "",         false, "Keep each file that -w changes as FILE.bak."};
constexpr OptionSpec force_option = {"--force", "",    ValueKind::none,
                                     "",        false, "Change documents that have errors, too."};
constexpr OptionSpec type_option = {"--type",
                                    "",
                                    ValueKind::choice,
                                    "bool|int|double|string",
                                    false,
                                    "The type that the new values have, whatever they were."};

constexpr OptionSpec edit_options[] = {write_option, dry_option, backup_option, force_option};
constexpr OptionSpec value_options[] = {write_option, dry_option, backup_option, force_option, type_option};
constexpr OptionSpec rename_options[] = {
    {"--refs", "", ValueKind::none, "", false,
     "Change strings that equal an old name, too, and show each before anything is written."},
    write_option,
    dry_option,
    backup_option,
    force_option};

constexpr std::string_view edit_exit_codes =
    "0 done, 1 nothing fits PATH, 2 refused, and no file is changed.";

constexpr VerbSpec change_rows[] = {
    {"set", Task::change, "Change values by path.",
     "CHANGE is =VALUES, +=N, -=N, *=N or /=N. VALUES are written as in a document: =60.0, '=1 2 3', =yes, "
     "'=\"sun\"'; a text without quotes is a string. = gives an entry these values, and with @ those from "
     "that one "
     "on; a calculation changes every number of an entry, or the one that @ names. +=TEXT makes strings "
     "longer.\n"
     "\n"
     "The type of a number stays: 60.0 becomes 66.0, and an int that would not be whole is refused. Other "
     "types "
     "change with --type alone.\n"
     "\n"
     "Only the bytes of what changes are changed, in the file that holds them: comments, spelling and "
     "includes "
     "stay. When one of the documents is refused, none is written. A file that several of them include is "
     "changed once.",
     set_operands, value_options, true, "bkdoc set -w '**/light/power' '*=1.1' shots/*.bkd", edit_exit_codes,
     run_set},
    {"add", Task::change, "Add an entry at the end of its group.",
     "The last step of PATH is the name of the new entry, with a template or key if need be; groups on the "
     "way are "
     "made where they are missing. Each VALUE is written as in a document: 60.0, '1 2 3', '{ power 60.0 }'; "
     "a text "
     "without quotes is a string. The last word is the FILE.",
     add_operands, value_options, true, "bkdoc add -w 'light<spot>[\"quay_03\"]/power' 60.0 harbour.bkd",
     "0 done, 2 refused, and no file is changed.", run_add},
    {"rm", Task::change, "Remove the entries or values that a path finds.",
     "An entry goes with its line, and with a comment behind it on that line; comments above it stay.",
     rm_operands, edit_options, true, "bkdoc rm --dry-run '**/light[on=no]' harbour.bkd", edit_exit_codes,
     run_rm},
    {"mv", Task::change, "Move an entry to another group, or give it another name.",
     "FROM is a path that finds one entry. TO is the path where it goes: to the end of the group that all "
     "steps but the "
     "last lead to, under the name that is the last step. In its own group the entry keeps its place.",
     mv_operands, edit_options, true, "bkdoc mv -w sequence/camera shot/camera harbour.bkd", edit_exit_codes,
     run_mv},
    {"rename", Task::change, "Give the entries that a path finds another name.", "", rename_operands,
     rename_options, true, "bkdoc rename --refs -w '**/lamp' light shots/*.bkd", edit_exit_codes, run_rename},
};

} // namespace

std::span<const VerbSpec> change_verbs() noexcept {
    return change_rows;
}

} // namespace bkdoc
