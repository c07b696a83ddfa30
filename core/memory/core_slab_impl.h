#pragma once

#include "core/memory/core_slab_page_impl.h"
#include "core/memory/system/core_thread_impl.h"

#include <atomic>
#include <cstddef>

/// Slabs: pages of small blocks of one size, in the manner of Bonwick, "The Slab Allocator" (USENIX Summer 1994), with a heap
/// per thread as in Leijen, Zorn and de Moura, "Mimalloc: Free List Sharding in Action" (2019).
///
/// A chunk of 2 MiB is cut into pages of 64 KiB. A page holds blocks of one size class. Masking the address of a block gives the head of
/// its page. A page with free blocks belongs to the heap of one thread, and only that thread allocates from it. A page that is full
/// belongs to nobody until a thread frees one of its blocks; then it belongs to that thread. So the thread that destroys a document
/// gets the pages, whichever thread read it. A thread that frees a block of another thread's page puts it into a list of that thread's
/// heap, which its owner empties now and then.
///
/// A run holds what is read from a small document: blocks of any size, in the order of the document. A host visits and destroys them in the
/// same order. The pages of a run change their owners as other pages do. The memory of a block that was freed is not used again before the
/// whole page is empty.
///
/// A heap keeps one page of each class that it allocates from, and `most_pages_with_room` others. It gives all further pages to the pool,
/// from which any thread may take them. When a thread ends, the pool gets all of its pages.
namespace bk {

/// The pages of one thread.
class SlabHeap : public SlabOwner {
public:
    /// Returns null when there is no memory.
    void* allocate(std::size_t size_class) noexcept {
        SlabPage* const page = current_[size_class];
        return page != nullptr && page->has_room() ? page->take_block() : allocate_elsewhere(size_class);
    }
    /// Allocates a block of a run. It follows the previous block of this thread's run as long as it fits the page. Returns null when there
    /// is no memory. `size` is a multiple of the granularity.
    void* take_next(std::size_t size) noexcept {
        SlabPage* const page = current_[slab_run_class];
        void* const block = page != nullptr ? page->take_next(size) : nullptr;
        return block != nullptr ? block : take_next_elsewhere(size);
    }
    /// Allocates the first block of this thread, or one at its end, when it has given up its heap. Returns null when there is no memory.
    static void* allocate_without_heap(std::size_t size_class) noexcept;

    /// Frees a block of a page of this heap. Only the heap's own thread calls it.
    void release(SlabPage* page, void* block) noexcept {
        BK_ASSERT(page->is_owned_by(this));
        if (page->put_block(block)) {
            retire(page);
        }
    }

    /// Frees a block of a page that does not belong to this thread.
    static void release_from_afar(SlabPage* page, void* block) noexcept;

    /// The heap of this thread. Null when the thread has allocated nothing yet, or is at its end.
    static SlabHeap* of_this_thread() noexcept { return ThreadHeap::get(); }

    /// Gives every page away, when the heap's thread ends. Blocks that other threads sent before `is_owned_` became false are freed here.
    /// A thread that sends a block later sees that it is false.
    void leave() noexcept;

private:
    /// A thread that waits can keep this much from the others: 16 MiB of pages that have free blocks.
    static constexpr unsigned int most_pages_with_room = 256;

    static SlabHeap* adopt() noexcept;
    bool try_to_own() noexcept;
    void* allocate_elsewhere(std::size_t size_class) noexcept;
    void* take_next_elsewhere(std::size_t size) noexcept;
    bool change_page(std::size_t size_class) noexcept;
    bool claim(SlabPage* page) noexcept;
    void add_with_room(SlabPage* page) noexcept;
    void give_up(SlabPage* page) noexcept;
    void remove_with_room(SlabPage* page) noexcept;
    void retire(SlabPage* page) noexcept;
    static void release_elsewhere(SlabHeap* mine, SlabPage* page, void* block) noexcept;
    void receive(SlabHeap* sender, SlabPage* page, void* block) noexcept;
    void take_back_from_afar(SlabHeap* mine) noexcept;

    SlabPage* current_[slab_class_count] = {};   // the page to allocate from
    SlabPageList with_room_[slab_class_count];   // other pages that have free blocks, and full ones of runs
    unsigned int with_room_count_ = 0;           // of all classes
    std::atomic<FreeBlock*> from_afar_{nullptr}; // blocks that other threads freed
    std::atomic<bool> is_owned_{true};
    SlabHeap* next_heap_ = nullptr;
};

} // namespace bk
