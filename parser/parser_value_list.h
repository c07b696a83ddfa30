#pragma once

#include "core/core_export.h"

#include <cstddef>

class ParserEntry;
namespace bk {
class StoredValue;
}

/// The values of one entry, in order. Used by ParserEntry alone.
/// As a rule the values are side by side in one block, followed by the spellings of those that were read from
/// text. In two cases each value gets a cell of its own instead, which counts the lists it is in, and the list holds the
/// cells: when two entries list the same values after a shallow assignment, and when a value must move while a host may hold a reference to
/// its string.
class ParserValueList {
public:
    ParserValueList() noexcept = default;
    ~ParserValueList();
    ParserValueList(const ParserValueList&) = delete;
    ParserValueList& operator=(const ParserValueList&) = delete;

    /// How many values there are.
    const unsigned int& get_count() const noexcept { return count_; }
    /// The value at a position from 0, which is not checked.
    const bk::StoredValue& operator[](unsigned int i) const noexcept { return at(i); }
    /// The value at a position, which the caller is about to change.
    bk::StoredValue& change(unsigned int i) noexcept;
    /// The first value, after which the others follow; null when there are none, or when each is in a cell of its own.
    const bk::StoredValue* side_by_side() const noexcept;
    /// Whether a value may be a group. Does not look at each value.
    bool may_hold_groups() const noexcept;

    /// Room for `count` values and `text_size` bytes of their spellings; the list is empty. The values are constructed
    /// in the room, in order, by whoever asked for it, and counted by set_count. As long as none of them keeps anything
    /// outside this room, `mark_self_contained` spares the list their destruction.
    void make_room(unsigned int count, std::size_t text_size);
    /// Uses a place of room_size bytes as that room. The list does not free it.
    void take_room(void* place, unsigned int count, std::size_t text_size) noexcept;
    /// How many bytes a block takes for that many values and their text.
    static std::size_t room_size(unsigned int count, std::size_t text_size);
    /// Where the values of the block go.
    bk::StoredValue* room() const noexcept;
    /// Where the spellings of these values go.
    char* text_room() const noexcept;
    /// Says how many values were made in the block.
    void set_count(unsigned int count) noexcept { count_ = count; }
    /// Says that no value keeps anything outside of the block.
    void mark_self_contained() noexcept;

    /// Takes over the content of `value`, which is left cleared. Amortised constant time.
    bk::StoredValue& append(bk::StoredValue& value);
    /// Moves a value to another position; those between shift by one.
    void move(unsigned int from, unsigned int to);
    /// Removes every value whose mark is set; `marks` has one byte a value. Linear.
    void remove_marked(const unsigned char* marks, const ParserEntry& owner);
    /// Deletes all but the first `count` values.
    void truncate(unsigned int count) noexcept;
    /// Removes every value.
    void clear() noexcept;
    /// Exchanges the values of both lists. The other list must not belong to an entry in pages. Constant time.
    void swap(ParserValueList& other) noexcept;
    /// Lists the same values as `other` instead of its own. This list must not belong to an entry in pages. When `other` does, its
    /// document gives up the pages.
    void share(ParserValueList& other);

    /// Notes that the host may hold references to the strings inside the values: these strings stay where they are from now on.
    void show_strings() const noexcept;
    /// Call it before the owner replaces these values with those of `next`, or with none when `next` is null. A group that other
    /// entries list too, and the owner no longer, then forgets that the owner is its source entry.
    void forget_source(ParserEntry& owner, const ParserValueList* next) noexcept;
    /// Whether nothing has to be done about the values when their entry dies, because everything is in its block.
    bool dies_with_entry() const noexcept;
    /// Whether values, or strings in the entry's block, may live longer than the entry.
    bool may_outlive_entry() const noexcept { return in_cells_ || left_entry_; }
    /// Notes that the entry of this list is in the pages of a document.
    void set_in_pages() noexcept { is_in_pages_ = 1; }
    /// Whether the entry of this list is in the pages of a document.
    bool is_in_pages() const noexcept { return is_in_pages_ != 0; }
    /// Notes that the entry is in its document's list of objects that own memory outside of the pages.
    void set_listed() noexcept { is_listed_ = 1; }
    /// Whether the entry is in its document's list of objects that own memory outside of the pages.
    bool is_listed() const noexcept { return is_listed_ != 0; }
    /// Puts the entry into that list. Call it before the entry owns memory outside of the pages.
    void list_entry() noexcept;
    /// Makes the document give up its pages. Call it before the entry gets a group that was made elsewhere, and before another entry
    /// gets one of its groups.
    void leave_document() noexcept;

    /// Call it on the list of a dying entry, after `clear`. Returns false when strings stay in the entry's block: the last of them
    /// frees the block.
    bool let_go_of_entry(ParserEntry& entry) const noexcept;

private:
    struct Block;
    struct Cell;

    class Departure;

    bk::StoredValue& at(unsigned int i) const noexcept;
    bool shows_string(unsigned int i) const noexcept;
    void grow();
    void split_into_cells();
    static void release_cell(Cell* cell) noexcept;

    Block* block_ = nullptr;
    unsigned int count_ = 0;
    bool in_cells_ = false;
    bool left_entry_ = false;                 // values have moved away from strings in the entry's block
    mutable unsigned char shows_strings_ = 0; // a host may hold references to strings inside values
    unsigned char is_in_pages_ : 1 = 0;
    unsigned char is_listed_ : 1 = 0;
};
