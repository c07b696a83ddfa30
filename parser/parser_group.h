#pragma once

#include "core/app_progress_bar.h"
#include "core/core_containers.h"
#include "core/core_export.h"
#include "core/core_string.h"
#include "core/core_version.h"
#include "parser/parser_entry.h"

class ParserReadObserver;
struct ParserLimits;
namespace bk {
class GroupAccess;
}

/// A named, ordered container of entries, which it owns: the body of a block in braces, or the root of a
/// document.
///
/// Two numberings are in use. An ordinal counts entries of TYPE_ENTRY alone; a position counts every entry.
/// Both indexes go by the type that an entry had when it was added or when the indexes were last rebuilt: every
/// move and removal rebuilds them. Ordinals and positions are not checked unless an operation says so.
///
/// When memory ends, constructors and edits throw std::bad_alloc (std::length_error where a count would pass 32 bits) and
/// leave everything as it was; nothing else throws.
class BK_PARSER_API ParserGroup {
public:
    /// An empty group. The name is not checked.
    explicit ParserGroup(const CoreString& name);
    /// Deep, at any depth; the source entries of the copy and of the groups in it are null.
    ParserGroup(const ParserGroup& other);
    virtual ~ParserGroup();

    /// Shallow: afterwards both groups have one name, one source entry, and list the same entries. An entry dies with the last
    /// group that lists it; the source entry is that of `other`, and dangles once the owner of `other` is gone. Use set for an
    /// independent copy.
    ParserGroup& operator=(const ParserGroup& other);
    /// Deletes all entries; name and source entry stay.
    void clear();
    /// Becomes a deep copy of `other`'s name and entries. Setting a group to itself changes nothing.
    void set(const ParserGroup& other);

    /// Adds an entry of TYPE_ENTRY when the name is an identifier (a template or array suffix is allowed and
    /// stays part of the name), of TYPE_KEYWORD when it is a keyword. Otherwise null, and at level 2
    /// "ParserGroup.add_entry: '<name>' is not a valid entry name\n". Names may repeat.
    ParserEntry* add_entry(const CoreString& name, const core_ulong& line, const core_ulong& column);
    /// Adopts this very object, which must be a heap object that nobody else owns, and returns its address. When memory ends
    /// it still is the caller's.
    ParserEntry* add_entry(const ParserEntry& entry);
    /// Adds an entry that holds a new group, whose own name is empty and whose source entry is that entry.
    /// Null when the name is not valid.
    ParserGroup* add_group(const CoreString& name);
    /// Adopts `group` under its own name and returns it. Null when that is not a valid entry name: the group then still is
    /// the caller's, as when memory ends. The group keeps its name, which texts cannot carry back (docs/language.md).
    ParserGroup* add_group(ParserGroup* group);

    /// The name that it was made with. Groups inside a text that was read have none.
    const CoreString& get_name() const noexcept { return name_; }
    /// How many ordinals there are.
    unsigned int get_entry_count() const noexcept {
        return entries_.get_count() - keyword_index_.get_count();
    }
    /// By ordinal. A function call that was parsed has an ordinal until the index is rebuilt, by the first move or removal.
    /// Constant time in a group without keywords, else logarithmic in their number.
    ParserEntry* get_entry(const unsigned int& ordinal) const;
    /// The first with an ordinal and that name; null when there is none. Linear.
    ParserEntry* get_entry(const CoreString& name) const;
    /// The first without an ordinal and with that name; null when there is none. Linear.
    ParserEntry* get_keyword(const CoreString& name) const;
    /// Every entry, in document order. A slot is null after detach_entry.
    const CoreVector<ParserEntry*>& get_entries() const noexcept { return entries_; }
    /// The entries with an ordinal and that name, in document order; with `recursive` also those in groups
    /// below, depth first. What an entry of that name holds is not searched. Linear in what is searched. None, with
    /// "ParserGroup.get_entries: out of memory\n" at level 1, when there is no memory for them.
    CoreVector<ParserEntry*> get_entries(const CoreString& name, bool recursive) const;
    /// The position of the first entry of that type; 0xFFFFFFFF when there is none.
    unsigned int get_first_entry_index(ParserEntry::Type type) const;
    /// The entry whose value is this group; null for a root and for an adopted group.
    const ParserEntry* get_source_entry() const noexcept { return source_entry_; }
    /// Says which entry holds this group. The entry is not owned.
    void set_source_entry(ParserEntry* entry) noexcept { source_entry_ = entry; }

    /// Empties the slot of the entry with that ordinal. The caller, who took the pointer before, owns the entry
    /// from then on, and removes the empty slot by position before the group is used further.
    void detach_entry(const unsigned int& ordinal);

    /// Moves the entry at a position to position `to`; those between shift by one place.
    void move_entry(const unsigned int& from, const unsigned int& to);
    /// Moves the entry at a position to the end of `dest`. When `dest` lies inside that entry, at any depth, nothing moves, and
    /// level 2 says "ParserGroup.move_entry: an entry cannot move into itself\n". Linear in the entries of this group. An entry
    /// that holds groups is searched for `dest`, in time linear in what is below it, unless `dest` is held by another entry
    /// of this group alone.
    void move_entry(const unsigned int& position, ParserGroup& dest);
    /// Moves the entries of TYPE_ENTRY to the end of `dest`; the others stay. When `dest` lies inside one of those to be moved,
    /// nothing moves, and level 2 says "ParserGroup.move_entries: an entry cannot move into itself\n". Takes the time of
    /// move_entry for each.
    void move_entries(ParserGroup& dest);
    /// Moves every entry into `dest` at a position of it, which must not exceed its number of entries. Refused in the same
    /// way.
    void move_entries(ParserGroup& dest, unsigned int position);
    /// The survivors keep their order. Positions may come in any order and repeat; those past the end are ignored.
    void remove_entries(CoreBasicArray<unsigned int> positions);
    /// Removes every entry of that name, whatever its type.
    void remove_entry(const CoreString& name);
    /// A position past the end removes nothing.
    void remove_entry(unsigned int position);

    /// Parses a text and appends what it holds. The result is not a success flag: to learn of errors, use bk_parser::parse
    /// (document/load.h) or pass an observer. Faults are logged at level 2 as
    /// "ParserGroup.set_text: (<line>:<column>) ..." and do not stop the parse; lines and columns are those of this
    /// text. False when it has no word, and when the last word outside of the groups in it, braces not counted, was a
    /// fault or "<empty>". Linear in the text; nesting costs heap, not stack.
    bool set_text(const CoreString& text, const CoreVersion& version, AppProgressBar* progress);
    /// The same, telling an observer (may be null) the place of every fault.
    bool set_text(const CoreString& text, const CoreVersion& version, AppProgressBar* progress,
                  ParserReadObserver* observer);
    /// The same within limits. Where one ends the reading the result is false, and the group has what was read before.
    bool set_text(const CoreString& text, const CoreVersion& version, AppProgressBar* progress,
                  ParserReadObserver* observer, const ParserLimits& limits);

    /// Appends the entries as the text syntax writes them, with the group's name and braces around them or
    /// without. Pretty: an entry a line, four blanks a level (a level below 1 counts as 1). Compact: one line.
    void get_text(CoreString& out, const bool& braces, const bool& pretty, const unsigned int& level) const;

    /// The group's text enciphered under `key` (docs/formats.md). The hexadecimal form is followed by the
    /// plain text itself; an empty text leaves the output as it was.
    void get_encrypted_text(CoreArray<unsigned char>& data, const CoreString& key, const bool& braces,
                            const bool& pretty, const unsigned int& level) const;
    /// The same as hexadecimal digits.
    void get_encrypted_text(CoreString& text, const CoreString& key, const bool& braces, const bool& pretty,
                            const unsigned int& level) const;
    /// Deciphers and parses. False, with the group unchanged, when the data cannot be deciphered; a wrong key
    /// is not always noticed.
    bool set_encrypted_text(const CoreArray<unsigned char>& data, const CoreString& key);
    /// The same from hexadecimal digits.
    bool set_encrypted_text(const CoreString& text, const CoreString& key);

    /// The binary form (docs/formats.md).
    CoreVector<char> get_binary(const bool& with_name) const;
    /// Reads a group's size and entries (no name) and appends the entries. False, with what was read before
    /// kept, when the data is bad; at level 2 "ParserGroup.set_binary: ParserGroup size larger than the given
    /// data\n" or "ParserGroup.set_binary: Failed to read entry name\n".
    bool set_binary(const CoreVector<char>& data, core_uint64& position);
    /// The same within limits: at level 2 "ParserGroup.set_binary: Group is nested too deeply\n", and false.
    bool set_binary(const CoreVector<char>& data, core_uint64& position, const ParserLimits& limits);

    /// Takes a block from the library's slabs, in whichever module the object is made.
    static void* operator new(std::size_t size);
    /// Null when memory has run out, and for a derived class of more than CoreMemory::largest_slab_block bytes.
    static void* operator new(std::size_t size, const std::nothrow_t&) noexcept;
    /// Makes the object in a place of the caller's.
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    /// Gives the block back to the library's slabs, in whichever module the object dies.
    static void operator delete(void* block, std::size_t size) noexcept;
    /// Gives the block back when a constructor threw.
    static void operator delete(void* block, const std::nothrow_t&) noexcept;

private:
    friend class bk::GroupAccess;

    void append(ParserEntry* entry);
    void swap_content(ParserGroup& other) noexcept;
    void rebuild_index() noexcept;
    template <class IsRemoved>
    void take_out(IsRemoved is_removed);
    unsigned int position_of(unsigned int ordinal) const noexcept;

    CoreString name_;
    CoreVector<ParserEntry*> entries_;
    /// Positions of the entries that have no ordinal, ascending. All other positions are the entry index.
    CoreVector<unsigned int> keyword_index_;
    union {
        ParserEntry* source_entry_ = nullptr;
        ParserGroup* next_doomed_; // once the group waits for its deletion
    };
};
