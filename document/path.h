#pragma once

#include "core/core_export.h"
#include "document/problem.h"
#include "document/ranges.h"
#include "document/text_ref.h"
#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// Paths name places of a tree, as in `sequence/shot["010"]/camera@2`. docs/paths.md explains the language.
namespace bk_parser {

struct ParsedPath;

/// Why a path is malformed, and where.
struct PathError {
    /// What was found and what to write instead, on one line.
    std::string message;
    /// Where it is wrong, in bytes of the path. This may be the end of the path.
    std::size_t offset = 0;
    /// The length of what is wrong, in bytes: at least 1.
    std::size_t length = 1;
};

/// A parsed path, which may be used often, by many threads at once. Copies share what was parsed.
class BK_PARSER_API Path {
public:
    /// Parses the path, in linear time. A malformed path finds nothing, and `error` says why.
    explicit Path(TextRef text);
    /// Copies share what was parsed.
    Path(const Path& other) noexcept;
    /// Takes what the other holds.
    Path(Path&& other) noexcept;
    /// Copies share what was parsed.
    Path& operator=(const Path& other) noexcept;
    /// Takes what the other holds.
    Path& operator=(Path&& other) noexcept;
    ~Path();

    /// Whether the path is well formed.
    bool ok() const noexcept;
    /// Why the path is malformed; null when it is well-formed. Valid as long as the path or a copy of it.
    const PathError* error() const& noexcept;
    const PathError* error() const&& = delete;
    /// The path as it was given.
    std::string_view text() const& noexcept;
    std::string_view text() const&& = delete;

private:
    friend struct ParsedPath;
    std::shared_ptr<const ParsedPath> parsed_;
};

/// A path as a parameter: a text, which the call parses, or a Path. A null pointer is an empty text, which finds
/// nothing. Refers to its argument, which must outlive it.
class PathRef {
public:
    /// Refers to the path, which must outlive the call.
    PathRef(const Path& path) noexcept : path_(&path) {}
    /// Refers to the path, which must outlive the call.
    template <TextLike Text>
    PathRef(const Text& text) noexcept : text_(TextRef(text).view()) {}
    /// Refers to the text, which must outlive the call.
    PathRef(const CoreBasicString& text) noexcept : text_(text.get_view()) {}

    /// The Path that it was made from; null when it was made from a text.
    const Path* path() const noexcept { return path_; }
    /// The path as it was spelled.
    std::string_view text() const noexcept { return path_ != nullptr ? path_->text() : text_; }

private:
    const Path* path_ = nullptr;
    std::string_view text_;
};

/// Why a path is malformed; nothing when it is well-formed.
[[nodiscard]] BK_PARSER_API std::optional<PathError> path_error(TextRef path);

/// Three lines: the message, the path, and carets under the characters that are wrong.
[[nodiscard]] BK_PARSER_API std::string to_text(const PathError& error, TextRef path);

/// The error as a problem of the code "malformed-path", whose source line is the path.
[[nodiscard]] BK_PARSER_API Problem to_problem(const PathError& error, TextRef path);

/// A name as a path spells it: bare where the language allows that, otherwise in quotes.
[[nodiscard]] BK_PARSER_API std::string path_name(TextRef name);
/// The text in quotes, with escapes for quotes, backslashes, control characters and bytes that are not UTF-8.
[[nodiscard]] BK_PARSER_API std::string path_string(TextRef text);

/// Visits everything that a path finds in a group, in document order, each entry once. The time is in proportion to the
/// entries searched times the steps and brackets of the path; a step has at most 64 brackets. The memory is in
/// proportion to depth times steps. A moved-from search finds nothing and may be assigned to.
class BK_PARSER_API PathSearch {
public:
    /// Starts before the first entry; call `next` to go there.
    PathSearch(const ParserGroup& group, PathRef path);
    /// Takes what the other holds.
    PathSearch(PathSearch&& other) noexcept;
    /// Takes what the other holds.
    PathSearch& operator=(PathSearch&& other) noexcept;
    PathSearch(const PathSearch&) = delete;
    PathSearch& operator=(const PathSearch&) = delete;
    ~PathSearch();

    /// Goes to the next entry; false when there is none.
    bool next();
    /// Skips what the current entry holds.
    void skip_groups() noexcept;
    /// The current entry and its place; Visit() before the first `next`, and for a moved-from search.
    const Visit& visit() const noexcept;

private:
    struct State;
    std::unique_ptr<State> state_;
};

/// The first entry that the path finds, in document order; null when there is none or the path is malformed. Searches as
/// PathSearch does, up to that entry: n calls for the n entries of a group take time in proportion to n * n.
/// The tree owns the entry. The entry is not const, even for a const group: change it only if you may change the tree.
[[nodiscard]] BK_PARSER_API ParserEntry* find(const ParserGroup& group, PathRef path);

/// The group that the path leads to: the value that `@` names, or the first group of the first entry found. Null
/// when that is not a group.
[[nodiscard]] BK_PARSER_API ParserGroup* find_group(const ParserGroup& group, PathRef path);

/// All entries that the path finds: `for (ParserEntry& light : find_all(root, "**/light"))`.
[[nodiscard]] inline CursorRange<PathSearch, ParserEntry> find_all(const ParserGroup& group, PathRef path) {
    return CursorRange<PathSearch, ParserEntry>(PathSearch(group, path));
}

/// All entries that the path finds, each with its place in the tree and the value that `@` names.
[[nodiscard]] inline CursorRange<PathSearch, const Visit> find_visits(const ParserGroup& group,
                                                                      PathRef path) {
    return CursorRange<PathSearch, const Visit>(PathSearch(group, path));
}

/// Returns the canonical path, which finds this entry in `root` and no other one. The path is empty when the entry is not below `root`.
/// A step is the name alone when no other entry of the group has that name. Otherwise it is the name with the entry's first
/// string, its template, or its number among the entries of that name. Linear in the tree: for many entries make a PathIndex.
[[nodiscard]] BK_PARSER_API std::string path_of(const ParserGroup& root, const ParserEntry& entry);

/// The group that lists an entry; null when the entry is not below `root`. Linear in the tree, because an entry does not know
/// its group.
[[nodiscard]] BK_PARSER_API ParserGroup* parent_of(const ParserGroup& root, const ParserEntry& entry);
/// The entry that holds a group; null for `root` itself and for a group that is not below it. Linear in the tree. A
/// group that was read or was made in its entry knows that entry at once (ParserGroup::get_source_entry); one that was
/// adopted or copied does not.
[[nodiscard]] BK_PARSER_API ParserEntry* parent_of(const ParserGroup& root, const ParserGroup& group);

/// The paths and parents of all entries of a tree, found in one walk. **Make a new index after an edit of the tree**: the old one is
/// wrong. A moved-from index has no entries and may be assigned to.
class BK_PARSER_API PathIndex {
public:
    /// Indexes the tree under this group, which must outlive the index.
    explicit PathIndex(const ParserGroup& root);
    /// Takes what the other holds.
    PathIndex(PathIndex&& other) noexcept;
    /// Takes what the other holds.
    PathIndex& operator=(PathIndex&& other) noexcept;
    PathIndex(const PathIndex&) = delete;
    PathIndex& operator=(const PathIndex&) = delete;
    ~PathIndex();

    /// Returns what the function path_of returns, in time linear in the depth.
    std::string path_of(const ParserEntry& entry) const;
    /// The entry that holds the group that lists this entry; null in the root group and for entries elsewhere.
    ParserEntry* parent_of(const ParserEntry& entry) const noexcept;

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace bk_parser
