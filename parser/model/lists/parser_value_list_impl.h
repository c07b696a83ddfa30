#pragma once

#include "core/core_memory.h"
#include "core/memory/core_assert_impl.h"
#include "core/memory/core_count_impl.h"
#include "parser/model/parser_value_impl.h"
#include "parser/parser_value_list.h"

#include <atomic>
#include <cstdint>
#include <new>

/// The block that holds the values: this head, then room for `capacity` values, then the text area. After a split into cells it is the head
/// and room for `capacity` pointers. The block of a parsed entry follows the entry in memory. When values have left strings in a block, a pointer
/// to their StringHome takes the place of its head.
struct ParserValueList::Block {
    static constexpr std::uint64_t max_capacity = (std::uint64_t{1} << 30) - 1;
    static constexpr std::uint64_t max_text_size = (std::uint64_t{1} << 32) - 1;

    std::uint64_t capacity : 30;
    std::uint64_t text_size : 32;
    std::uint64_t is_self_contained : 1; // no value owns memory outside this block
    std::uint64_t is_embedded : 1;       // a part of the entry's own block, which is freed with the entry

    bk::StoredValue* values() noexcept { return reinterpret_cast<bk::StoredValue*>(this + 1); }
    Cell** cells() noexcept { return reinterpret_cast<Cell**>(this + 1); }
    char* text() noexcept { return reinterpret_cast<char*>(values() + capacity); }

    static std::size_t byte_size(std::uint64_t capacity, std::size_t slot_size, std::uint64_t text_size) {
        if (capacity > max_capacity || text_size > max_text_size) {
            throw bk::CountRefused("ParserEntry: too many values");
        }
        return sizeof(Block) + capacity * slot_size + text_size;
    }
    static Block* make(std::uint64_t capacity, std::size_t slot_size, std::uint64_t text_size) {
        void* const place = CoreMemory::allocate(byte_size(capacity, slot_size, text_size));
        return new (place) Block{capacity & max_capacity, text_size & max_text_size, 0, 0};
    }
    std::size_t byte_size(std::size_t slot_size) const noexcept {
        return sizeof(Block) + capacity * slot_size + text_size;
    }
    static void destroy(Block* block, std::size_t slot_size) noexcept {
        if (block != nullptr && !block->is_embedded) {
            CoreMemory::release(block, block->byte_size(slot_size));
        }
    }
};

static_assert(bk::StoredValue::block_head_size == 8);

/// A value that several lists may hold.
struct ParserValueList::Cell {
    unsigned int list_count;
    bool has_lost_source;
    alignas(bk::StoredValue) unsigned char storage[sizeof(bk::StoredValue)];

    bk::StoredValue& value() noexcept { return *std::launder(reinterpret_cast<bk::StoredValue*>(storage)); }
    /// For a group that other lists hold as well: when `owner` is its source entry, clears that and returns true.
    bool forget_source(const ParserEntry& owner) noexcept;
    static Cell* make() { return new (CoreMemory::allocate(sizeof(Cell))) Cell{1, false, {}}; }
};

inline bk::StoredValue& ParserValueList::at(unsigned int i) const noexcept {
    BK_ASSERT(i < count_);
    return in_cells_ ? block_->cells()[i]->value() : block_->values()[i];
}

inline const bk::StoredValue* ParserValueList::side_by_side() const noexcept {
    return count_ == 0 || in_cells_ ? nullptr : block_->values();
}

inline bool ParserValueList::dies_with_entry() const noexcept {
    return block_ != nullptr && block_->is_self_contained && block_->is_embedded;
}

inline ParserValueList::~ParserValueList() {
    if (block_ != nullptr && !dies_with_entry()) {
        clear();
    }
}

inline bool ParserValueList::may_hold_groups() const noexcept {
    return count_ != 0 && !block_->is_self_contained;
}

inline void ParserValueList::make_room(unsigned int count, std::size_t text_size) {
    block_ = Block::make(count, sizeof(bk::StoredValue), text_size);
}

inline std::size_t ParserValueList::room_size(unsigned int count, std::size_t text_size) {
    return Block::byte_size(count, sizeof(bk::StoredValue), text_size);
}

inline void ParserValueList::take_room(void* place, unsigned int count, std::size_t text_size) noexcept {
    block_ = new (place) Block{count & Block::max_capacity, text_size & Block::max_text_size, 0, 1};
}

inline bk::StoredValue* ParserValueList::room() const noexcept {
    return block_->values();
}

inline char* ParserValueList::text_room() const noexcept {
    return block_->text();
}

inline void ParserValueList::mark_self_contained() noexcept {
    block_->is_self_contained = 1;
}

/// Several threads may read one tree.
inline void ParserValueList::show_strings() const noexcept {
    const std::atomic_ref<unsigned char> shown(shows_strings_);
    if (shown.load(std::memory_order_relaxed) == 0) {
        shown.store(1, std::memory_order_relaxed);
    }
}
