#pragma once

#include "input/opened_document.h"
#include "output/problems/report.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace bkdoc {

/// How many problems of a file are told unless another number is asked for.
inline constexpr std::size_t usual_most_problems = 50;

/// A problem and the includes that lead to it.
struct ToldProblem {
    bk_parser::Problem problem;
    std::vector<InclusionPlace> chain;
};

/// What is left of a document when it was checked: its tree is gone.
struct CheckedFile {
    std::string name; // as reports call it
    std::vector<ToldProblem> problems;
    std::optional<std::string> refusal; // why it could not be read
    std::vector<std::filesystem::path>
        sources;                   // the files that it was read from, and those looked for in vain
    ExitCode code = EXIT_CLEAN;    // of the reading: problems do not count
    std::size_t most_problems = 0; // that are told of it
};

/// The rules of a check, as far as the command line says them.
struct CheckRules {
    OpenOptions open;
    bool strict = false;
    std::optional<std::size_t> max_problems;
};

/// Loads one document by the rules and those of its configuration. `tell` is given how far that is, from 0 to 1.
CheckedFile check_file(const std::string& operand, const CheckRules& rules,
                       std::function<void(double)> tell = {});

} // namespace bkdoc
