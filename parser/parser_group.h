#pragma once

#include "core/app_progress_bar.h"
#include "core/core_containers.h"
#include "core/core_export.h"
#include "core/core_string.h"
#include "core/core_version.h"
#include "parser/parser_entry.h"
#include "parser/parser_position_list.h"

class ParserReadObserver;
struct ParserLimits;
namespace bk {
class GroupAccess;
}

/// A named, ordered container of entries, which it owns: the body of a block in braces, or the root of a
/// document.
///
/// Entries have two numbers. A position counts every entry. An ordinal counts only entries of TYPE_ENTRY. The index of ordinals
/// uses the type that an entry had when it was added or when the index was last rebuilt; every move and removal rebuilds it.
/// Ordinals and positions are not checked unless a function says so.
///
/// When memory runs out, constructors and edits throw std::bad_alloc (std::length_error where a count would pass 32 bits) and
/// leave everything as it was. Nothing else throws.
class BK_PARSER_API ParserGroup {
public:
    /// An empty group. The name is not checked.
    explicit ParserGroup(const CoreString& name);
    /// A deep copy, at any depth. The source entries of the copy and of the groups in it are null.
    ParserGroup(const ParserGroup& other);
    virtual ~ParserGroup();

    /// **Shallow**: afterwards both groups list the same entries, and an entry dies with the last group that lists it. This group also
    /// gets the name and the source entry of `other`; that pointer dangles once the owner of `other` is gone. Use `set` for an
    /// independent copy.
    ParserGroup& operator=(const ParserGroup& other);
    /// Deletes all entries. Name and source entry stay.
    void clear();
    /// Becomes a deep copy of `other`'s name and entries. Setting a group to itself changes nothing.
    void set(const ParserGroup& other);

    /// Adds an entry: of TYPE_ENTRY when the name is an identifier, of TYPE_KEYWORD when it is a keyword. A template or array suffix
    /// is allowed, and stays part of the name. For any other name returns null, and logs at level 2
    /// "ParserGroup.add_entry: '<name>' is not a valid entry name\n". Names may repeat.
    ParserEntry* add_entry(const CoreString& name, const core_ulong& line, const core_ulong& column);
    /// Adopts this object, not a copy, and returns its address. It must come from `new`, and nobody else may own it. When memory runs
    /// out, the caller still owns it.
    ParserEntry* add_entry(const ParserEntry& entry);
    /// Adds an entry that holds a new group, and returns the group, whose own name is empty and whose source entry is that entry.
    /// Returns null when the name is not valid.
    ParserGroup* add_group(const CoreString& name);
    /// Adopts `group` in an entry of the group's name, and returns it. Returns null when that is not a valid entry name. Then, and when
    /// memory runs out, the caller still owns the group. The group keeps its name, which texts cannot carry back (docs/language.md).
    ParserGroup* add_group(ParserGroup* group);

    /// The name that the group was made with. Groups that were read from text have none.
    const CoreString& get_name() const noexcept { return name_; }
    /// How many entries have an ordinal.
    unsigned int get_entry_count() const noexcept {
        return entries_.get_count() - keyword_index_.get_count();
    }
    /// The entry with this ordinal. A function call that was parsed has an ordinal until the first move or removal rebuilds the index.
    /// Constant time in a group without keywords, otherwise logarithmic in their number.
    ParserEntry* get_entry(const unsigned int& ordinal) const;
    /// The first entry of that name that has an ordinal; null when there is none. Linear. After parsing, it finds function calls, and
    /// after any move, removal or copy only get_keyword does.
    ParserEntry* get_entry(const CoreString& name) const;
    /// The first entry of that name that has no ordinal; null when there is none. Linear.
    ParserEntry* get_keyword(const CoreString& name) const;
    /// Every entry, in document order. A slot is null after detach_entry.
    const CoreVector<ParserEntry*>& get_entries() const noexcept { return entries_; }
    /// The entries of that name that have an ordinal, in document order; with `recursive` also those in groups
    /// below, depth first. Does not search inside an entry of that name. Linear in what it searches. When memory runs out, returns none
    /// and logs "ParserGroup.get_entries: out of memory\n" at level 1.
    CoreVector<ParserEntry*> get_entries(const CoreString& name, bool recursive) const;
    /// The position of the first entry of that type; 0xFFFFFFFF when there is none.
    unsigned int get_first_entry_index(ParserEntry::Type type) const;
    /// The entry whose value is this group; null for a root and for an adopted group.
    const ParserEntry* get_source_entry() const noexcept { return source_entry_; }
    /// Sets the entry that get_source_entry returns. Does not take it over.
    void set_source_entry(ParserEntry* entry) noexcept { source_entry_ = entry; }

    /// **Remove the empty slot by its position before you use the group again**. Detaches the entry with that ordinal: its slot becomes
    /// null. Get the pointer before the call: you own the entry from then on, and may delete it after the call.
    void detach_entry(const unsigned int& ordinal);

    /// Moves the entry at a position to position `to`. The entries between shift by one position.
    void move_entry(const unsigned int& from, const unsigned int& to);
    /// Moves the entry at a position to the end of `dest`. When `dest` lies inside that entry, at any depth, moves nothing, and logs
    /// "ParserGroup.move_entry: an entry cannot move into itself\n" at level 2. Linear in the entries of this group. An entry
    /// that holds groups is searched for `dest`, in time linear in what is below it, unless only another entry of this group holds
    /// `dest`.
    void move_entry(const unsigned int& position, ParserGroup& dest);
    /// Moves the entries of TYPE_ENTRY to the end of `dest`. The others stay. When `dest` lies inside one of those to be moved,
    /// moves nothing, and logs "ParserGroup.move_entries: an entry cannot move into itself\n" at level 2. Takes the time of
    /// move_entry for each.
    void move_entries(ParserGroup& dest);
    /// Moves every entry into `dest` at this position of `dest`, which must not exceed the number of its entries. Refuses to move
    /// an entry into itself, as above.
    void move_entries(ParserGroup& dest, unsigned int position);
    /// Removes the entries at these positions. The others keep their order. Positions may come in any order and repeat. Positions past
    /// the end are ignored.
    void remove_entries(CoreBasicArray<unsigned int> positions);
    /// Removes every entry of that name, whatever its type.
    void remove_entry(const CoreString& name);
    /// Removes the entry at this position. A position past the end removes nothing.
    void remove_entry(unsigned int position);

    /// Parses a text and appends its entries. Only a '}' that closes nothing and a limit stop the parse. Errors are logged at level 2 as
    /// "ParserGroup.set_text: (<line>:<column>) ...", with lines and columns of this text. Linear in the text; nesting costs heap, not
    /// stack.
    ///
    /// **The result is not a success flag**: to learn of errors, use bk_parser::parse (document/load.h) or pass an observer. It is
    /// false when the text has no word, and when its last word outside of nested groups, not counting braces, was an error or "<empty>".
    bool set_text(const CoreString& text, const CoreVersion& version, AppProgressBar* progress);
    /// Parses a text, and also reports the place of every error to the observer, which may be null.
    bool set_text(const CoreString& text, const CoreVersion& version, AppProgressBar* progress,
                  ParserReadObserver* observer);
    /// Parses a text within limits. When one of them ends the parse, returns false, and the group has what was read before.
    bool set_text(const CoreString& text, const CoreVersion& version, AppProgressBar* progress,
                  ParserReadObserver* observer, const ParserLimits& limits);

    /// Appends the entries as text, with or without the group's name and braces around them. Pretty: an entry a line, four blanks a
    /// level (a level below 1 counts as 1). Compact: all on one line.
    void get_text(CoreString& out, const bool& braces, const bool& pretty, const unsigned int& level) const;

    /// **The cipher is not security**. Replaces `data` with the group's text, encrypted with `key` (docs/formats.md). An empty text
    /// leaves the output as it was.
    void get_encrypted_text(CoreArray<unsigned char>& data, const CoreString& key, const bool& braces,
                            const bool& pretty, const unsigned int& level) const;
    /// Replaces `text` with the encrypted text as hexadecimal digits. **The plaintext itself follows the digits**.
    void get_encrypted_text(CoreString& text, const CoreString& key, const bool& braces, const bool& pretty,
                            const unsigned int& level) const;
    /// Decrypts and parses. When the data cannot be decrypted, returns false and leaves the group unchanged. Does not notice every
    /// wrong key.
    bool set_encrypted_text(const CoreArray<unsigned char>& data, const CoreString& key);
    /// Decrypts and parses hexadecimal digits, by the same rules.
    bool set_encrypted_text(const CoreString& text, const CoreString& key);

    /// The binary form (docs/formats.md).
    CoreVector<char> get_binary(const bool& with_name) const;
    /// Reads a group's size and entries (no name) and appends the entries. When the data is bad, returns false, keeps what it read
    /// before, and logs at level 2 "ParserGroup.set_binary: ParserGroup size larger than the given data\n" or
    /// "ParserGroup.set_binary: Failed to read entry name\n".
    bool set_binary(const CoreVector<char>& data, core_uint64& position);
    /// Decodes a group within limits. When groups nest too deeply, returns false and logs "ParserGroup.set_binary: Group is nested too
    /// deeply\n" at level 2.
    bool set_binary(const CoreVector<char>& data, core_uint64& position, const ParserLimits& limits);

    /// Allocates from the library's slabs, whichever module makes the object.
    static void* operator new(std::size_t size);
    /// Null when memory has run out, and for a derived class of more than CoreMemory::largest_slab_block bytes.
    static void* operator new(std::size_t size, const std::nothrow_t&) noexcept;
    /// Constructs the object in memory of the caller's.
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    /// Returns the block to the library's slabs, whichever module deletes the object.
    static void operator delete(void* block, std::size_t size) noexcept;
    /// Returns the block when a constructor threw.
    static void operator delete(void* block, const std::nothrow_t&) noexcept;

private:
    friend class bk::GroupAccess;

    void append(ParserEntry* entry);
    void swap_content(ParserGroup& other) noexcept;
    bool prepare_index(unsigned int extra);
    bool is_index_exact() const noexcept;
    unsigned int count_without_ordinal() const noexcept;
    void rebuild_index() noexcept;
    template <class IsRemoved>
    void take_out(IsRemoved is_removed);
    unsigned int position_of(unsigned int ordinal) const noexcept;

    CoreString name_;
    CoreVector<ParserEntry*> entries_;
    /// Positions of the entries that have no ordinal, ascending. All other positions are the entry index.
    ParserPositionList keyword_index_;
    union {
        ParserEntry* source_entry_ = nullptr;
        ParserGroup* next_doomed_; // once the group waits for its deletion
    };
};
