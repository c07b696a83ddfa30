#include "core/memory/core_slab_pool_impl.h"

#include <bit>
#include <type_traits>
#include <utility>

#if !defined(_WIN32)
#include <pthread.h>
#endif

namespace bk {

constinit SlabPool slab_pool;

namespace {

static_assert(std::is_trivially_destructible_v<SlabPool>, "statics of a host's use it to the very end");

constexpr unsigned int pages_per_chunk = chunk_size / slab_page_size;
constexpr std::size_t page_head_size = 128; // so that each block of 64 bytes is in a single cache line
constexpr std::size_t first_page_head_size = 256;
constexpr std::uint32_t all_pages_used = 0xFFFFFFFFu;
static_assert(pages_per_chunk == 32, "a chunk counts its pages in 32 bits");
static_assert(sizeof(SlabPage) <= page_head_size &&
              page_head_size + sizeof(SlabChunk) <= first_page_head_size);
static_assert(slab_page_size - first_page_head_size == slab_page_room);

/// Whether every size has the smallest class whose blocks are large enough.
constexpr bool holds_every_size() {
    for (std::size_t size = 1; size <= slab_largest_block; ++size) {
        const std::size_t size_class = slab_class_of(size);
        if (size_class >= slab_class_count || slab_block_size(size_class) < size ||
            (size_class != 0 && slab_block_size(size_class - 1) >= size)) {
            return false;
        }
    }
    return true;
}
static_assert(holds_every_size());

unsigned int index_in_chunk(const SlabPage* page) noexcept {
    return static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(page) % chunk_size / slab_page_size);
}

void unmap(SlabChunk* chunk) noexcept {
    if (chunk != nullptr) {
        void* const memory = chunk->page(0);
        unpoison(memory, chunk_size);
        do_not_search_for_leaks(memory, chunk_size);
        give_chunks_back(memory, chunk_size);
    }
}

#if !defined(_WIN32)

/// Only the thread that forks exists in the child. It would wait for ever for a lock that another thread held.
[[maybe_unused]] const int fork_handlers =
    pthread_atfork([] { slab_pool.lock(); }, [] { slab_pool.unlock(); }, [] { slab_pool.unlock(); });

#endif

} // namespace

SlabChunk* SlabChunk::of(SlabPage* page) noexcept {
    const std::uintptr_t chunk = reinterpret_cast<std::uintptr_t>(page) & ~(chunk_size - 1);
    return reinterpret_cast<SlabChunk*>(chunk + page_head_size);
}

SlabPage* SlabChunk::page(unsigned int i) noexcept {
    return reinterpret_cast<SlabPage*>(reinterpret_cast<char*>(this) - page_head_size + i * slab_page_size);
}

SlabPage* lay_out_page(void* place, std::size_t size_class, SlabOwner* owner) noexcept {
    const bool is_first = reinterpret_cast<std::uintptr_t>(place) % chunk_size == 0;
    const std::size_t head_size = is_first ? first_page_head_size : page_head_size;
    const std::size_t block_size = slab_block_size(size_class);
    const std::size_t room = slab_page_size - head_size;
    char* const blocks = static_cast<char*>(place) + head_size;
    poison(blocks, slab_page_size - head_size);
    return new (place) SlabPage{owner,
                                nullptr,
                                blocks,
                                blocks + room - (block_size == 0 ? 0 : room % block_size),
                                static_cast<std::uint32_t>(block_size),
                                static_cast<std::uint32_t>(size_class),
                                0,
                                nullptr,
                                nullptr,
                                nullptr,
                                nullptr,
                                nullptr};
}

SlabPage* SlabPool::take_page(std::size_t size_class, SlabOwner* owner) noexcept {
    Lock lock(lock_);
    if (SlabPage* const page = parked_[size_class].first()) {
        BK_ASSERT(page->is_owned_by(&pooled_page) && page->live_count != 0);
        BK_ASSERT(page->has_room() || page->is_run());
        parked_[size_class].remove(page);
        page->owner.store(owner, std::memory_order_release);
        return page;
    }
    void* const place = find_page();
    lock.unlock();
    return place == nullptr ? nullptr : lay_out_page(place, size_class, owner);
}

SlabPage* SlabPool::take_document_page() noexcept {
    Lock lock(lock_);
    void* const place = find_page();
    lock.unlock();
    return place == nullptr ? nullptr : lay_out_page(place, slab_run_class, &document_page);
}

void SlabPool::give_document_pages_back(SlabPage* first) noexcept {
    SlabChunk* emptied = nullptr;
    Lock lock(lock_);
    while (first != nullptr) {
        SlabPage* const page = std::exchange(first, first->next_of_document);
        BK_ASSERT(page->is_owned_by(&document_page));
        const std::size_t head_size = index_in_chunk(page) == 0 ? first_page_head_size : page_head_size;
        poison(reinterpret_cast<char*>(page) + head_size, slab_page_size - head_size);
        if (SlabChunk* const chunk = drop_page(page)) {
            chunk->next = std::exchange(emptied, chunk);
        }
    }
    lock.unlock();
    while (emptied != nullptr) {
        unmap(std::exchange(emptied, emptied->next));
    }
}

void SlabPool::give_page_back(SlabPage* page) noexcept {
    BK_ASSERT(page->live_count == 0);
    Lock lock(lock_);
    SlabChunk* const emptied = drop_page(page);
    lock.unlock();
    unmap(emptied);
}

void SlabPool::park(SlabPage* page) noexcept {
    BK_ASSERT(page->live_count != 0 && page->has_room());
    const Lock lock(lock_);
    parked_[page->size_class].push_front(page);
    page->owner.store(&pooled_page, std::memory_order_release);
}

void* SlabPool::allocate(std::size_t size_class) noexcept {
    Lock lock(lock_);
    SlabPageList& parked = parked_[size_class];
    if (parked.first() == nullptr) {
        void* const place = find_page();
        if (place == nullptr) {
            return nullptr;
        }
        parked.push_front(lay_out_page(place, size_class, &pooled_page));
    }
    SlabPage* const page = parked.first();
    void* const block = page->take_block();
    if (!page->has_room()) {
        parked.remove(page);
        page->owner.store(&full_page, std::memory_order_release);
    }
    return block;
}

bool SlabPool::release(SlabPage* page, void* block) noexcept {
    Lock lock(lock_);
    SlabPageList& parked = parked_[page->size_class];
    SlabOwner* owner = &full_page;
    if (page->owner.compare_exchange_strong(owner, &pooled_page, std::memory_order_acquire)) {
        parked.push_front(page);
    } else if (owner != &pooled_page) {
        return false;
    }
    if (!page->put_block(block)) {
        return true;
    }
    parked.remove(page);
    SlabChunk* const emptied = drop_page(page);
    lock.unlock();
    unmap(emptied);
    return true;
}

/// Returns memory for a page, or null when there is none. It holds the lock while it maps a chunk. Otherwise threads that start together
/// would map a chunk each, although one chunk has pages for 32 of them.
void* SlabPool::find_page() noexcept {
    if (chunks_with_room_ == nullptr) {
        void* const memory = take_chunks(chunk_size);
        if (memory == nullptr) {
            return nullptr;
        }
        search_for_leaks(memory, chunk_size);
        link(new (static_cast<char*>(memory) + page_head_size) SlabChunk{0, nullptr, nullptr});
        ++empty_chunk_count_;
    }
    SlabChunk* const chunk = chunks_with_room_;
    BK_ASSERT(chunk->used_pages != all_pages_used);
    if (chunk->used_pages == 0) {
        --empty_chunk_count_;
    }
    const auto index = static_cast<unsigned int>(std::countr_one(chunk->used_pages));
    chunk->used_pages |= 1u << index;
    if (chunk->used_pages == all_pages_used) {
        unlink(chunk);
    }
    return chunk->page(index);
}

/// Frees a page of a chunk. When the chunk is now empty, and enough others are too, returns the chunk, which the caller must unmap.
SlabChunk* SlabPool::drop_page(SlabPage* page) noexcept {
    SlabChunk* const chunk = SlabChunk::of(page);
    BK_ASSERT((chunk->used_pages >> index_in_chunk(page) & 1u) == 1u);
    if (chunk->used_pages == all_pages_used) {
        link(chunk);
    }
    chunk->used_pages &= ~(1u << index_in_chunk(page));
    if (chunk->used_pages != 0) {
        return nullptr;
    }
    if (empty_chunk_count_ < most_empty_chunks) {
        ++empty_chunk_count_;
        return nullptr;
    }
    unlink(chunk);
    return chunk;
}

void SlabPool::link(SlabChunk* chunk) noexcept {
    chunk->previous = nullptr;
    chunk->next = chunks_with_room_;
    if (chunks_with_room_ != nullptr) {
        chunks_with_room_->previous = chunk;
    }
    chunks_with_room_ = chunk;
}

void SlabPool::unlink(SlabChunk* chunk) noexcept {
    (chunk->previous == nullptr ? chunks_with_room_ : chunk->previous->next) = chunk->next;
    if (chunk->next != nullptr) {
        chunk->next->previous = chunk->previous;
    }
}

} // namespace bk
