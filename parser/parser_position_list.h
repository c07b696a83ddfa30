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
    /// Removes a position, if it is in the list, and lowers those after it by one. Returns whether it was in the list. Linear in those after it.
    bool close_gap(unsigned int position) noexcept;
    /// Raises the positions from this one on by one, and adds it when `is_listed`. There must be room for it. Linear in the positions that
    /// are raised.
    void open_gap(unsigned int position, bool is_listed) noexcept;

    /// The era that set_era noted last; 0 when it has not been called since the storage was allocated.
    core_uint64 get_era() const noexcept { return positions_ == nullptr ? 0 : head()->era; }
    /// Notes the era in which the positions were last rebuilt. Does nothing for a list without storage.
    void set_era(core_uint64 era) noexcept {
        if (positions_ != nullptr) {
            head()->era = era;
        }
    }

    /// Exchanges the positions, but not the marks. Constant time.
    void swap(ParserPositionList& other) noexcept;

    /// Whether the group is in the pages of a document.
    bool is_in_pages() const noexcept { return is_in_pages_ != 0; }
    /// Notes that the group is in the pages of a document.
    void set_in_pages() noexcept { is_in_pages_ = 1; }
    /// Whether the group may list the outermost entries of a document with pages.
    bool may_list_document() const noexcept { return may_list_document_ != 0; }
    /// Notes that the group may list the outermost entries of a document with pages.
    void set_lists_document() noexcept { may_list_document_ = 1; }

private:
    /// Stands before the positions in their block.
    struct Head {
        core_uint64 era;
    };

    Head* head() const noexcept { return reinterpret_cast<Head*>(positions_) - 1; }
    void grow_to(core_uint64 capacity);

    unsigned int* positions_ = nullptr;
    unsigned int count_ = 0;
    unsigned int capacity_ : 30 = 0;
    unsigned int is_in_pages_ : 1 = 0;
    unsigned int may_list_document_ : 1 = 0;
};
