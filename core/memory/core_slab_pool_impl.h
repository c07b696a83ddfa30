#pragma once

#include "core/memory/core_slab_page_impl.h"
#include "core/memory/system/core_chunk_impl.h"
#include "core/memory/system/core_lock_impl.h"

#include <cstddef>
#include <cstdint>
#include <mutex>

namespace bk {

/// The head of a chunk, which knows its pages. It follows the head of the chunk's first page.
struct SlabChunk {
    std::uint32_t used_pages; // one bit per page
    SlabChunk* next;          // in the list of chunks that have free pages
    SlabChunk* previous;

    static SlabChunk* of(SlabPage* page) noexcept;
    SlabPage* page(unsigned int i) noexcept;
};

/// The chunks, and the pages that have free blocks and belong to no thread. All threads share them under one lock. A thread takes the lock
/// about once per 64 KiB that it allocates, and holds it for some dozens of instructions.
class SlabPool {
public:
    /// Gives the owner a page of the class that has free blocks. Returns null when there is no memory.
    SlabPage* take_page(std::size_t size_class, SlabOwner* owner) noexcept;

    /// Gives a document an empty page. Returns null when there is no memory.
    SlabPage* take_document_page() noexcept;
    /// Takes back all pages of a document, whatever is on them.
    void give_document_pages_back(SlabPage* first) noexcept;

    /// Takes back an empty page.
    void give_page_back(SlabPage* page) noexcept;

    /// Takes over a page that has both free blocks and blocks in use.
    void park(SlabPage* page) noexcept;

    /// Allocates a block for a thread that has no heap. Returns null when there is no memory.
    void* allocate(std::size_t size_class) noexcept;

    /// Frees a block of a page that belongs to the pool or is full. Returns false when the page has another owner by now.
    bool release(SlabPage* page, void* block) noexcept;

    /// For a fork: the child must find the pool consistent and unlocked.
    void lock() noexcept { lock_.lock(); }
    void unlock() noexcept { lock_.unlock(); }

private:
    /// 16 MiB. The kernel clears each page that it hands out, which costs 5 ns a value. So a document takes the pages of
    /// those that were freed before.
    static constexpr unsigned int most_empty_chunks = 8;

    using Lock = std::unique_lock<StaticLock>;

    void* find_page() noexcept;
    SlabChunk* drop_page(SlabPage* page) noexcept;
    void link(SlabChunk* chunk) noexcept;
    void unlink(SlabChunk* chunk) noexcept;

    StaticLock lock_;
    SlabPageList parked_[slab_class_count];
    SlabChunk* chunks_with_room_ = nullptr;
    unsigned int empty_chunk_count_ = 0; // in that list
};

/// The only pool. It exists before the first static constructor runs, and is never destroyed.
extern constinit SlabPool slab_pool;

/// Makes memory of that size a page of the class.
SlabPage* lay_out_page(void* place, std::size_t size_class, SlabOwner* owner) noexcept;

} // namespace bk
