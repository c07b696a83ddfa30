#pragma once

#include "core/core_export.h"
#include "document/include.h"
#include "document/problem.h"
#include "parser/parser_group.h"
#include "parser/parser_limits.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

struct DocumentState;

/// How a document is stored (docs/formats.md).
enum class Form { text, binary, enciphered, archive };

/// A tree together with where it came from. Movable, not copyable; a document that was moved from is an empty one.
class BK_PARSER_API Document {
public:
    /// An empty document without a path, in the text form.
    Document();
    /// Takes the tree; the other document is an empty one then.
    Document(Document&& other) noexcept;
    /// Takes the tree; the one that was here dies.
    Document& operator=(Document&& other) noexcept;
    ~Document();

    /// The group that holds everything; the document owns it. Of a document that nobody keeps, as in
    /// `load(path).document.root()`, it does not compile: the group would be gone.
    ParserGroup& root() &;
    /// The same for a document that does not change.
    const ParserGroup& root() const&;
    /// Does not compile.
    ParserGroup& root() && = delete;
    /// Does not compile.
    const ParserGroup& root() const&& = delete;
    /// The form that it was loaded from, or was saved in last.
    Form form() const;
    /// The file that it was loaded from, or was saved to last, as it was given; empty when there is none.
    const std::filesystem::path& path() const&;
    /// A copy, of a document that nobody keeps.
    std::filesystem::path path() &&;
    /// Absolute paths of the files that it includes, each once, in the order of their first inclusion.
    const std::vector<std::filesystem::path>& dependencies() const&;
    /// A copy, of a document that nobody keeps.
    std::vector<std::filesystem::path> dependencies() &&;
    /// The include directives of its files in the order of reading, those that failed too. A file that is included
    /// more than once has its directives listed once.
    const std::vector<Include>& includes() const&;
    /// A copy, of a document that nobody keeps.
    std::vector<Include> includes() &&;
    /// The files that it was read from, each once, in the order of reading: the document first.
    const std::vector<DocumentFile>& files() const&;
    /// A copy, of a document that nobody keeps.
    std::vector<DocumentFile> files() &&;
    /// Bytes of the text that was parsed: includes spliced in, comments left out. 0 in the binary form.
    std::uint64_t expanded_size() const;
    /// The version of the syntax that its text was read by; of the forms that have no text the one that is written.
    double version() const;

private:
    friend struct DocumentState;
    explicit Document(std::unique_ptr<DocumentState> state) noexcept;
    mutable std::unique_ptr<DocumentState> state_;
};

/// How to load a document.
struct LoadOptions {
    /// Folders to search for included files, in this order. At last `load` tries the name as it stands: an absolute path,
    /// or one from the working folder. `parse` does not.
    std::vector<std::filesystem::path> search;
    /// Whether an included file is searched for beside the file that includes it, before the search folders.
    bool beside = true;
    /// Whether included files are read. Otherwise their directives are left out, and `Document::includes` lists them.
    bool follow_includes = true;
    /// Decrypts an enciphered document and its enciphered includes. With a key a file of no bytes is a document that was cut off.
    std::string key;
    /// What the load may cost.
    ParserLimits limits = ParserLimits::untrusted();
    /// Called about a hundred times with how much of the load is done, from 0 to 1 and never falling. 1 is told once,
    /// when the problems are found, too. When it returns false, the load is cancelled. What it throws passes through `load`.
    std::function<bool(double)> progress;
    /// Keeps the texts of all files in memory, as long as the document is not saved: place_of (document/places.h) tells where
    /// entries stand, and a text that was parsed in memory keeps its layout when it is saved.
    bool keep_sources = false;
    /// Codes of warnings that are not told. Errors are always told.
    std::vector<std::string> allow;
};

/// What a load gives.
struct LoadResult {
    /// Everything that could be read; empty when the load was cancelled or refused.
    Document document;
    /// In the order of the text, what has no place first. At most 10,000, or ParserLimits::message_count when that is
    /// less; when there are more, one further problem, "more-problems", is the last and says how many.
    std::vector<Problem> problems;
    /// Whether `progress` returned false.
    bool cancelled = false;
    /// Whether the whole document was read: not cancelled, and no problem is an error.
    BK_PARSER_API bool ok() const;
};

/// Loads a document in any stored form, which is found from its first bytes. Never fails without a problem that says why:
/// a file that cannot be opened, or that is no document (JSON, an image, UTF-16), is one problem, and the
/// document is empty. So is one of a device other than a pipe. A named pipe that nobody writes to blocks.
/// Linear in the size of the files.
[[nodiscard]] BK_PARSER_API LoadResult load(const std::filesystem::path& path,
                                            const LoadOptions& options = {});

/// The same for a text in memory. Includes are searched for in the search folders alone.
[[nodiscard]] BK_PARSER_API LoadResult parse(std::string_view text, const LoadOptions& options = {});

} // namespace bk_parser
