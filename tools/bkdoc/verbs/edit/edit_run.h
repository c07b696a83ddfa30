#pragma once

#include "document/path.h"
#include "document/save.h"
#include "input/opened_document.h"

#include <cstddef>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace bkdoc {

/// What a verb did to the tree of one document.
struct EditOutcome {
    bool is_found = false;                     // something was there to be changed
    std::string refusal;                       // why the document is not to be changed; else empty
    std::map<std::string, std::size_t> counts; // of changes, by the absolute path of the file; empty for "-"
    std::size_t anywhere = 0;                  // changes in the file that is changed last
    std::string notes;                         // lines to be shown before anything is written

    /// Whether no change of this place of a file was asked about before: a file that is included twice has its values twice in
    /// the tree. To be asked before the tree is changed.
    bool is_new_place(const OpenedDocument& document, const ParserEntry& entry, unsigned int value);

private:
    std::set<std::tuple<std::string, unsigned int, unsigned int, unsigned int>> places_;
};

/// What the verbs that change documents have in common.
struct EditRequest {
    std::vector<std::string> files;
    std::string sought;    // as in "nothing matches light/power"
    std::string_view one;  // as in "value"
    std::string_view many; // as in "values"
    std::string_view done; // as in "set"
    std::function<EditOutcome(OpenedDocument&)> edit;
};

/// Opens the documents, lets the verb change their trees, and then writes all of them, shows a diff, or writes the result to
/// standard output, as the command line says. When one document is refused, none is written. 0 when something was found,
/// 1 when nothing was, 2 when something was refused.
ExitCode run_edit(const Arguments& arguments, Streams& streams, const EditRequest& request);

/// The file that an entry stands in, for EditOutcome::counts. To be asked before the tree is changed.
std::string home_of(const OpenedDocument& document, const ParserEntry& entry);
/// The document's own file, in the same way.
std::string own_file(const OpenedDocument& document);
/// "file:line:column: path" for reasons and notes.
std::string told_place(const OpenedDocument& document, const ParserEntry& entry);

/// The entries that a path finds, before anything is changed.
std::vector<bk_parser::Visit> found_by(const OpenedDocument& document, const bk_parser::Path& path);

} // namespace bkdoc
