#pragma once

#include "core/memory/core_assert_impl.h"
#include "core/memory/core_poison_impl.h"
#include "core/memory/core_slab_sizes_impl.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>

namespace bk {

/// A block that is free, as a link of a list.
struct FreeBlock {
    FreeBlock* next;
};

/// Whose a page is: a heap's, or that of one of the two below.
struct SlabOwner {};

/// Nobody's: every block of the page is in use. The thread that gives one back makes the page its own.
inline constinit SlabOwner full_page;
/// The pool's: there is room, and whoever touches more than the owner holds the pool's lock.
inline constinit SlabOwner pooled_page;

/// The head of a page. Blocks that were never taken lie between `fresh` and `end`.
struct SlabPage {
    std::atomic<SlabOwner*> owner;
    FreeBlock* free_blocks;
    char* fresh;
    char* end;
    std::uint32_t block_size;
    std::uint32_t size_class;
    std::uint32_t live_count;
    SlabPage* next; // of a list of pages
    SlabPage* previous;

    static SlabPage* of(void* block) noexcept {
        return reinterpret_cast<SlabPage*>(reinterpret_cast<std::uintptr_t>(block) & ~(slab_page_size - 1));
    }

    bool is_owned_by(const SlabOwner* one) const noexcept {
        return owner.load(std::memory_order_relaxed) == one;
    }
    bool has_room() const noexcept { return free_blocks != nullptr || fresh != end; }

    /// When there is one. Its bytes are still poisoned.
    void* take_block() noexcept {
        BK_ASSERT(has_room());
        ++live_count;
        if (FreeBlock* const block = free_blocks) {
            unpoison(block, sizeof(FreeBlock));
            free_blocks = block->next;
            return block;
        }
        char* const block = fresh;
        fresh += block_size;
        BK_ASSERT(fresh <= end);
        return block;
    }

    /// Whether it was the last one in use.
    bool put_block(void* block) noexcept {
        BK_ASSERT(live_count != 0 && is_block(block));
        unpoison(block, sizeof(FreeBlock));
        free_blocks = new (block) FreeBlock{free_blocks};
        poison(block, block_size);
        return --live_count == 0;
    }

    /// Whether a block that was once taken begins there.
    bool is_block(const void* place) const noexcept {
        const char* const block = static_cast<const char*>(place);
        return block < fresh && static_cast<std::size_t>(end - block) % block_size == 0;
    }
};

/// Pages, newest first.
class SlabPageList {
public:
    SlabPage* first() const noexcept { return first_; }
    SlabPage* last() const noexcept { return last_; }

    void push_front(SlabPage* page) noexcept {
        page->previous = nullptr;
        page->next = first_;
        (first_ == nullptr ? last_ : first_->previous) = page;
        first_ = page;
    }
    void remove(SlabPage* page) noexcept {
        BK_ASSERT(page->previous == nullptr ? first_ == page : page->previous->next == page);
        BK_ASSERT(page->next == nullptr ? last_ == page : page->next->previous == page);
        (page->previous == nullptr ? first_ : page->previous->next) = page->next;
        (page->next == nullptr ? last_ : page->next->previous) = page->previous;
    }

private:
    SlabPage* first_ = nullptr;
    SlabPage* last_ = nullptr;
};

} // namespace bk
