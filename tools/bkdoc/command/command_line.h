#pragma once

#include "command/arguments.h"

#include <optional>
#include <string>
#include <vector>

namespace bkdoc {

struct VerbSpec;

/// The meaning of a command line. It is exactly one of three: a refusal, an answer that needs no document (help, version, a
/// generated page), or a verb to run.
struct CommandLine {
    std::string refusal; ///< one line; empty without a refusal
    std::string answer;  ///< for standard output; empty without an answer
    std::optional<Arguments> arguments;
    std::string color = "auto";
};

/// Parses the words after the tool's name. Options may stand anywhere; "--" ends them. A refusal never repeats a word that may
/// be a key.
CommandLine understand(const std::vector<std::string>& words, std::size_t width);

} // namespace bkdoc
