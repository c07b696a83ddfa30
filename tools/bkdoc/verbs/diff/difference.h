#pragma once

#include "document/compare.h"
#include "document/path.h"
#include "input/opened_document.h"

#include <string>
#include <vector>

namespace bkdoc {

/// How many characters of a path or a name are told.
inline constexpr std::size_t longest_path = 400;

/// A difference of two documents as it is told.
struct ToldDifference {
    bk_parser::TreeChange change;
    std::string file; // that holds the place, as it was found
    unsigned int line = 0;
    unsigned int column = 0;
    std::string path;        // in B, or in A of what was removed
    std::string path_before; // in A; empty of what was added
    std::string what;        // behind the path, as in "moved"; empty of a value that changed
    std::string before;      // empty when there is nothing to tell
    std::string after;
};

/// The word that a kind of change is called by in JSON and in sums.
std::string_view word_of(bk_parser::TreeChange::Kind kind) noexcept;

/// Makes the texts that tell changes of two documents.
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
