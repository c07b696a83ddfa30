#include "core/core_memory.h"

#include "core/core_slab_impl.h"

#include <algorithm>
#include <limits>
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

/// From this size on a block has chunks of its own: filling fresh memory is several times as fast in huge pages.
constexpr std::size_t smallest_chunked_block = 2 * bk::chunk_size;

std::size_t whole_chunks(std::size_t size) noexcept {
    return (size + bk::chunk_size - 1) / bk::chunk_size * bk::chunk_size;
}

void* allocate_large(std::size_t size) {
    if (size < smallest_chunked_block || size > std::numeric_limits<std::size_t>::max() / 2) {
        return ::operator new(size);
    }
    void* const block = bk::take_chunks(whole_chunks(size));
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void release_large(void* block, std::size_t size) noexcept {
    if (size < smallest_chunked_block) {
        ::operator delete(block);
    } else {
        bk::give_chunks_back(block, whole_chunks(size));
    }
}

} // namespace

void* CoreMemory::allocate(std::size_t size) {
    if (size > largest_slab_block) {
        return allocate_large(size);
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
        release_large(block, size);
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
