#include "core/memory/core_slab_impl.h"

#include <bit>
#include <utility>

namespace bk {

constinit thread_local SlabHeap* SlabHeap::this_threads_heap BK_TLS_MODEL = nullptr;

namespace {

constexpr unsigned int pages_per_chunk = chunk_size / slab_page_size;
constexpr std::size_t page_head_size = 128; // blocks of 64 bytes then lie in one cache line each
constexpr std::size_t first_page_head_size = 256;
constexpr std::uint32_t all_pages_used = 0xFFFFFFFFu;
static_assert(pages_per_chunk == 32, "a chunk counts its pages in 32 bits");
static_assert(sizeof(SlabPage) <= page_head_size &&
              page_head_size + sizeof(SlabChunk) <= first_page_head_size);
static_assert(slab_page_size - first_page_head_size == slab_page_room);

constexpr bool holds_every_size() {
    for (std::size_t size = 1; size <= slab_largest_block; ++size) {
        if (slab_class_of(size) >= slab_class_count || slab_block_size(slab_class_of(size)) < size) {
            return false;
        }
    }
    return true;
}
static_assert(holds_every_size());

/// Every heap there ever was: a thread that ends leaves its heap to one that begins.
std::atomic<SlabHeap*> all_heaps{nullptr};

/// How many bytes may come back to a heap without a thread before somebody puts them away.
constexpr std::uint32_t patience = std::uint32_t{1} << 18;

/// Links of a doubly linked list whose head is `first`.
template <class Item>
void link(Item*& first, Item* item) noexcept {
    item->previous = nullptr;
    item->next = first;
    if (first != nullptr) {
        first->previous = item;
    }
    first = item;
}

template <class Item>
void unlink(Item*& first, Item* item) noexcept {
    (item->previous == nullptr ? first : item->previous->next) = item->next;
    if (item->next != nullptr) {
        item->next->previous = item->previous;
    }
}

} // namespace

SlabChunk* SlabChunk::of(SlabPage* page) noexcept {
    const std::uintptr_t chunk = reinterpret_cast<std::uintptr_t>(page) & ~(chunk_size - 1);
    return reinterpret_cast<SlabChunk*>(chunk + page_head_size);
}

SlabPage* SlabChunk::page(unsigned int i) noexcept {
    return reinterpret_cast<SlabPage*>(reinterpret_cast<char*>(this) - page_head_size + i * slab_page_size);
}

/// Gives the heap up when its thread ends.
struct SlabHeap::Owner {
    ~Owner() {
        SlabHeap* const heap = std::exchange(this_threads_heap, nullptr);
        if (heap != nullptr) {
            heap->is_owned_.store(false, std::memory_order_release);
        }
    }
};

SlabHeap* SlabHeap::adopt() noexcept {
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
    this_threads_heap = heap;
    static thread_local Owner owner; // its destructor runs when the thread ends
    static_cast<void>(&owner);
    return heap;
}

bool SlabHeap::try_to_own() noexcept {
    return !is_owned_.load(std::memory_order_relaxed) && !is_owned_.exchange(true, std::memory_order_acquire);
}

void SlabHeap::release_from_afar(SlabPage* page, void* block) noexcept {
    const std::uint32_t size = page->block_size; // once the block is listed, its page may be given back
    auto* const freed = new (block) FreeBlock{from_afar_.load(std::memory_order_relaxed)};
    while (!from_afar_.compare_exchange_weak(freed->next, freed, std::memory_order_release)) {
    }
    // A heap without a thread would never look at the list.
    const std::uint32_t before = from_afar_size_.fetch_add(size, std::memory_order_relaxed);
    if ((before == 0 || before / patience != (before + size) / patience) && try_to_own()) {
        take_back_from_afar();
        is_owned_.store(false, std::memory_order_release);
    }
}

void SlabHeap::take_back_from_afar() noexcept {
    FreeBlock* block = from_afar_.exchange(nullptr, std::memory_order_acquire);
    while (block != nullptr) {
        FreeBlock* const next = block->next;
        release(SlabPage::of(block), block);
        block = next;
    }
}

void* SlabHeap::allocate_elsewhere(std::size_t size_class) noexcept {
    if (from_afar_.load(std::memory_order_relaxed) != nullptr) {
        take_back_from_afar();
    }
    return change_page(size_class) ? allocate(size_class) : nullptr;
}

/// Makes a page that has room the current one.
bool SlabHeap::change_page(std::size_t size_class) noexcept {
    SlabPage*& current = current_[size_class];
    if (current != nullptr) {
        if (current->free_blocks != nullptr || current->fresh != current->end) {
            return true;
        }
        current->is_in_use = false;
        current = nullptr;
    }
    SlabPage*& with_room = with_room_[size_class];
    if (with_room != nullptr) {
        current = with_room;
        unlink(with_room, current);
    } else {
        current = take_page(size_class);
    }
    return current != nullptr;
}

/// A page that was full has room again, or a page has become empty.
void SlabHeap::settle(SlabPage* page) noexcept {
    SlabPage*& current = current_[page->size_class];
    if (page->live_count != 0) {
        page->is_in_use = true;
        link(with_room_[page->size_class], page);
        return;
    }
    if (page == current) {
        current = nullptr;
    } else if (page->is_in_use) {
        unlink(with_room_[page->size_class], page);
    }
    give_page_back(page);
}

SlabPage* SlabHeap::take_page(std::size_t size_class) noexcept {
    SlabChunk* const chunk = chunks_with_room_ != nullptr ? chunks_with_room_ : add_chunk();
    if (chunk == nullptr) {
        return nullptr;
    }
    if (chunk == spare_chunk_) {
        spare_chunk_ = nullptr;
    }
    const auto index = static_cast<unsigned int>(std::countr_one(chunk->used_pages));
    chunk->used_pages |= 1u << index;
    if (chunk->used_pages == all_pages_used) {
        unlink(chunks_with_room_, chunk);
    }
    SlabPage* const page = chunk->page(index);
    char* const begin = reinterpret_cast<char*>(page);
    const std::size_t head_size = index == 0 ? first_page_head_size : page_head_size;
    const std::size_t block_size = slab_block_size(size_class);
    const std::size_t block_count = (slab_page_size - head_size) / block_size;
    char* const blocks = begin + head_size;
    return new (page) SlabPage{this,
                               nullptr,
                               blocks,
                               blocks + block_count * block_size,
                               static_cast<std::uint32_t>(block_size),
                               static_cast<std::uint32_t>(size_class),
                               0,
                               true,
                               nullptr,
                               nullptr};
}

void SlabHeap::give_page_back(SlabPage* page) noexcept {
    SlabChunk* const chunk = SlabChunk::of(page);
    if (chunk->used_pages == all_pages_used) {
        link(chunks_with_room_, chunk);
    }
    const auto offset =
        static_cast<std::size_t>(reinterpret_cast<char*>(page) - reinterpret_cast<char*>(chunk->page(0)));
    chunk->used_pages &= ~(1u << (offset / slab_page_size));
    if (chunk->used_pages != 0) {
        return;
    }
    if (spare_chunk_ == nullptr) {
        spare_chunk_ = chunk;
        return;
    }
    unlink(chunks_with_room_, chunk);
    give_chunks_back(chunk->page(0), chunk_size);
}

SlabChunk* SlabHeap::add_chunk() noexcept {
    void* const memory = take_chunks(chunk_size);
    if (memory == nullptr) {
        return nullptr;
    }
    auto* const chunk = new (static_cast<char*>(memory) + page_head_size) SlabChunk{0, nullptr, nullptr};
    link(chunks_with_room_, chunk);
    return chunk;
}

} // namespace bk
