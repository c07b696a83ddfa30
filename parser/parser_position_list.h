#pragma once

#include "core/core_string.h"

/// Positions of entries, ascending, and two marks of the group that has them. Used by ParserGroup alone.
class ParserPositionList {
public:
    ParserPositionList() noexcept = default;
    ~ParserPositionList() { clear(); }
    ParserPositionList(const ParserPositionList&) = delete;
    /// Becomes a copy of the positions.
    ParserPositionList& operator=(const ParserPositionList& other);

    /// How many positions there are.
    const unsigned int& get_count() const noexcept { return count_; }
    /// How many there is room for without growing.
    unsigned int get_capacity() const noexcept { return capacity_; }
    /// The position at an index from 0, which is not checked.
    unsigned int operator[](unsigned int i) const noexcept { return positions_[i]; }

    /// For loops over the positions.
    const unsigned int* begin() const noexcept { return positions_; }
    /// For loops over the positions.
    const unsigned int* end() const noexcept { return positions_ + count_; }

    /// Adds one at the end. Amortised constant time.
    void add(unsigned int position);
    /// Makes room for one more.
    void make_room();
    /// Makes room for exactly `capacity` in all, when there is less.
    void reserve(unsigned int capacity);
    /// Keeps the first `count`, and the storage.
    void truncate(unsigned int count) noexcept { count_ = count; }
    /// Removes all and frees the storage.
    void clear() noexcept;
    /// Exchanges the positions. Each keeps its mark of standing in pages; both list a document when one did. Constant time.
    void swap(ParserPositionList& other) noexcept;

    /// Whether the group stands in the pages of a document.
    bool is_in_pages() const noexcept { return is_in_pages_ != 0; }
    /// Says that it does.
    void set_in_pages() noexcept { is_in_pages_ = 1; }
    /// Whether the group may list the outermost entries of a document with pages.
    bool may_list_document() const noexcept { return may_list_document_ != 0; }
    /// Says that it does.
    void set_lists_document() noexcept { may_list_document_ = 1; }

private:
    void grow_to(core_uint64 capacity);

    unsigned int* positions_ = nullptr;
    unsigned int count_ = 0;
    unsigned int capacity_ : 30 = 0;
    unsigned int is_in_pages_ : 1 = 0;
    unsigned int may_list_document_ : 1 = 0;
};
