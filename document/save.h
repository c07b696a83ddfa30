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
    /// The key of the encrypted form (Form::enciphered); when it is empty, the key with which the document was loaded.
    std::string key;
    /// Whether a save keeps the layout. When this is true, a document that was read from text files and is saved as text keeps its
    /// comments, blank lines, spelling and includes. The save changes only the bytes of what you changed.
    ///
    /// When this is false, the save lays the file out anew, as ParserGroup::get_text does, and splices the includes in. Every line ends
    /// in a line feed on every platform. A save of any other document always does this.
    ///
    /// An encrypted text is always laid out anew, so its comments are a loss ("comments-lost"). When this is false, you accept that
    /// loss.
    ///
    /// A binary document or archive whose version is an entry keeps that entry. An infinity of the binary form was read as the largest
    /// double, and is saved as that.
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
    /// What the form cannot carry, each with a code and the path of the entry. Without `lossy` nothing was saved because of
    /// them.
    std::vector<Problem> losses;
    /// The files that were replaced. Files that did not change are not written.
    std::vector<std::filesystem::path> written;
    /// Whether every byte is on the disk.
    bool ok() const { return reason.empty(); }
};

/// A file that a save would replace.
struct FileChange {
    /// The path of the file; empty for a document in memory.
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

/// Saves a document to `path`, or to the file that it was loaded from when `path` is empty. Refuses a path with a NUL.
///
/// **A process that dies during a save may leave some of several files new and others old**, each of them whole, and files named
/// ".bk_parser_new_*", which you may delete.
///
/// Before it writes anything, it reads back what it is about to write and compares that with the tree. When the two differ, it writes
/// nothing, and the losses and the reason say why.
///
/// **Which saves are refused.** The document's own file is the one that it was loaded from or last saved to, under every name that
/// symbolic links give it. An empty `path` finds it whatever the current folder is. In any form, a save over it is refused
/// - when the file has changed on the disk since ("has changed on the disk since it was loaded");
/// - when the file was not read whole: it was cut off or damaged, or a limit ended the read. `lossy` does not change that. Text after a
///   '}' that closes nothing counts too, and so does an include that was not found or not read, unless the save keeps the layout and
///   with it that text and that directive. The losses name what was not read, with the code "not-read-whole".
///
/// A document that was not read whole can be saved to another path, with `lossy`, without what was not read. Words that were not read
/// ("the word 'X' at FILE:LINE") exist only in the files: a save that does not keep the layout drops them, and needs `lossy` over any
/// file. The losses name the first hundred of them, with the same code.
///
/// No save replaces a file that the document includes. A document from memory has no own file: it is laid out anew, with its includes
/// spliced in.
///
/// **What a save that keeps the layout does.** It reads the old files again. It refuses when one of them has changed on the disk or is
/// gone, or when an include that failed can be read now, there or at the new path. After a load without `LoadOptions::follow_includes` it
/// reads no include, and keeps the directives. It recognises an entry by the line and column that the load gave it. So a moved or changed
/// entry keeps what is around it. A renamed entry keeps that too when its values, or an entry of its group, are as before. An entry of
/// another document counts as new, unless one entry of this document had both its place and its name. After the save, the entries have
/// the lines and columns of the new text.
/// - A removed entry or value goes with its line, and with a comment after it on that line. Comments above it stay. Of two blank lines
///   around an entry, the one after it goes too.
/// - A new entry gets a line of its own, indented as its neighbours are. Where its neighbours share a line, it goes into that line.
/// - A new entry between two entries of an included file goes into that file. At the beginning or end of an include it goes beside the
///   directive.
/// - An entry that moved within its group takes its lines along, with what changed inside it, with comments and includes. It also takes
///   the comments directly above it that have its indentation, unless it goes into the middle of a line.
/// - An entry that moved to an existing group takes its lines along when nothing inside it has changed and no include is inside it.
///   Otherwise it is laid out anew, without its comments.
/// - A copy of an entry has the same line and column. It takes the layout only where the original is gone.
/// - Words that were not read stay where they are. A save that would remove one is refused, with its place. So is one that would change
///   a value, or remove a group, after a name that was not read: it may be meant for that name.
/// - A name or value that a comment or a directive cuts in two (the warnings "comment-joins-line" and "include-joins-word") stays as it
///   is. A save that would change it, or remove that value, is refused.
/// - A file that is included more than once, under one name or several (symbolic or hard links), changes when the tree was changed in
///   the same way in each place. Where one place was cleared, its directive is removed instead. Otherwise the save is refused. Each hard
///   link becomes a file of its own.
/// - When an entry is removed, the includes inside it go, too. An entry that is laid out anew contains the text of its includes: the
///   save is refused when nothing else includes such a file, and when such an include was left out. In a save that lays out other
///   entries anew, the same holds for a removed entry.
/// - A group that the text left open stays open. A save that would put something after it is refused, with its place.
/// - An encrypted include is encrypted again with the key of the load.
/// - A save that would add a line to a file whose lines end only in a carriage return is refused.
/// - After a save with losses, the next one keeps the layout of what was written. What was lost is a loss again as long as the tree
///   holds it.
/// - A save to another path writes only the document's own file, and its includes stay where they are. It is refused when they would
///   not be found from there, or when one of them would have to change. An include that only the working folder provides
///   there is a loss ("include-not-carried"): in another working folder it would not be found.
///
/// **How the files are replaced.** Each file is replaced in one step by a new one, which was flushed to the disk before. When several
/// files change, all new ones are on the disk before the first replaces its old file. The document's own file is the last. When a
/// step fails, the files that were already replaced get their old bytes back. Right before the first replacement, `save` checks once
/// more whether another program has changed one of the files, and refuses then. **When two programs replace a file
/// at the same moment, neither notices the other**: programs that save the same file need a lock of their own.
///
/// When a save fails, the document and every file are as they were. It throws only what a host's log handler or device (SysDevice)
/// throws. When memory runs out, the reason is "out of memory". Linear in the size of the files and of the tree.
[[nodiscard]] BK_PARSER_API SaveResult save(Document& document, const std::filesystem::path& path = {},
                                            const SaveOptions& options = {});

/// Computes what `save` would write, and reads it back in the same way, but writes nothing. A document that was parsed from memory
/// has a preview even without a path: the change without a path is its own text. Throws and costs what `save` does, and
/// takes memory for the files that change.
[[nodiscard]] BK_PARSER_API SavePreview preview_save(Document& document,
                                                     const std::filesystem::path& path = {},
                                                     const SaveOptions& options = {});

/// Writes the changes of previews to their files, all of them or none, in their order, as `save` does. Each path may occur once.
/// Returns why nothing was replaced, for example because a file has changed since the preview; empty when every byte is on the disk.
/// The documents of the previews still refer to the old files: load them again before you go on. Throws and costs what `save` does.
[[nodiscard]] BK_PARSER_API std::string replace_files(std::span<const FileChange> changes);

/// Replaces a file with these bytes in one step, or creates it, as `save` does: it writes a new file, flushes it to the disk and renames
/// it. A symbolic link stays, and the file that it leads to is replaced. A pipe or a device is written to. Returns why nothing was
/// replaced, "FILE: what: the system's reason", or "out of memory"; empty when every byte is on the disk. Throws only what a host's
/// device (SysDevice) throws. Linear in the bytes.
[[nodiscard]] BK_PARSER_API std::string replace_file(const std::filesystem::path& path,
                                                     std::string_view bytes);

} // namespace bk_parser
