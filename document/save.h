#pragma once

#include "core/core_export.h"
#include "document/load.h"
#include "document/problem.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

/// How to save a document.
struct SaveOptions {
    /// The form to save in; without a value the one that it was loaded from or last saved in.
    std::optional<Form> form;
    /// The key of the enciphered form; when it is empty, the key with which the document was loaded.
    std::string key;
    /// Text that came from text files, and is saved as text, keeps its comments, blank lines, spelling and includes: only the bytes of
    /// what was changed change. Without it, and for every other document, the file is laid out as ParserGroup::get_text does, and holds
    /// all of the document: includes are spliced in. Its lines, the last one too, end with a line feed on every platform. Comments of an
    /// enciphered text, which is always laid out anew, are a loss ("comments-lost") unless this is false. A binary document or an archive
    /// that says its version in an entry says it there again, in that form. An infinity of the binary form is read, and so
    /// saved, as the largest double.
    bool keep_layout = true;
    /// Whether to save even when the form cannot carry everything that the document holds.
    bool lossy = false;
    /// Whether to change included files. When false, a save that would have to change one is refused.
    bool into_includes = true;
};

/// The result of a save.
struct SaveResult {
    /// Why nothing was saved: "FILE: what: the system's reason". Empty when every byte is on the disk.
    std::string reason;
    /// What the form cannot carry, each with a code and the names that lead to the entry. Without `lossy` nothing was saved because of
    /// them.
    std::vector<Problem> losses;
    /// The files that were replaced. Files that did not change are not written.
    std::vector<std::filesystem::path> written;
    /// Whether every byte is on the disk.
    bool ok() const { return reason.empty(); }
};

/// A file that a save would replace.
struct FileChange {
    /// Empty for a document in memory.
    std::filesystem::path path;
    /// The stored bytes; empty when there is no such file.
    std::string before;
    /// The bytes that would be stored.
    std::string after;
    /// Whether the file exists and would be replaced.
    bool is_there = false;
};

/// What a save would do.
struct SavePreview {
    /// Why nothing would be saved, as in a SaveResult.
    std::string reason;
    /// What the form cannot carry, as in a SaveResult.
    std::vector<Problem> losses;
    /// The files that would change. The document's own file is the last.
    std::vector<FileChange> changes;
    /// Whether there is no reason against it.
    bool ok() const { return reason.empty(); }
};

/// Saves a document to `path`, or to the file that it was loaded from when `path` is empty.
///
/// Before anything is written, what is to be written is read back and compared with the tree. When it would not read back as just
/// this tree, nothing is written, and the losses and the reason say why.
///
/// The document's own file is the one that it was loaded from or last saved to, under every name that symbolic links give it. Without
/// a path it is found whatever the current folder is. In any form, a save over it is refused
/// - when it has changed on the disk since ("has changed on the disk since it was loaded");
/// - when it was not read whole: a stored form that is cut off or damaged, a limit that ended the reading. `lossy` does not help. Text
///   behind a '}' that closes nothing, and an include that was not found or not read, count, too, unless the layout is kept, which keeps the
///   text and the directive. The losses name what was not read, by the code "not-read-whole".
/// To another path such a document goes with `lossy` alone, and without what was not read.
/// Words that were not read ("the word 'X' at FILE:LINE") are in the files alone: a save that does not keep the layout needs `lossy`, too,
/// over any file, and drops them. The losses name the first hundred of them by the same code.
/// No save replaces a file that the document includes. A document from memory has no own file: it is laid out anew, with its includes
/// spliced in.
///
/// A save that keeps the layout reads the old files again, and refuses when one has changed on the disk or is gone, or when an include
/// that failed can be read now, there or at the new path. After a load without `LoadOptions::follow_includes` it reads no include,
/// and keeps the directives. It knows an entry by the line and column that it got when it was loaded,
/// so that a moved or changed entry keeps what is around it, and a renamed one does when its values, or an entry of its group, are those
/// of before; an entry of another document is new under any name but that of the entry whose place it says. After the save the entries
/// have the lines and columns of the new text. What it does:
/// - an entry or a value that was removed goes with its line, and with a comment behind it on that line; comments above it stay, and of two
///   blank lines around an entry the one behind it goes, too;
/// - a new entry stands on a line of its own, indented as its neighbours are, or in the line where its neighbours share one;
/// - a new entry between two of an included file goes into that file; at the begin or end of an include it goes beside the directive;
/// - an entry that moved within its group takes its lines along, with what changed inside of it, with comments and includes, and with the
///   comments directly above it that have its indentation, unless it goes into the middle of a line; one that moved to
///   a group that was there does so when nothing in it has changed and no include stands in it, and else is laid out anew, without its comments;
/// - a copy of an entry, which says the same place, takes the layout only where the original is gone;
/// - words that were not read stay where they are: a save that would take one away is refused, with its place; so is one that would
///   change a value, or take away a group, behind a name that was not read, as it may be meant for that name;
/// - a file that is included more than once, under one name or several (by symbolic or hard links), changes when the tree was changed alike
///   in each place. Where one place was cleared its directive goes instead. Else the save is refused. Each hard link becomes a file of its
///   own;
/// - a removed entry takes includes inside it along. An entry that is laid out anew contains the text of its includes: the save is refused
///   when nothing else includes such a file, and when such an include was left out. An entry that is removed in a save that lays out
///   others counts as one of these;
/// - a group that the text left open stays open: a save that would put something behind it is refused, with its place;
/// - an enciphered include is enciphered again with the key of the load;
/// - a file whose lines end in a carriage return alone takes no new lines: that is refused;
/// - after a save with losses the next one keeps the layout of what was written; what was lost is a loss again as long as the tree holds it;
/// - to another path only the document's own file goes: its includes stay where they are. That is refused when they would not be
///   found from there, or when one of them would have to change. An include that is found there from the folder alone that the
///   process works in is a loss ("include-not-carried"): who works in another one would not find it.
///
/// Each file is replaced in one step by a new one that was flushed to the disk before. When several files change, all new ones are
/// on the disk before the first is put in place, and the document's own file is put in place last. When a step fails, the files
/// that were replaced before get their old bytes back. **A process that dies in between may leave some of the files new and others
/// old**, each of them whole, and files named ".bk_parser_new_*", which may be deleted.
///
/// When it fails, the document and every file are as they were. Throws only what a host's log handler throws. When memory runs out, the
/// reason is "out of memory". Linear in the size of the files and of the tree.
[[nodiscard]] BK_PARSER_API SaveResult save(Document& document, const std::filesystem::path& path = {},
                                            const SaveOptions& options = {});

/// Computes what `save` would write, and reads it back in the same way, but writes nothing. A document that was parsed from memory
/// has a preview even without a path: the change without a path is its own text. Throws and costs what `save` does, and
/// takes memory for the files that change.
[[nodiscard]] BK_PARSER_API SavePreview preview_save(Document& document,
                                                     const std::filesystem::path& path = {},
                                                     const SaveOptions& options = {});

/// Replaces files by the changes of previews, all of them or none, in their order and as `save` does. Each path may occur once.
/// Returns why nothing was replaced, for example because a file has changed since the preview; empty when every byte is on the disk.
/// The documents of the previews still refer to the old files: load them again before you go on.
[[nodiscard]] BK_PARSER_API std::string replace_files(std::span<const FileChange> changes);

/// Gives a file these bytes in one step, or makes it, as `save` does: a new file that was flushed to the disk takes the name. A link stays,
/// and the file that it leads to is replaced. A pipe or a device is written to. Gives why nothing was replaced, "FILE: what: the
/// system's reason"; empty when every byte is on the disk. Throws nothing; linear in the bytes.
[[nodiscard]] BK_PARSER_API std::string replace_file(const std::filesystem::path& path,
                                                     std::string_view bytes);

} // namespace bk_parser
