#pragma once

#include "types/handles.h"

#include <memory>

/// All edits that add, remove or move entries and groups. All other code of this package calls these for such an edit.
namespace bk_python {

/// Called first by every such edit. Keeps all handles valid.
void begin_edit(Tree& tree);
/// BufferError when a buffer of these values is exported.
void refuse_exported(const Tree& tree, const ParserEntry& entry);

/// The same when making the entries of a path would add a group to such an entry.
void refuse_exported_way(const Tree& tree, ParserGroup& group, const bk_parser::Path& path);

/// ValueError when an entry would move into itself. Checked before a group is made for it.
void refuse_into_itself(const EntryObject& moved, const Container& to);

/// Removes an entry from its group. If it or something in it has a handle, it lives on in a tree of its own; else it is
/// deleted.
void remove_entry(Tree& tree, ParserGroup& group, unsigned int position);
/// Moves an entry from anywhere to a position of a group; one past the last position appends.
void insert_entry(Tree& tree, ParserGroup& group, unsigned int position, EntryObject& entry);
/// Removes a value. A group with a handle lives on, as an entry does.
void remove_value(Tree& tree, ParserEntry& entry, unsigned int value);
/// Removes the values at these positions, in time that is linear in all values.
void remove_values(Tree& tree, ParserEntry& entry, const CoreBasicArray<unsigned int>& values);
/// Appends a group to the values of an entry.
ParserGroup& add_group(EntryObject& handle);
/// Removes the entries that a path finds, and returns how many there were.
std::size_t remove_all(Tree& tree, ParserGroup& group, const bk_parser::Path& path);
/// Removes every entry.
void clear(Tree& tree, ParserGroup& group);

/// A deep copy without an owner, line or column.
std::unique_ptr<ParserEntry> copy_of(const ParserEntry& entry);

} // namespace bk_python
