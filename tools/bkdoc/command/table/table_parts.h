#pragma once

#include "command/table/command_table.h"

/// The parts of the command table. The verbs of each task have a file of their own, and share operands and exit codes.
namespace bkdoc {

inline constexpr std::string_view reading_exit_codes =
    "0 no document has errors\n1 a document has errors\n2 a document could not be read, or the output not "
    "written";

inline constexpr OperandSpec one_file[] = {{"FILE"}};
inline constexpr OperandSpec several_files[] = {{"FILE", true}};
inline constexpr OperandSpec two_files[] = {{"A"}, {"B"}};
inline constexpr OperandSpec in_and_out[] = {{"IN"}, {"OUT"}};

inline constexpr OptionSpec path_option = {
    "--path", "",    ValueKind::word,
    "PATH",   false, "Only what this path finds, such as 'sequence/shot[\"010\"]/camera'."};
inline constexpr OptionSpec key_option = {
    "--key",
    "",
    ValueKind::word,
    "KEY",
    false,
    "The key of encrypted documents. Other users of this machine can see it on the command line; use "
    "--key-file or the environment variable BKDOC_KEY to hide it."};
inline constexpr OptionSpec key_file_option = {
    "--key-file",
    "",
    ValueKind::file,
    "FILE",
    false,
    "Read the key from the first line of FILE. Here - is a file of that name, not standard input."};
inline constexpr OptionSpec json_option = {"--json", "", ValueKind::none, "", false, "Print JSON."};

/// The verbs of a task, in the order of the help.
std::span<const VerbSpec> look_verbs() noexcept;
std::span<const VerbSpec> find_verbs() noexcept;
std::span<const VerbSpec> change_verbs() noexcept;
std::span<const VerbSpec> layout_verbs() noexcept;
std::span<const VerbSpec> compare_verbs() noexcept;
std::span<const VerbSpec> convert_verbs() noexcept;
std::span<const VerbSpec> repair_verbs() noexcept;

} // namespace bkdoc
