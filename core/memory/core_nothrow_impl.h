#pragma once

#include "core/core_memory.h"

#include <cstddef>
#include <new>

namespace bk {

/// For the nothrow forms of operator new. Their operator delete gets no size, so it can free only blocks of slabs. So a request for
/// a larger object returns null.
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
