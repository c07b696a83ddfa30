#pragma once

#include "core/memory/core_slab_page_impl.h"
#include "core/memory/core_thread_impl.h"

#include <atomic>
#include <cstddef>

/// Slabs: small blocks of one size side by side in pages, in the manner of Bonwick, "The Slab Allocator" (USENIX
/// Summer 1994), with a heap a thread as in Leijen, Zorn and de Moura, "Mimalloc: Free List Sharding in Action" (2019).
///
/// A chunk of 2 MiB is cut into pages of 64 KiB. A page holds blocks of one size class, and its head is
/// found by masking the address of any of them. A page with room belongs to the heap of one thread, which alone takes
/// blocks from it. A page that has become full belongs to nobody, and then to the first thread that gives a block of it
/// back: so the thread that destroys a document has the pages, whichever thread read it. A block of a page that is another
/// thread's goes through a list of that thread's heap, which its owner empties now and then.
///
/// A run is what a document is read into: blocks of any size, one behind the other in the order of the document, which is
/// the order in which it is visited and destroyed. Its pages go from thread to thread as those of slabs do, but what is given
/// back there is not taken again before its page is empty.
///
/// A heap holds few pages on to: one of each class that it takes blocks from, and `most_pages_with_room` others. What
/// is beyond goes to the pool, whose pages any thread takes, and so does everything when a thread ends.
namespace bk {

/// The pages of one thread.
class SlabHeap : public SlabOwner {
public:
    /// Null when there is no memory.
    void* allocate(std::size_t size_class) noexcept {
        SlabPage* const page = current_[size_class];
        return page != nullptr && page->has_room() ? page->take_block() : allocate_elsewhere(size_class);
    }
    /// A block of a run: behind the one that this thread took last as this, as long as it fits the page. Null when there is no
    /// memory. `size` is a multiple of the granularity.
    void* take_next(std::size_t size) noexcept {
        SlabPage* const page = current_[slab_run_class];
        void* const block = page != nullptr ? page->take_next(size) : nullptr;
        return block != nullptr ? block : take_next_elsewhere(size);
    }
    /// The first block of this thread, or one at its end, when it has given its heap up; null when there is no memory.
    static void* allocate_without_heap(std::size_t size_class) noexcept;

    /// By the thread that the heap belongs to, of a page that does, too.
    void release(SlabPage* page, void* block) noexcept {
        BK_ASSERT(page->is_owned_by(this));
        if (page->put_block(block)) {
            retire(page);
        }
    }

    /// Of a page that is not this thread's.
    static void release_from_afar(SlabPage* page, void* block) noexcept;

    /// Null when this thread has taken no block yet, or is at its end.
    static SlabHeap* of_this_thread() noexcept { return this_threads_heap; }

private:
    struct Owner;

    /// 16 MiB of pages that have room: what a thread that waits can keep from the others.
    static constexpr unsigned int most_pages_with_room = 256;

    static SlabHeap* adopt() noexcept;
    bool try_to_own() noexcept;
    void leave() noexcept;
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

    static constinit thread_local SlabHeap* this_threads_heap BK_TLS_MODEL;

    SlabPage* current_[slab_class_count] = {};   // the page that blocks are taken from
    SlabPageList with_room_[slab_class_count];   // other pages that have room, and full ones of runs
    unsigned int with_room_count_ = 0;           // of all classes
    std::atomic<FreeBlock*> from_afar_{nullptr}; // what other threads gave back
    std::atomic<bool> is_owned_{true};
    SlabHeap* next_heap_ = nullptr;
};

} // namespace bk
