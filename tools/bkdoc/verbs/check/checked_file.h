#pragma once

#include "input/opened_document.h"
#include "output/problems/report.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace bkdoc {

/// How many problems are reported for each file unless --max-problems says otherwise.
inline constexpr std::size_t usual_most_problems = 50;

/// A problem, and the includes that lead to it.
struct ToldProblem {
    bk_parser::Problem problem;
    std::vector<InclusionPlace> chain;
};

/// What the report needs of a checked document. The tree is already deleted.
struct CheckedFile {
    std::string name; // the name in reports
    std::vector<ToldProblem> problems;
    std::optional<std::string> refusal;         // why it could not be read
    std::vector<std::filesystem::path> sources; // files read, and paths where an include was not found
    ExitCode code = EXIT_CLEAN;                 // of the load alone; problems do not count
    std::size_t most_problems = 0;              // reported at most
};

/// The rules of a check that the command line gives.
struct CheckRules {
    OpenOptions open;
    bool strict = false;
    std::optional<std::size_t> max_problems;
};

/// Loads one document by these rules and those of its configuration. `tell` gets the progress, from 0 to 1.
CheckedFile check_file(const std::string& operand, const CheckRules& rules,
                       std::function<void(double)> tell = {});

} // namespace bkdoc
