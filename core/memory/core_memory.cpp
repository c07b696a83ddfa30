#include "core/core_memory.h"

#include "core/memory/core_slab_impl.h"
#include "core/memory/core_slab_pool_impl.h"
#include "core/memory/runs/core_run_impl.h"
#include "core/memory/system/core_chunk_impl.h"

#include <cstring>
#include <limits>
#include <new>

namespace {

void* move_to_larger(void* block, std::size_t size, std::size_t kept, std::size_t grown) {
    void* const larger = CoreMemory::allocate(grown);
    if (kept != 0) {
        std::memcpy(larger, block, kept);
    }
    CoreMemory::release(block, size);
    return larger;
}

} // namespace

#if defined(BK_PARSER_NO_SLABS)

void* CoreMemory::allocate(std::size_t size) {
    return ::operator new(size);
}

void* bk::allocate_in_order(std::size_t size) {
    return CoreMemory::allocate(size);
}

bk::SlabPage* bk::take_document_page() noexcept {
    return nullptr;
}

void bk::give_document_pages_back(SlabPage*) noexcept {}

void* CoreMemory::grow(void* block, std::size_t size, std::size_t kept, std::size_t grown) {
    return move_to_larger(block, size, kept, grown);
}

void CoreMemory::release(void* block, std::size_t) noexcept {
    ::operator delete(block);
}

#else

namespace {

static_assert(CoreMemory::largest_slab_block == bk::slab_largest_block);

/// A block of at least this size gets chunks of its own, because filling fresh memory is several times as fast in huge pages.
constexpr std::size_t smallest_chunked_block = 2 * bk::chunk_size;

std::size_t whole_chunks(std::size_t size) noexcept {
    return (size + bk::chunk_size - 1) / bk::chunk_size * bk::chunk_size;
}

bool has_chunks(std::size_t size) noexcept {
    return size >= smallest_chunked_block && size <= std::numeric_limits<std::size_t>::max() / 2;
}

void* allocate_large(std::size_t size) {
    if (!has_chunks(size)) {
        return ::operator new(size);
    }
    void* const block = bk::take_chunks(whole_chunks(size));
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void release_large(void* block, std::size_t size) noexcept {
    if (!has_chunks(size)) {
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
    const std::size_t size_class = bk::slab_class_of(size);
    void* const block =
        heap != nullptr ? heap->allocate(size_class) : bk::SlabHeap::allocate_without_heap(size_class);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    bk::unpoison(block, size);
    return block;
}

void* bk::allocate_in_order(std::size_t size) {
    SlabHeap* const heap = SlabHeap::of_this_thread();
    if (heap == nullptr || size > slab_largest_small_block) {
        return CoreMemory::allocate(size);
    }
    void* const block = heap->take_next(slab_rounded(size, run_granularity));
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    unpoison(block, size);
    return block;
}

bk::SlabPage* bk::take_document_page() noexcept {
    return slab_pool.take_document_page();
}

void bk::give_document_pages_back(SlabPage* first) noexcept {
    slab_pool.give_document_pages_back(first);
}

void* CoreMemory::grow(void* block, std::size_t size, std::size_t kept, std::size_t grown) {
    if (has_chunks(size) && has_chunks(grown)) {
        const std::size_t old_room = whole_chunks(size);
        const std::size_t room = whole_chunks(grown);
        if (room == old_room) {
            return block;
        }
        if (void* larger = bk::grow_chunks(block, old_room, room)) {
            return larger;
        }
    }
    return move_to_larger(block, size, kept, grown);
}

void CoreMemory::release(void* block, std::size_t size) noexcept {
    if (block == nullptr) {
        return;
    }
    if (size > largest_slab_block) {
        release_large(block, size);
        return;
    }
    BK_ASSERT(size == 0 || !bk::is_poisoned(block)); // otherwise it is freed twice
    bk::SlabPage* const page = bk::SlabPage::of(block);
    bk::SlabHeap* const heap = bk::SlabHeap::of_this_thread();
    if (page->is_owned_by(heap)) {
        heap->release(page, block);
    } else {
        bk::SlabHeap::release_from_afar(page, block);
    }
}

#endif
