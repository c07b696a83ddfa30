#pragma once

#include "core/memory/core_assert_impl.h"
#include "core/memory/core_poison_impl.h"
#include "core/memory/core_slab_sizes_impl.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>

namespace bk {

/// A free block, as a node of a list.
struct FreeBlock {
    FreeBlock* next;
};

/// The owner of a page: a heap, or one of the three below.
struct SlabOwner {};

/// The owner of pages without a free block. The first thread that frees one of a page's blocks becomes its owner.
inline constinit SlabOwner full_page;
/// The owner of pages that are in the pool because they have free blocks. All else of such a page is read and written under the pool's lock.
inline constinit SlabOwner pooled_page;
/// The owner of pages of documents. Only the document allocates from its page. Freeing a block lowers the page's count, and the page stays.
inline constinit SlabOwner document_page;

/// Where free blocks are poisoned, the size of each block of a run is stored in front of it.
inline constexpr std::size_t run_block_head = has_poison ? sizeof(std::uint64_t) : 0;

/// The head of a page. The memory between `fresh` and `end` has never been allocated. A page of the run class has blocks of any size,
/// block_size 0 and no free list: memory that was freed there is not used again before the page is empty.
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
    void* document; // while the page belongs to one
    SlabPage* next_of_document;
    void* hold; // a block that keeps the page from becoming empty while it belongs to a document

    static SlabPage* of(void* block) noexcept {
        return reinterpret_cast<SlabPage*>(reinterpret_cast<std::uintptr_t>(block) & ~(slab_page_size - 1));
    }

    bool is_owned_by(const SlabOwner* one) const noexcept {
        return owner.load(std::memory_order_relaxed) == one;
    }
    bool has_room() const noexcept { return free_blocks != nullptr || fresh != end; }
    bool is_run() const noexcept { return block_size == 0; }
    /// The size of a block. For a run it is 0 in builds without poison, which do not need it.
    std::size_t size_of(const void* block) const noexcept {
        if (!is_run() || !has_poison) {
            return block_size;
        }
        const auto* const size = static_cast<const std::uint64_t*>(block) - 1;
        unpoison(size, run_block_head);
        const std::uint64_t found = *size;
        poison(size, run_block_head);
        return found;
    }

    /// Takes a free block, which must exist. Its bytes are still poisoned.
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

    /// Takes a block of this size, a multiple of the granularity, from a run. Returns null when the rest of the page is too short. The
    /// bytes are still poisoned.
    void* take_next(std::size_t size) noexcept {
        if (static_cast<std::size_t>(end - fresh) < size + run_block_head) {
            return nullptr;
        }
        if constexpr (has_poison) {
            unpoison(fresh, run_block_head);
            new (fresh) std::uint64_t{size};
            poison(fresh, run_block_head);
        }
        char* const block = fresh + run_block_head;
        fresh = block + size;
        ++live_count;
        return block;
    }

    /// Frees a block. Returns whether it was the last one in use.
    bool put_block(void* block) noexcept {
        BK_ASSERT(live_count != 0 && is_block(block));
        if (!is_run()) {
            unpoison(block, sizeof(FreeBlock));
            free_blocks = new (block) FreeBlock{free_blocks};
        }
        poison(block, size_of(block));
        return --live_count == 0;
    }

    /// Whether a block that was allocated at some time begins there.
    bool is_block(const void* place) const noexcept {
        const char* const block = static_cast<const char*>(place);
        return block < fresh && (is_run() || static_cast<std::size_t>(end - block) % block_size == 0);
    }
};

/// A list of pages, newest first.
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
