#pragma once

#include "types/handles.h"

#include <memory>

/// The edits by which entries and groups come, go and move. Everything else in this package that changes which entries
/// a tree has calls these.
namespace bk_python {

/// What every such edit does first; what stands for an entry or a group stays.
void begin_edit(Tree& tree);
/// A buffer of these values exists: BufferError.
void refuse_exported(const Tree& tree, const ParserEntry& entry);

/// The same when a path that is to be made would add a group to such an entry.
void refuse_exported_way(const Tree& tree, ParserGroup& group, const bk_parser::Path& path);

/// ValueError when an entry would move into itself; before a group is made for it.
void refuse_into_itself(const EntryObject& moved, const Container& to);

/// Takes an entry out of its group. It lives on, in a tree of its own, when something stands for it or for
/// something in it; else it is gone.
void remove_entry(Tree& tree, ParserGroup& group, unsigned int position);
/// Moves an entry, wherever it is, to a position of a group; one past the end is the end.
void insert_entry(Tree& tree, ParserGroup& group, unsigned int position, EntryObject& entry);
/// Removes a value. A group lives on as an entry does.
void remove_value(Tree& tree, ParserEntry& entry, unsigned int value);
/// Removes the values at these positions, in time that is linear in all values.
void remove_values(Tree& tree, ParserEntry& entry, const CoreBasicArray<unsigned int>& values);
/// Appends a group to the values of an entry.
ParserGroup& add_group(EntryObject& handle);
/// Removes what a path finds, and tells how many there were.
std::size_t remove_all(Tree& tree, ParserGroup& group, const bk_parser::Path& path);
/// Removes every entry.
void clear(Tree& tree, ParserGroup& group);

/// A deep copy that belongs to nobody, without lines and columns.
std::unique_ptr<ParserEntry> copy_of(const ParserEntry& entry);

} // namespace bk_python
