#include "command/table/table_parts.h"

#include "verbs/verbs.h"

namespace bkdoc {

namespace {

constexpr OperandSpec set_operands[] = {{"PATH"}, {"CHANGE"}, {"FILE", true}};
constexpr OperandSpec add_operands[] = {{"PATH"}, {"VALUE", true, true}, {"FILE"}};
constexpr OperandSpec rm_operands[] = {{"PATH"}, {"FILE", true}};
constexpr OperandSpec mv_operands[] = {{"FROM"}, {"TO"}, {"FILE"}};
constexpr OperandSpec rename_operands[] = {{"PATH"}, {"NAME"}, {"FILE", true}};

constexpr OptionSpec write_option = {"-w", "",    ValueKind::none,
                                     "",   false, "Change the files. Without -w the result is printed."};
constexpr OptionSpec dry_option = {
    "--dry-run", "", ValueKind::none, "", false, "Write nothing; print what would change as a unified diff."};
constexpr OptionSpec backup_option = {
    "--backup", "",    ValueKind::none,
    "",         false, "Keep the old version of each file that -w changes as FILE.bak."};
constexpr OptionSpec force_option = {"--force", "",    ValueKind::none,
                                     "",        false, "Change documents even if they have errors."};
constexpr OptionSpec type_option = {"--type",
                                    "",
                                    ValueKind::choice,
                                    "bool|int|double|string",
                                    false,
                                    "Give the new values this type, whatever type the old ones have."};

constexpr OptionSpec edit_options[] = {write_option, dry_option, backup_option, force_option};
constexpr OptionSpec value_options[] = {write_option, dry_option, backup_option, force_option, type_option};
constexpr OptionSpec rename_options[] = {
    {"--refs", "", ValueKind::none, "", false,
     "Also change strings that equal an old name; each is shown before anything is written."},
    write_option,
    dry_option,
    backup_option,
    force_option};

constexpr std::string_view edit_exit_codes = "0 done\n1 PATH finds nothing\n2 refused; no file is changed";

constexpr VerbSpec change_rows[] = {
    {"set", Task::change, "Change the values that a path finds.",
     "CHANGE is =VALUES, +=N, -=N, *=N or /=N. Values are written as in a document: =60.0, '=1 2 3', =yes, "
     "'=\"sun\"'; text without quotes becomes a string. = replaces the values of an entry; if PATH ends "
     "with @N, it replaces the values from number N on. A calculation changes every number of an entry, or "
     "only the one "
     "that @N names. +=TEXT appends to strings.\n"
     "\n"
     "Values keep their type: 60.0 times 1.1 is written as 66.0. For an int, a result that is not whole is "
     "refused. Only --type changes types.\n"
     "\n"
     "Only the bytes of changed values change, in the file that holds them; comments, spelling and includes "
     "stay. If one document is refused, no file is written. A file that several documents include is "
     "changed once.",
     set_operands, value_options, true, "bkdoc set -w '**/light/power' '*=1.1' harbour.bkd", edit_exit_codes,
     run_set},
    {"add", Task::change, "Add an entry at the end of a group.",
     "The last step of PATH is the name of the new entry, with a template or key if it has one. Missing "
     "groups on the way are created. Each VALUE is written as in a document: 60.0, '1 2 3', "
     "'{ power 60.0 }'; text without quotes becomes a string. The last argument is the FILE.",
     add_operands, value_options, true, "bkdoc add -w 'light<spot>[\"mast\"]/power' 60.0 harbour.bkd",
     "0 done\n2 refused; no file is changed", run_add},
    {"rm", Task::change, "Remove the entries or values that a path finds.",
     "An entry is removed with its line and with a comment after it on that line. Comments above it stay.",
     rm_operands, edit_options, true, "bkdoc rm --dry-run '**/light[power>100]' harbour.bkd", edit_exit_codes,
     run_rm},
    {"mv", Task::change, "Move an entry to another group, or rename it.",
     "FROM must find exactly one entry. The last step of TO is its new name. The steps before it name a "
     "group, "
     "and the entry goes to the end of that group. An entry that stays in its group keeps its place.",
     mv_operands, edit_options, true, "bkdoc mv -w world/wind weather/wind harbour.bkd", edit_exit_codes,
     run_mv},
    {"rename", Task::change, "Rename the entries that a path finds.",
     "NAME replaces the name, which is the word before the values. The values stay: to give shot "
     "\"010\" "
     "another key, write set 'shot[\"010\"]@0' '=\"015\"'.",
     rename_operands, rename_options, true, "bkdoc rename --refs -w '**/light' lamp harbour.bkd",
     edit_exit_codes, run_rename},
};

} // namespace

std::span<const VerbSpec> change_verbs() noexcept {
    return change_rows;
}

} // namespace bkdoc
