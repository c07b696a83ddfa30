#pragma once

#include "command/table/command_table.h"

/// Parts of the command table: the verbs of each task stand in a file of their own, and share operands and exit codes.
namespace bkdoc {

inline constexpr std::string_view reading_exit_codes =
    "0 clean, 1 the document has errors, 2 it could not be read or written.";

inline constexpr OperandSpec one_file[] = {{"FILE"}};
inline constexpr OperandSpec several_files[] = {{"FILE", true}};
inline constexpr OperandSpec two_files[] = {{"A"}, {"B"}};
inline constexpr OperandSpec in_and_out[] = {{"IN"}, {"OUT"}};

inline constexpr OptionSpec path_option = {
    "--path", "",    ValueKind::word,
    "PATH",   false, "Only what this path finds, as in 'sequence/shot[\"010\"]/camera'."};
inline constexpr OptionSpec key_option = {
    "--key",
    "",
    ValueKind::word,
    "KEY",
    false,
    "Key of enciphered documents. Other users of the machine can see it; a file, or the environment variable "
    "BKDOC_KEY, keeps it from them."};
inline constexpr OptionSpec key_file_option = {
    "--key-file", "",    ValueKind::file,
    "FILE",       false, "The first line of this file is the key; here - is a name as any other."};
inline constexpr OptionSpec json_option = {"--json", "", ValueKind::none, "", false, "Answer in JSON."};

/// The verbs of a task, in the order of the help.
std::span<const VerbSpec> look_verbs() noexcept;
std::span<const VerbSpec> find_verbs() noexcept;
std::span<const VerbSpec> change_verbs() noexcept;
std::span<const VerbSpec> layout_verbs() noexcept;
std::span<const VerbSpec> compare_verbs() noexcept;
std::span<const VerbSpec> convert_verbs() noexcept;
std::span<const VerbSpec> repair_verbs() noexcept;

} // namespace bkdoc
