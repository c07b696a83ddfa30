#pragma once

#include "document/path.h"
#include "input/opened_document.h"

#include <optional>
#include <string>

namespace bkdoc {

/// The part of a document that the option --path selects.
class Selection {
public:
    /// Parses the path. Reports a malformed one and refuses to go on.
    Selection(const Arguments& arguments, Streams& streams);

    bool is_refused() const noexcept { return path_ && !path_->ok(); }
    bool is_whole() const noexcept { return !path_; }

    /// The selected tree: the whole tree without --path, else copies of the entries that the path finds. Null when it finds
    /// none, after saying so. Valid until the next call.
    const ParserGroup* of(const OpenedDocument& document, Streams& streams);

private:
    std::optional<bk_parser::Path> path_;
    std::optional<ParserGroup> found_;
};

} // namespace bkdoc
