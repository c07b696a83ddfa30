#pragma once

#include "core/core_export.h"
#include "document/load.h"
#include "document/problem.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace bk_parser {

/// How to save a document.
struct SaveOptions {
    /// The form that it was loaded from when there is none.
    std::optional<Form> form;
    /// Encrypts the enciphered form.
    std::string key;
    /// Text that came from text files keeps its comments, blank lines, spelling and includes: only the bytes of what was
    /// changed change.
    bool keep_layout = true;
    /// Saves although the form cannot carry everything that the document holds.
    bool lossy = false;
    /// A change of an entry that came from an included file is made in that file; else it is refused.
    bool into_includes = true;
};

/// How a save went.
struct SaveResult {
    /// Why nothing was saved, with the file's name and the system's reason; empty when all of it is on the disk.
    std::string reason;
    /// What the form cannot carry. Without `lossy` they are the reason that nothing was saved.
    std::vector<Problem> losses;
    /// The files that were replaced. Files that did not change are not written.
    std::vector<std::filesystem::path> written;
    /// Whether every byte is on the disk.
    bool ok() const { return reason.empty(); }
};

/// Saves a document to `path`, or to the file that it was loaded from when `path` is empty.
[[nodiscard]] BK_PARSER_API SaveResult save(Document& document, const std::filesystem::path& path = {},
                                            const SaveOptions& options = {});

} // namespace bk_parser
