#pragma once

#include "core/memory/core_chunk_impl.h"
#include "core/memory/core_thread_impl.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>

/// Slabs: small blocks of one size side by side in pages, in the manner of Bonwick, "The Slab Allocator" (USENIX
/// Summer 1994), with a heap a thread as in Leijen, Zorn and de Moura, "Mimalloc: Free List Sharding in Action" (2019).
///
/// A chunk of 2 MiB is cut into pages of 64 KiB. A page holds blocks of one size class, and its head is
/// found by masking the address of any of them. A page belongs to the heap of one thread, which alone takes blocks
/// from it; another thread gives a block back through a list of the heap's, which the owner empties now and then.
namespace bk {

inline constexpr std::size_t slab_page_size = std::size_t{64} << 10;
inline constexpr std::size_t slab_granularity = 16;
inline constexpr std::size_t slab_page_room =
    slab_page_size - 256; // what a page's head leaves, the first one's too

/// Small blocks have a class for each multiple of the granularity. From there on, there is a class for each number of
/// equal blocks that fill a page.
inline constexpr std::size_t slab_largest_small_block = 1024;
inline constexpr std::size_t slab_small_class_count = slab_largest_small_block / slab_granularity;
inline constexpr std::size_t slab_most_blocks =
    slab_page_room / (slab_largest_small_block + slab_granularity);
inline constexpr std::size_t slab_fewest_blocks = 4;
inline constexpr std::size_t slab_largest_block = slab_page_room / slab_fewest_blocks;
inline constexpr std::size_t slab_class_count =
    slab_small_class_count + slab_most_blocks - slab_fewest_blocks + 1;

constexpr std::size_t slab_rounded(std::size_t size) noexcept {
    return (size + slab_granularity - 1) / slab_granularity * slab_granularity;
}

constexpr std::size_t slab_class_of(std::size_t size) noexcept {
    if (size <= slab_largest_small_block) {
        return size == 0 ? 0 : (size - 1) / slab_granularity;
    }
    return slab_small_class_count + slab_most_blocks - slab_page_room / slab_rounded(size);
}

constexpr std::size_t slab_block_size(std::size_t size_class) noexcept {
    if (size_class < slab_small_class_count) {
        return (size_class + 1) * slab_granularity;
    }
    const std::size_t block_count = slab_most_blocks - (size_class - slab_small_class_count);
    return slab_page_room / block_count / slab_granularity * slab_granularity;
}

class SlabHeap;

/// A block that is free, as a link of a list.
struct FreeBlock {
    FreeBlock* next;
};

/// The head of a page. Blocks that were never taken lie between `fresh` and `end`.
struct SlabPage {
    SlabHeap* heap;
    FreeBlock* free_blocks;
    char* fresh;
    char* end;
    std::uint32_t block_size;
    std::uint32_t size_class;
    std::uint32_t live_count;
    bool
        is_in_use; // blocks are taken from it, or may be: it is current, or listed with the pages that have room
    SlabPage* next; // of the pages of its class that have room
    SlabPage* previous;

    static SlabPage* of(void* block) noexcept {
        return reinterpret_cast<SlabPage*>(reinterpret_cast<std::uintptr_t>(block) & ~(slab_page_size - 1));
    }
};

/// What a chunk knows of its pages. It stands in the first page, behind that page's own head.
struct SlabChunk {
    std::uint32_t used_pages; // a bit a page
    SlabChunk* next;          // of the heap's chunks that have room for pages
    SlabChunk* previous;

    static SlabChunk* of(SlabPage* page) noexcept;
    SlabPage* page(unsigned int i) noexcept;
};

/// The pages of one thread.
class SlabHeap {
public:
    /// Null when there is no memory.
    void* allocate(std::size_t size_class) noexcept {
        SlabPage* const page = current_[size_class];
        if (page != nullptr) {
            if (FreeBlock* const block = page->free_blocks) {
                page->free_blocks = block->next;
                ++page->live_count;
                return block;
            }
            if (page->fresh != page->end) {
                char* const block = page->fresh;
                page->fresh += page->block_size;
                ++page->live_count;
                return block;
            }
        }
        return allocate_elsewhere(size_class);
    }

    /// By the thread that the heap belongs to.
    void release(SlabPage* page, void* block) noexcept {
        page->free_blocks = new (block) FreeBlock{page->free_blocks};
        if (--page->live_count == 0 || !page->is_in_use) {
            settle(page);
        }
    }

    /// By any other thread.
    void release_from_afar(SlabPage* page, void* block) noexcept;

    /// The heap of this thread; null when there is no memory for one.
    static SlabHeap* of_this_thread() noexcept {
        SlabHeap* const heap = this_threads_heap;
        return heap != nullptr ? heap : adopt();
    }
    /// Null when this thread has taken no block yet, or is at its end.
    static SlabHeap* of_this_thread_if_any() noexcept { return this_threads_heap; }

private:
    struct Owner;

    static SlabHeap* adopt() noexcept;
    bool try_to_own() noexcept;
    void* allocate_elsewhere(std::size_t size_class) noexcept;
    void take_back_from_afar() noexcept;
    bool change_page(std::size_t size_class) noexcept;
    SlabPage* take_page(std::size_t size_class) noexcept;
    void give_page_back(SlabPage* page) noexcept;
    void settle(SlabPage* page) noexcept;
    SlabChunk* add_chunk() noexcept;

    static constinit thread_local SlabHeap* this_threads_heap BK_TLS_MODEL;

    SlabPage* current_[slab_class_count] = {};   // the page that blocks are taken from
    SlabPage* with_room_[slab_class_count] = {}; // other pages that have room
    SlabChunk* chunks_with_room_ = nullptr;
    SlabChunk* spare_chunk_ = nullptr; // one that is empty is kept
    std::atomic<FreeBlock*> from_afar_{nullptr};
    std::atomic<std::uint32_t> from_afar_size_{0}; // of all blocks that ever came, in bytes
    std::atomic<bool> is_owned_{true};
    SlabHeap* next_heap_ = nullptr;
};

} // namespace bk
