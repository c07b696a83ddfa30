#include "parser/parser_position_list.h"

#include "core/core_memory.h"

#include <algorithm>
#include <new>
#include <utility>

namespace {

constexpr unsigned int most_positions = 0x3FFFFFFFu; // two bits of the count are the group's marks

std::size_t block_size(std::size_t capacity) noexcept {
    return sizeof(core_uint64) + capacity * sizeof(unsigned int);
}

} // namespace

ParserPositionList& ParserPositionList::operator=(const ParserPositionList& other) {
    if (this != &other) {
        ParserPositionList copy;
        copy.reserve(other.count_);
        std::copy_n(other.positions_, other.count_, copy.positions_);
        copy.count_ = other.count_;
        swap(copy);
    }
    return *this;
}

void ParserPositionList::add(unsigned int position) {
    make_room();
    positions_[count_++] = position;
}

void ParserPositionList::make_room() {
    if (count_ == capacity_) {
        grow_to(std::max(core_uint64{capacity_} * 2, core_uint64{1}));
    }
}

void ParserPositionList::reserve(unsigned int capacity) {
    if (capacity > capacity_) {
        grow_to(capacity);
    }
}

void ParserPositionList::grow_to(core_uint64 capacity) {
    if (capacity > most_positions) {
        CoreMemory::refuse_count();
    }
    const std::size_t grown = block_size(static_cast<std::size_t>(capacity));
    void* block = nullptr;
    if (positions_ == nullptr) {
        block = ::new (CoreMemory::allocate(grown)) Head{0};
    } else {
        block = CoreMemory::grow(head(), block_size(capacity_), block_size(count_), grown);
    }
    positions_ = reinterpret_cast<unsigned int*>(static_cast<Head*>(block) + 1);
    capacity_ = static_cast<unsigned int>(capacity) & most_positions;
}

void ParserPositionList::clear() noexcept {
    if (positions_ != nullptr) {
        CoreMemory::release(head(), block_size(capacity_));
    }
    positions_ = nullptr;
    count_ = 0;
    capacity_ = 0;
}

bool ParserPositionList::close_gap(unsigned int position) noexcept {
    unsigned int* const end = positions_ + count_;
    unsigned int* const place = std::lower_bound(positions_, end, position);
    const bool is_there = place != end && *place == position;
    for (unsigned int* moved = place + (is_there ? 1 : 0); moved != end; ++moved) {
        moved[is_there ? -1 : 0] = *moved - 1;
    }
    count_ -= is_there ? 1 : 0;
    return is_there;
}

void ParserPositionList::open_gap(unsigned int position, bool is_listed) noexcept {
    unsigned int* const end = positions_ + count_;
    unsigned int* const place = std::lower_bound(positions_, end, position);
    for (unsigned int* moved = end; moved != place; --moved) {
        moved[is_listed ? 0 : -1] = moved[-1] + 1;
    }
    if (is_listed) {
        *place = position;
        ++count_;
    }
}

void ParserPositionList::swap(ParserPositionList& other) noexcept {
    std::swap(positions_, other.positions_);
    std::swap(count_, other.count_);
    const unsigned int capacity = capacity_;
    capacity_ = other.capacity_;
    other.capacity_ = capacity & most_positions;
}
