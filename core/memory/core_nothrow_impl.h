#pragma once

#include "core/core_memory.h"

#include <cstddef>
#include <new>

namespace bk {

/// For the nothrow forms of operator new. The operator delete that belongs to them learns no size, and can therefore give back
/// blocks of slabs alone: a larger object is refused.
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
