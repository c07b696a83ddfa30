#pragma once

#include "verbs/check/checked_file.h"

#include <cstddef>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace bkdoc {

/// A problem of a file that documents include, told once.
struct IncludedProblem {
    ToldProblem told;                   // of the first document that has it
    std::vector<std::string> documents; // that have it
};

/// What is known when a check is over.
struct CheckCounts {
    std::size_t files = 0;
    std::size_t files_with_problems = 0; // what stands in a file that they include counts, too
    std::size_t unread = 0;
    std::size_t errors = 0;
    std::size_t warnings = 0;
    ExitCode code = EXIT_CLEAN;
};

/// Sorts the problems of documents into those that stand in them, and those that stand in a file that they include, which
/// are told once for all documents.
class CheckSummary {
public:
    /// With one document its included problems are its own: they stand where they were met.
    explicit CheckSummary(bool has_one_document) : has_one_document_(has_one_document) {}

    /// The problems of the document that are to be told now.
    std::vector<ToldProblem> add(CheckedFile&& file);

    /// Those of included files, file by file, in the order in which they were met. What was told of the file itself,
    /// as a document, is left out. Counts them. To be called once, behind the last document.
    std::vector<IncludedProblem> take_included();

    const CheckCounts& counts() const noexcept { return counts_; }
    void fail(ExitCode code) noexcept { counts_.code = std::max(counts_.code, code); }

private:
    void count(const bk_parser::Problem& problem) noexcept;
    static std::string key_of(const bk_parser::Problem& problem);

    bool has_one_document_;
    CheckCounts counts_;
    std::vector<IncludedProblem> included_;
    std::unordered_map<std::string, std::size_t> included_by_key_;
    std::unordered_map<std::string, bool> own_keys_;
};

} // namespace bkdoc
