#pragma once

#include "document/compare.h"
#include "document/path.h"
#include "input/opened_document.h"

#include <string>
#include <vector>

namespace bkdoc {

/// How many characters of a path or a name are shown.
inline constexpr std::size_t longest_path = 400;

/// A difference of two documents, in the words of the report.
struct ToldDifference {
    bk_parser::TreeChange change;
    std::string file; // with the difference, as it was found
    unsigned int line = 0;
    unsigned int column = 0;
    std::string path;        // in B; in A for a removal
    std::string path_before; // in A; empty for an addition
    std::string what;        // shown after the path, such as "moved"; empty for a changed value
    std::string before;      // empty when there is nothing to show
    std::string after;
};

/// The word for a kind of change in JSON and in summaries.
std::string_view word_of(bk_parser::TreeChange::Kind kind) noexcept;

/// Describes changes of two documents.
class DifferenceTeller {
public:
    DifferenceTeller(const OpenedDocument& before, const OpenedDocument& after);

    ToldDifference tell(const bk_parser::TreeChange& change) const;

private:
    void tell_value(ToldDifference& told) const;
    void tell_head(ToldDifference& told) const;
    void tell_move(ToldDifference& told) const;

    const OpenedDocument& before_;
    const OpenedDocument& after_;
    bk_parser::PathIndex before_paths_;
    bk_parser::PathIndex after_paths_;
};

} // namespace bkdoc
