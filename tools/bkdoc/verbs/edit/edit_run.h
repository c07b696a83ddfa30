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
    bool is_found = false;                     // the path found something
    std::string refusal;                       // why the document must not change; else empty
    std::map<std::string, std::size_t> counts; // changes by absolute path of the file; "" for standard input
    std::size_t anywhere = 0;                  // changes counted for the last changed file
    std::string notes;                         // lines to show before anything is written

    /// Whether this place of a file is new to the verb. A file that is included twice has its values twice in the tree, but
    /// they change once. Ask before the tree changes.
    bool is_new_place(const OpenedDocument& document, const ParserEntry& entry, unsigned int value);

private:
    std::set<std::tuple<std::string, unsigned int, unsigned int, unsigned int>> places_;
};

/// What a verb that changes documents tells the shared code.
struct EditRequest {
    std::vector<std::string> files;
    std::string sought;    // such as light/power in "nothing matches light/power"
    std::string_view one;  // such as "value"
    std::string_view many; // such as "values"
    std::string_view done; // such as "set"
    std::function<EditOutcome(OpenedDocument&)> edit;
};

/// Opens the documents and lets the verb change their trees. Then writes all of them, shows a diff, or writes the result to
/// standard output, as the command line says. When one document is refused, none is written. Returns 0 when something was
/// found, 1 when nothing was, 2 when something was refused.
ExitCode run_edit(const Arguments& arguments, Streams& streams, const EditRequest& request);

/// The file of an entry, as a key of EditOutcome::counts. Ask before the tree changes.
std::string home_of(const OpenedDocument& document, const ParserEntry& entry);
/// The document's own file, as such a key.
std::string own_file(const OpenedDocument& document);
/// "file:line:column: path", for reasons and notes.
std::string told_place(const OpenedDocument& document, const ParserEntry& entry);

/// All entries that a path finds, collected before anything changes.
std::vector<bk_parser::Visit> found_by(const OpenedDocument& document, const bk_parser::Path& path);

} // namespace bkdoc
