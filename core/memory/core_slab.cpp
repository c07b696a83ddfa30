#include "core/memory/core_slab_impl.h"

#include "core/memory/core_slab_pool_impl.h"

#include <utility>

namespace bk {

namespace {

/// All heaps that were ever created. A new thread takes the heap of one that has ended.
std::atomic<SlabHeap*> all_heaps{nullptr};

} // namespace

/// Gives this thread a heap. Returns null when there is no memory for one, or the thread is at its end.
SlabHeap* SlabHeap::adopt() noexcept {
    if (!ThreadHeap::may_have_one()) {
        return nullptr;
    }
    SlabHeap* heap = all_heaps.load(std::memory_order_acquire);
    while (heap != nullptr && !heap->try_to_own()) {
        heap = heap->next_heap_;
    }
    if (heap == nullptr) {
        heap = new (std::nothrow) SlabHeap;
        if (heap == nullptr) {
            return nullptr;
        }
        heap->next_heap_ = all_heaps.load(std::memory_order_relaxed);
        while (!all_heaps.compare_exchange_weak(heap->next_heap_, heap, std::memory_order_release)) {
        }
    }
    if (!ThreadHeap::set(heap)) {
        heap->leave();
        return nullptr;
    }
    return heap;
}

bool SlabHeap::try_to_own() noexcept {
    return !is_owned_.load(std::memory_order_relaxed) && !is_owned_.exchange(true, std::memory_order_acquire);
}

void SlabHeap::leave() noexcept {
    take_back_from_afar(this);
    for (std::size_t i = 0; i < slab_class_count; ++i) {
        if (SlabPage* const page = std::exchange(current_[i], nullptr)) {
            add_with_room(page);
        }
        while (SlabPage* const page = with_room_[i].first()) {
            give_up(page);
        }
    }
    BK_ASSERT(with_room_count_ == 0);
    is_owned_.store(false);
    take_back_from_afar(nullptr);
}

/// Gives away a page of the list. The pool gets it when it has free blocks. Otherwise, as in a run, it belongs to nobody.
void SlabHeap::give_up(SlabPage* page) noexcept {
    remove_with_room(page);
    if (page->has_room()) {
        slab_pool.park(page);
    } else {
        page->owner.store(&full_page, std::memory_order_release);
    }
}

void* SlabHeap::allocate_without_heap(std::size_t size_class) noexcept {
    SlabHeap* const heap = adopt();
    return heap != nullptr ? heap->allocate(size_class) : slab_pool.allocate(size_class);
}

void SlabHeap::release_from_afar(SlabPage* page, void* block) noexcept {
    SlabHeap* const heap = of_this_thread();
    release_elsewhere(heap != nullptr ? heap : adopt(), page, block);
}

/// `mine` is the heap of the calling thread, or null. The page may change its owner at any moment.
void SlabHeap::release_elsewhere(SlabHeap* mine, SlabPage* page, void* block) noexcept {
    for (;;) {
        SlabOwner* const owner = page->owner.load(std::memory_order_acquire);
        if (owner == &document_page) {
            static_cast<void>(page->put_block(block)); // the hold keeps the page from being empty
            return;
        }
        if (mine != nullptr && owner == &full_page) {
            if (mine->claim(page)) {
                // Before the release: when the block is the last one, the page is gone afterwards.
                mine->add_with_room(page);
                mine->release(page, block);
                return;
            }
        } else if (owner == &full_page || owner == &pooled_page) {
            if (slab_pool.release(page, block)) {
                return;
            }
        } else {
            static_cast<SlabHeap*>(owner)->receive(mine, page, block);
            return;
        }
    }
}

/// Takes over a page without a free block, unless another thread was faster.
bool SlabHeap::claim(SlabPage* page) noexcept {
    SlabOwner* owner = &full_page;
    return page->owner.compare_exchange_strong(owner, this, std::memory_order_acquire,
                                               std::memory_order_relaxed);
}

/// Takes a block that another thread frees. `sender` is the heap of that thread.
void SlabHeap::receive(SlabHeap* sender, SlabPage* page, void* block) noexcept {
    if (this == sender) {
        release(page, block);
        return;
    }
    unpoison(block, sizeof(FreeBlock));
    auto* const freed = new (block) FreeBlock{from_afar_.load(std::memory_order_relaxed)};
    poison(freed + 1,
           page->size_of(block) - sizeof(FreeBlock)); // once the block is in the list, its page may be freed
    while (!from_afar_.compare_exchange_weak(freed->next, freed)) {
    }
    if (!is_owned_.load()) { // its thread has ended, and will not look at the list
        take_back_from_afar(sender);
    }
}

/// `mine` is the heap of the calling thread. Some of the pages may have another owner by now.
void SlabHeap::take_back_from_afar(SlabHeap* mine) noexcept {
    FreeBlock* block = from_afar_.exchange(nullptr);
    while (block != nullptr) {
        FreeBlock* const next = block->next;
        release_elsewhere(mine, SlabPage::of(block), block);
        block = next;
    }
}

void* SlabHeap::allocate_elsewhere(std::size_t size_class) noexcept {
    if (from_afar_.load(std::memory_order_relaxed) != nullptr) {
        take_back_from_afar(this);
    }
    return change_page(size_class) ? current_[size_class]->take_block() : nullptr;
}

/// Allocates on another page. When the rest of the current page is too short, it stays unused until that page is empty.
void* SlabHeap::take_next_elsewhere(std::size_t size) noexcept {
    if (from_afar_.load(std::memory_order_relaxed) != nullptr) {
        take_back_from_afar(this);
    }
    SlabPage*& current = current_[slab_run_class];
    for (;;) {
        if (current == nullptr) {
            current = slab_pool.take_page(slab_run_class, this);
        }
        if (current == nullptr) {
            return nullptr;
        }
        if (void* const block = current->take_next(size)) {
            return block;
        }
        SlabPage* const page = std::exchange(current, nullptr);
        page->fresh = page->end;
        BK_ASSERT(page->live_count != 0);
        page->owner.store(&full_page, std::memory_order_release);
    }
}

/// Makes a page that has free blocks the current one.
bool SlabHeap::change_page(std::size_t size_class) noexcept {
    SlabPage*& current = current_[size_class];
    if (current != nullptr) {
        if (current->has_room()) {
            return true;
        }
        current->owner.store(&full_page, std::memory_order_release);
        current = nullptr;
    }
    if (SlabPage* const page = with_room_[size_class].first()) {
        remove_with_room(page);
        current = page;
    } else {
        current = slab_pool.take_page(size_class, this);
    }
    return current != nullptr;
}

/// When there are too many, gives the pool the oldest one of its class.
void SlabHeap::add_with_room(SlabPage* page) noexcept {
    SlabPageList& pages = with_room_[page->size_class];
    pages.push_front(page);
    ++with_room_count_;
    SlabPage* const oldest = pages.last();
    if (with_room_count_ > most_pages_with_room && oldest != page) {
        give_up(oldest);
    }
}

void SlabHeap::remove_with_room(SlabPage* page) noexcept {
    BK_ASSERT(with_room_count_ != 0 && page->is_owned_by(this));
    with_room_[page->size_class].remove(page);
    --with_room_count_;
}

/// Handles a page that has become empty.
void SlabHeap::retire(SlabPage* page) noexcept {
    if (page == current_[page->size_class]) {
        current_[page->size_class] = nullptr;
    } else {
        remove_with_room(page);
    }
    slab_pool.give_page_back(page);
}

} // namespace bk
