#pragma once

#include "command/arguments.h"

#include <optional>
#include <string>
#include <vector>

namespace bkdoc {

struct VerbSpec;

/// What a command line asks for. Exactly one of the three is the case: a refusal, an answer that needs no document (help,
/// version, a generated page), or a verb to run.
struct CommandLine {
    std::string refusal; ///< one line; empty when there is none
    std::string answer;  ///< to be written to standard output; empty when there is none
    std::optional<Arguments> arguments;
    std::string color = "auto";
};

/// Understands the words behind the tool's name. Options may stand anywhere; "--" ends them. A word that may be a key
/// is never repeated in a refusal.
CommandLine understand(const std::vector<std::string>& words, std::size_t width);

} // namespace bkdoc
