#include "core/core_memory.h"

#include "core/core_slab_impl.h"

#include <algorithm>
#include <new>

#if defined(BK_PARSER_NO_SLABS)

void* CoreMemory::allocate(std::size_t size) {
    return ::operator new(size);
}

void CoreMemory::release(void* block, std::size_t) noexcept {
    ::operator delete(block);
}

#else

namespace {

static_assert(CoreMemory::largest_slab_block == bk::slab_largest_block);

std::size_t size_class_of(std::size_t size) noexcept {
    return (std::max<std::size_t>(size, 1) - 1) / bk::slab_granularity;
}

} // namespace

void* CoreMemory::allocate(std::size_t size) {
    if (size > largest_slab_block) {
        return ::operator new(size);
    }
    bk::SlabHeap* const heap = bk::SlabHeap::of_this_thread();
    void* const block = heap == nullptr ? nullptr : heap->allocate(size_class_of(size));
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void CoreMemory::release(void* block, std::size_t size) noexcept {
    if (block == nullptr) {
        return;
    }
    if (size > largest_slab_block) {
        ::operator delete(block);
        return;
    }
    bk::SlabPage* const page = bk::SlabPage::of(block);
    if (page->heap == bk::SlabHeap::of_this_thread_if_any()) {
        page->heap->release(page, block);
    } else {
        page->heap->release_from_afar(block);
    }
}

#endif
