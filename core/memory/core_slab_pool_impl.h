#pragma once

#include "core/memory/core_chunk_impl.h"
#include "core/memory/core_lock_impl.h"
#include "core/memory/core_slab_page_impl.h"

#include <cstddef>
#include <cstdint>
#include <mutex>

namespace bk {

/// What a chunk knows of its pages. It stands in the first page, behind that page's own head.
struct SlabChunk {
    std::uint32_t used_pages; // a bit a page
    SlabChunk* next;          // of the chunks that have room for pages
    SlabChunk* previous;

    static SlabChunk* of(SlabPage* page) noexcept;
    SlabPage* page(unsigned int i) noexcept;
};

/// What threads share: the chunks, and the pages that have room and no thread. One lock guards it, which is held for some
/// dozens of instructions, once for 64 KiB as a rule, and never during a system call.
class SlabPool {
public:
    /// A page of the class that has room, which the owner gets; null when there is no memory.
    SlabPage* take_page(std::size_t size_class, SlabOwner* owner) noexcept;

    /// An empty page for a document; null when there is no memory.
    SlabPage* take_document_page() noexcept;
    /// All pages of a document, whatever lies on them.
    void give_document_pages_back(SlabPage* first) noexcept;

    /// One that is empty.
    void give_page_back(SlabPage* page) noexcept;

    /// One that has room and blocks in use: from here on it is the pool's.
    void park(SlabPage* page) noexcept;

    /// A block for a thread that has no heap; null when there is no memory.
    void* allocate(std::size_t size_class) noexcept;

    /// Gives a block of a page back that is the pool's or full; false when the page has become another's meanwhile.
    bool release(SlabPage* page, void* block) noexcept;

    /// Around a fork: the child must find the pool in order, and open.
    void lock() noexcept { lock_.lock(); }
    void unlock() noexcept { lock_.unlock(); }

private:
    /// 16 MiB. A page that the kernel hands out again costs 5 ns a value to clear: documents that are read one after the other
    /// take the pages of those that went.
    static constexpr unsigned int most_empty_chunks = 8;

    using Lock = std::unique_lock<StaticLock>;

    void* find_page() noexcept;
    SlabChunk* drop_page(SlabPage* page) noexcept;
    void link(SlabChunk* chunk) noexcept;
    void unlink(SlabChunk* chunk) noexcept;

    StaticLock lock_;
    SlabPageList parked_[slab_class_count];
    SlabChunk* chunks_with_room_ = nullptr;
    unsigned int empty_chunk_count_ = 0; // of these
};

/// The only one. It is there before the first static constructor runs, and nothing takes it away.
extern constinit SlabPool slab_pool;

/// Makes a page of the class out of memory for one.
SlabPage* lay_out_page(void* place, std::size_t size_class, SlabOwner* owner) noexcept;

} // namespace bk
