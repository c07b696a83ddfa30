#pragma once

#include "command/arguments.h"
#include "output/output.h"
#include "verbs/exit_code.h"

/// The verbs of the tool, as the command table calls them. A verb that writes something other than a report puts the problems
/// of its documents on the error stream.
namespace bkdoc {

/// Reports the problems of files and folders.
ExitCode run_check(const Arguments& arguments, Streams& streams);
/// Writes the document as the library writes it.
ExitCode run_cat(const Arguments& arguments, Streams& streams);
/// Draws the groups, entries and values as a tree.
ExitCode run_tree(const Arguments& arguments, Streams& streams);
/// Says what the document is made of and which files it needs.
ExitCode run_info(const Arguments& arguments, Streams& streams);
/// Says which files a document includes, and what became of each.
ExitCode run_deps(const Arguments& arguments, Streams& streams);
/// Shows what a path finds.
ExitCode run_get(const Arguments& arguments, Streams& streams);
/// Shows the entries and values that a regular expression fits.
ExitCode run_grep(const Arguments& arguments, Streams& streams);
/// Change values, and add, remove, move and rename entries, by path. What stays keeps its bytes.
ExitCode run_set(const Arguments& arguments, Streams& streams);
ExitCode run_add(const Arguments& arguments, Streams& streams);
ExitCode run_rm(const Arguments& arguments, Streams& streams);
ExitCode run_mv(const Arguments& arguments, Streams& streams);
ExitCode run_rename(const Arguments& arguments, Streams& streams);
/// Says whether two documents hold the same tree, else where they differ first. Where an entry stood in its
/// file does not count, nor how a number was spelled. With --content, only names and values count.
ExitCode run_same(const Arguments& arguments, Streams& streams);
/// Stores the document in another form. What was made is read back and compared before it takes the target's name;
/// a target that cannot be written, or would hold something else, stays as it was.
ExitCode run_convert(const Arguments& arguments, Streams& streams);
/// Writes what each byte of a binary, enciphered or archive file means, and goes on behind what cannot be explained.
ExitCode run_dump(const Arguments& arguments, Streams& streams);
/// Lays out texts. What is read stays the same: the library compares it before anything is written.
ExitCode run_fmt(const Arguments& arguments, Streams& streams);
/// Tells every difference of two documents, one a line.
ExitCode run_diff(const Arguments& arguments, Streams& streams);
/// Writes a document of any form as text, for programs that compare texts. Never fails.
ExitCode run_textconv(const Arguments& arguments, Streams& streams);
/// Merges two texts that were made of one.
ExitCode run_merge(const Arguments& arguments, Streams& streams);
/// Saves what is left of a stored form that is cut off or damaged, and tells what is lost.
ExitCode run_recover(const Arguments& arguments, Streams& streams);
/// Says what takes the space of documents.
ExitCode run_stats(const Arguments& arguments, Streams& streams);

} // namespace bkdoc
