#include "parser/parser_position_list.h"

#include "core/core_memory.h"

#include <algorithm>
#include <utility>

namespace {

constexpr unsigned int limit = 0x3FFFFFFFu; // two bits of the count are the group's marks

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
    if (capacity > limit) {
        CoreMemory::refuse_count();
    }
    constexpr std::size_t size = sizeof(unsigned int);
    positions_ = static_cast<unsigned int*>(CoreMemory::grow(positions_, capacity_ * size, count_ * size,
                                                             static_cast<std::size_t>(capacity) * size));
    capacity_ = static_cast<unsigned int>(capacity) & limit;
}

void ParserPositionList::clear() noexcept {
    CoreMemory::release(positions_, capacity_ * sizeof(unsigned int));
    positions_ = nullptr;
    count_ = 0;
    capacity_ = 0;
}

void ParserPositionList::swap(ParserPositionList& other) noexcept {
    std::swap(positions_, other.positions_);
    std::swap(count_, other.count_);
    const unsigned int capacity = capacity_;
    capacity_ = other.capacity_;
    other.capacity_ = capacity & limit;
    may_list_document_ |= other.may_list_document_;
    other.may_list_document_ = may_list_document_;
}
