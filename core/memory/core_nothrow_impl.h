#pragma once

#include "core/core_memory.h"

#include <cstddef>
#include <new>

namespace bk {

/// Allocates for the nothrow forms of operator new. Returns null for an object that is too large for slabs: the matching operator delete
/// gets no size, and can free only blocks of slabs.
inline void* allocate_or_null(std::size_t size) noexcept {
    if (size > CoreMemory::largest_slab_block) {
        return nullptr;
    }
    try {
        return CoreMemory::allocate(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace bk
