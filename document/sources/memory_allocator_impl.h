#pragma once

#include "core/core_memory.h"

#include <cstddef>

namespace bk_parser {

/// Lets a container of the standard library take its memory from CoreMemory.
template <class T>
struct MemoryAllocator {
    using value_type = T;

    MemoryAllocator() noexcept = default;
    template <class Other>
    MemoryAllocator(const MemoryAllocator<Other>& /*other*/) noexcept {} // implicit, as in std::allocator

    T* allocate(std::size_t count) { return static_cast<T*>(CoreMemory::allocate(count * sizeof(T))); }
    void deallocate(T* block, std::size_t count) noexcept { CoreMemory::release(block, count * sizeof(T)); }

    friend bool operator==(const MemoryAllocator&, const MemoryAllocator&) noexcept { return true; }
};

} // namespace bk_parser
