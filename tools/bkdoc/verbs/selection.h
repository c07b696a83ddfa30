#pragma once

#include "document/path.h"
#include "input/opened_document.h"

#include <optional>
#include <string>

namespace bkdoc {

/// What the option --path leaves of documents.
class Selection {
public:
    /// Refuses, with the reason told, a path that is malformed.
    Selection(const Arguments& arguments, Streams& streams);

    bool is_refused() const noexcept { return path_ && !path_->ok(); }
    bool is_whole() const noexcept { return !path_; }

    /// What is left: the whole tree without a path, else copies of the entries that it finds. Null, with the reason told, when
    /// it finds none. Valid until the next call.
    const ParserGroup* of(const OpenedDocument& document, Streams& streams);

private:
    std::optional<bk_parser::Path> path_;
    std::optional<ParserGroup> found_;
};

} // namespace bkdoc
