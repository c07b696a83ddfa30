#pragma once

#include "command/arguments.h"
#include "output/output.h"
#include "verbs/exit_code.h"

/// The verbs of the tool. The command table calls them. A verb that writes something other than a report writes the problems of
/// its documents to the error stream.
namespace bkdoc {

/// Reports the problems of files and folders.
ExitCode run_check(const Arguments& arguments, Streams& streams);
/// Prints documents as the library writes them.
ExitCode run_cat(const Arguments& arguments, Streams& streams);
/// Draws the groups, entries and values as a tree.
ExitCode run_tree(const Arguments& arguments, Streams& streams);
/// Summarises a document's content and the files that it needs.
ExitCode run_info(const Arguments& arguments, Streams& streams);
/// Lists the files that a document includes, and whether each was found.
ExitCode run_deps(const Arguments& arguments, Streams& streams);
/// Prints the entries and values that a path finds.
ExitCode run_get(const Arguments& arguments, Streams& streams);
/// Prints the entries and values that a regular expression matches.
ExitCode run_grep(const Arguments& arguments, Streams& streams);
/// These change values by path, and add, remove, move and rename entries. Bytes that need not change stay.
ExitCode run_set(const Arguments& arguments, Streams& streams);
ExitCode run_add(const Arguments& arguments, Streams& streams);
ExitCode run_rm(const Arguments& arguments, Streams& streams);
ExitCode run_mv(const Arguments& arguments, Streams& streams);
ExitCode run_rename(const Arguments& arguments, Streams& streams);
/// Tells whether two documents have the same tree, or else shows the first difference. Positions in the files and spellings of
/// numbers do not count. With --content, only names and values count.
ExitCode run_same(const Arguments& arguments, Streams& streams);
/// Stores the document in another form. The result is read back and compared before it replaces the target. A target that
/// cannot be written, or that would lose something, stays as it was.
ExitCode run_convert(const Arguments& arguments, Streams& streams);
/// Explains each byte of a binary, encrypted or archive file, and continues after bytes that it cannot explain.
ExitCode run_dump(const Arguments& arguments, Streams& streams);
/// Formats texts. The library checks that the text still reads the same before anything is written.
ExitCode run_fmt(const Arguments& arguments, Streams& streams);
/// Shows every difference of two documents, one per line.
ExitCode run_diff(const Arguments& arguments, Streams& streams);
/// Prints a document of any form as text, for programs that compare texts. Never fails.
ExitCode run_textconv(const Arguments& arguments, Streams& streams);
/// Merges two versions of a text.
ExitCode run_merge(const Arguments& arguments, Streams& streams);
/// Saves what is left of a truncated or damaged binary, encrypted or archive file, and says what is lost.
ExitCode run_recover(const Arguments& arguments, Streams& streams);
/// Shows what takes the space in documents.
ExitCode run_stats(const Arguments& arguments, Streams& streams);

} // namespace bkdoc
