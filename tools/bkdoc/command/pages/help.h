#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace bkdoc {

struct OptionSpec;
struct VerbSpec;

/// The word in "bkdoc help" and "bkdoc help check".
inline constexpr std::string_view help_verb = "help";
inline constexpr std::string_view help_summary = "Explain a verb and show an example.";

/// The overview of all verbs by task, wrapped to the width of the terminal.
std::string help_text(std::size_t width);
/// The help of one verb: usage, description, options, an example and exit codes.
std::string help_text(const VerbSpec& verb, std::size_t width);
std::string version_text();

/// Such as "-j, --jobs N".
std::string option_heading(const OptionSpec& option);
/// Such as "check [OPTIONS] FILE...".
std::string usage_of(const VerbSpec& verb);

/// Wraps a text at blanks to `width`. Indents every line but the first. Keeps a line that begins with a blank as it is.
std::string filled(std::string_view text, std::size_t indent, std::size_t width);

} // namespace bkdoc
