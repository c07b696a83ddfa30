#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace bkdoc {

struct OptionSpec;
struct VerbSpec;

/// The word that asks for help, as in "bkdoc help" and "bkdoc help check".
inline constexpr std::string_view help_verb = "help";
inline constexpr std::string_view help_summary = "Explain a verb and show an example.";

/// All verbs by task, filled to the width of the terminal.
std::string help_text(std::size_t width);
/// One verb: how it is called, what it does, its options, an example and its exit codes.
std::string help_text(const VerbSpec& verb, std::size_t width);
std::string version_text();

/// As "-j, --jobs N".
std::string option_heading(const OptionSpec& option);
/// As "check [OPTIONS] FILE...".
std::string usage_of(const VerbSpec& verb);

/// Breaks a text at blanks so that no line is longer than `width`; each line but the first is indented. A line that
/// begins with a blank is kept as it is.
std::string filled(std::string_view text, std::size_t indent, std::size_t width);

} // namespace bkdoc
