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

/// How a document is stored (docs/formats.md). `enciphered` is the encrypted form.
enum class Form { text, binary, enciphered, archive };

/// A tree, and where it came from. Movable, not copyable. A moved-from document is empty.
class BK_PARSER_API Document {
public:
    /// An empty document without a path, in the text form.
    Document();
    /// Takes the tree; the other document becomes empty.
    Document(Document&& other) noexcept;
    /// Takes the tree, and deletes the one that was here.
    Document& operator=(Document&& other) noexcept;
    ~Document();

    /// The root group, which the document owns. Does not compile on a temporary document, as in `load(path).document.root()`: the
    /// group would dangle.
    ParserGroup& root() &;
    /// The root group of a constant document.
    const ParserGroup& root() const&;
    /// Does not compile.
    ParserGroup& root() && = delete;
    /// Does not compile.
    const ParserGroup& root() const&& = delete;
    /// The form that it was loaded from or last saved in.
    Form form() const;
    /// The file that it was loaded from or last saved to, as it was given; empty when there is none.
    const std::filesystem::path& path() const&;
    /// Returns a copy, because the document is temporary.
    std::filesystem::path path() &&;
    /// The absolute paths of the files that it includes, each once, in the order of their first inclusion.
    const std::vector<std::filesystem::path>& dependencies() const&;
    /// Returns a copy, because the document is temporary.
    std::vector<std::filesystem::path> dependencies() &&;
    /// The include directives of its files in the order of reading, also those that failed. Lists the directives of a file that is
    /// included more than once only once. A save changes `dependencies`, but not this list.
    const std::vector<Include>& includes() const&;
    /// Returns a copy, because the document is temporary.
    std::vector<Include> includes() &&;
    /// The files that it was read from, each once, in the order of reading: the document first. A save does not change this list.
    const std::vector<DocumentFile>& files() const&;
    /// Returns a copy, because the document is temporary.
    std::vector<DocumentFile> files() &&;
    /// Bytes of the text that was parsed: includes spliced in, comments left out. 0 in the binary form. A save does not change it.
    std::uint64_t expanded_size() const;
    /// The version of the syntax by which its text was read. For a form without text, the version that the library writes.
    double version() const;

private:
    friend struct DocumentState;
    explicit Document(std::unique_ptr<DocumentState> state) noexcept;
    mutable std::unique_ptr<DocumentState> state_;
};

/// How to load a document.
struct LoadOptions {
    /// Folders to search for included files, in this order. After them `load` tries the name as it is spelled: an absolute path,
    /// or one relative to the working folder. `parse` does not. When `working_folder` is false, "." here still means the working folder,
    /// and an empty path means no folder.
    std::vector<std::filesystem::path> search;
    /// Whether an included file is searched for beside the file that includes it, before the search folders.
    bool beside = true;
    /// Whether `load` searches the working folder. When false, a document reads the same in every working folder. Absolute paths are
    /// tried in any case.
    bool working_folder = true;
    /// Whether included files are read. When false, the text is read without them, and `Document::includes` lists their directives.
    bool follow_includes = true;
    /// Decrypts an encrypted document and its encrypted includes. With a key, an empty file counts as a truncated document.
    std::string key;
    /// Bounds the memory and time of the load.
    ParserLimits limits = ParserLimits::untrusted();
    /// Called about a hundred times with the fraction of the load that is done, from 0 to 1, which never decreases. The last call has 1,
    /// after the problems are found. Return false to cancel the load. What it throws passes through `load`.
    std::function<bool(double)> progress;
    /// Keeps the texts of all files in memory until the document is saved. Then place_of (document/places.h) finds the places of
    /// entries, and a text that was parsed from memory keeps its layout when it is saved.
    bool keep_sources = false;
    /// Codes of warnings to suppress. Errors cannot be suppressed.
    std::vector<std::string> allow;
};

/// The result of a load.
struct LoadResult {
    /// Everything that could be read; empty when the load was cancelled or refused.
    Document document;
    /// Problems in the order of the text; those without a place come first. At most 10,000, or ParserLimits::message_count when that is
    /// less. When there are more, one further problem, "more-problems", comes last and says how many.
    std::vector<Problem> problems;
    /// Whether `progress` returned false.
    bool cancelled = false;
    /// Whether the whole document was read: not cancelled, and no problem is an error.
    BK_PARSER_API bool ok() const;
};

/// Loads a document in any stored form, which it recognises by the first bytes. Every failure gives a problem that says why. A file
/// that cannot be opened, that is not a document (JSON, an image, UTF-16), or that is a device other than a pipe gives one problem and an
/// empty document. **It blocks on a named pipe to which no process writes**. Linear in the size of the files.
[[nodiscard]] BK_PARSER_API LoadResult load(const std::filesystem::path& path,
                                            const LoadOptions& options = {});

/// Loads a document from bytes in memory, in any stored form. Searches for includes only in the search folders.
[[nodiscard]] BK_PARSER_API LoadResult parse(std::string_view text, const LoadOptions& options = {});

} // namespace bk_parser
