#include "parser/model/parser_value_list_impl.h"

#include "core/memory/core_assert_impl.h"
#include "parser/model/parser_value_impl.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <stdexcept>

ParserValue& ParserValueList::change(unsigned int i) noexcept {
    if (!in_cells_) {
        static_cast<Block*>(storage_)->is_plain = 0;
    }
    return at(i);
}

ParserValue& ParserValueList::append(ParserValue& value) {
    bk::ValueAccess::own_text(value);
    if (storage_ == nullptr || count_ == static_cast<Block*>(storage_)->capacity) {
        grow();
    }
    auto* const block = static_cast<Block*>(storage_);
    BK_ASSERT(count_ < block->capacity);
    block->is_plain = 0;
    if (in_cells_) {
        Cell* const cell = Cell::make();
        bk::ValueAccess::relocate(value, cell->storage);
        block->cells()[count_] = cell;
    } else {
        bk::ValueAccess::relocate(value, block->values() + count_);
    }
    bk::ValueAccess::forget(value);
    ++count_;
    return at(count_ - 1);
}

void ParserValueList::grow() {
    const std::uint64_t capacity = count_ == 0 ? 1 : std::uint64_t{count_} * 2;
    auto* const old_block = static_cast<Block*>(storage_);
    const std::size_t slot_size = in_cells_ ? sizeof(Cell*) : sizeof(ParserValue);
    Block* const block = Block::make(capacity, slot_size, old_block == nullptr ? 0 : old_block->text_size);
    if (old_block != nullptr && in_cells_) {
        std::copy_n(old_block->cells(), count_, block->cells());
    } else if (old_block != nullptr) {
        move_values(*old_block, *block);
    }
    Block::destroy(old_block, slot_size);
    storage_ = block;
}

/// The text area is moved as it stands, and the values follow it.
void ParserValueList::move_values(Block& from, Block& to) const noexcept {
    const std::size_t text_size = from.text_size;
    std::copy_n(from.text(), text_size, to.text());
    for (unsigned int i = 0; i < count_; ++i) {
        bk::ValueAccess::relocate(from.values()[i], to.values() + i);
        if (text_size != 0) {
            bk::ValueAccess::rebase_text(to.values()[i], from.text(), from.text() + text_size, to.text());
        }
    }
}

void ParserValueList::move(unsigned int from, unsigned int to) {
    BK_ASSERT(from < count_ && to < count_);
    const unsigned int step = from < to ? 1 : 0xFFFFFFFFu; // modulo 2^32: one up or one down
    if (in_cells_) {
        Cell** const cells = static_cast<Block*>(storage_)->cells();
        Cell* const moved = cells[from];
        for (unsigned int i = from; i != to; i += step) {
            cells[i] = cells[i + step];
        }
        cells[to] = moved;
        return;
    }
    ParserValue* const values = room();
    ParserValue moved(false);
    bk::ValueAccess::relocate(values[from], &moved);
    for (unsigned int i = from; i != to; i += step) {
        bk::ValueAccess::relocate(values[i + step], values + i);
    }
    bk::ValueAccess::relocate(moved, values + to);
    bk::ValueAccess::forget(moved);
}

void ParserValueList::remove_marked(const unsigned char* marks) {
    unsigned int kept = 0;
    for (unsigned int i = 0; i < count_; ++i) {
        if (in_cells_) {
            Cell** const cells = static_cast<Block*>(storage_)->cells();
            if (marks[i] != 0) {
                release_cell(cells[i]);
            } else {
                cells[kept++] = cells[i];
            }
        } else if (marks[i] != 0) {
            room()[i].ParserValue::~ParserValue();
        } else if (kept++ != i) {
            bk::ValueAccess::relocate(room()[i], room() + kept - 1);
        }
    }
    count_ = kept;
}

void ParserValueList::clear() noexcept {
    auto* const block = static_cast<Block*>(storage_);
    if (block == nullptr) {
        in_cells_ = false;
        return;
    }
    BK_ASSERT(count_ <= block->capacity);
    BK_ASSERT(!block->is_plain ||
              (!in_cells_ && bk::ValueAccess::keep_nothing_outside(block->values(), count_)));
    for (unsigned int i = 0; i < count_ && !block->is_plain; ++i) {
        if (in_cells_) {
            release_cell(block->cells()[i]);
        } else {
            block->values()[i].ParserValue::~ParserValue();
        }
    }
    Block::destroy(block, in_cells_ ? sizeof(Cell*) : sizeof(ParserValue));
    storage_ = nullptr;
    count_ = 0;
    in_cells_ = false;
}

void ParserValueList::swap(ParserValueList& other) noexcept {
    std::swap(storage_, other.storage_);
    std::swap(count_, other.count_);
    std::swap(in_cells_, other.in_cells_);
}

void ParserValueList::share(ParserValueList& other) {
    if (this == &other) {
        return;
    }
    other.split_into_cells();
    Block* const block = other.count_ == 0 ? nullptr : Block::make(other.count_, sizeof(Cell*), 0);
    for (unsigned int i = 0; i < other.count_; ++i) {
        Cell* const cell = static_cast<Block*>(other.storage_)->cells()[i];
        ++cell->list_count;
        block->cells()[i] = cell;
    }
    const unsigned int count = other.count_;
    clear();
    storage_ = block;
    count_ = count;
    in_cells_ = true;
}

void ParserValueList::split_into_cells() {
    if (in_cells_) {
        return;
    }
    auto* const old_block = static_cast<Block*>(storage_);
    Block* const block = count_ == 0 ? nullptr : Block::make(count_, sizeof(Cell*), 0);
    unsigned int made = 0;
    try {
        for (; made < count_; ++made) {
            old_block->is_plain = 0; // a text of its own is kept outside the block
            bk::ValueAccess::own_text(old_block->values()[made]);
            block->cells()[made] = Cell::make();
        }
    } catch (...) {
        while (made != 0) {
            CoreMemory::release(block->cells()[--made], sizeof(Cell));
        }
        Block::destroy(block, sizeof(Cell*));
        throw;
    }
    for (unsigned int i = 0; i < count_; ++i) {
        bk::ValueAccess::relocate(old_block->values()[i], block->cells()[i]->storage);
    }
    Block::destroy(old_block, sizeof(ParserValue));
    storage_ = block;
    in_cells_ = true;
}

void ParserValueList::release_cell(Cell* cell) noexcept {
    BK_ASSERT(cell->list_count != 0);
    if (--cell->list_count == 0) {
        cell->value().ParserValue::~ParserValue();
        CoreMemory::release(cell, sizeof(Cell));
    }
}
