#pragma once

#include "verbs/check/checked_file.h"

#include <cstddef>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace bkdoc {

/// A problem in an included file. It is reported once for all documents.
struct IncludedProblem {
    ToldProblem told;                   // as the first document has it
    std::vector<std::string> documents; // with this problem
};

/// The totals of a check.
struct CheckCounts {
    std::size_t files = 0;
    std::size_t files_with_problems = 0; // problems in included files count, too
    std::size_t unread = 0;
    std::size_t errors = 0;
    std::size_t warnings = 0;
    ExitCode code = EXIT_CLEAN;
};

/// Separates the problems in documents themselves from those in included files, which are reported once for all documents.
class CheckSummary {
public:
    /// With a single document, problems in included files stay in the order of the text.
    explicit CheckSummary(bool has_one_document) : has_one_document_(has_one_document) {}

    /// The problems of the document that are reported now.
    std::vector<ToldProblem> add(CheckedFile&& file);

    /// The problems in included files, file by file, in the order of their first appearance. Leaves out what was reported of
    /// the file as a document of its own. Counts them, so call it once, after the last document.
    std::vector<IncludedProblem> take_included();

    const CheckCounts& counts() const noexcept { return counts_; }
    void fail(ExitCode code) noexcept { counts_.code = std::max(counts_.code, code); }

private:
    void count(const bk_parser::Problem& problem) noexcept;

    bool has_one_document_;
    CheckCounts counts_;
    std::vector<IncludedProblem> included_;
    std::unordered_map<std::string, std::size_t> included_by_key_;
    std::unordered_map<std::string, bool> own_keys_;
};

} // namespace bkdoc
