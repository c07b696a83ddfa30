#pragma once

#include "core/core_memory.h"
#include "core/memory/core_count_impl.h"
#include "core/memory/core_slab_page_impl.h"
#include "core/memory/runs/core_run_impl.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <mutex>
#include <new>
#include <utility>

// Replaces the program's operator new and the whole CoreMemory of the library, which is possible with a static library. Only the source of
// one test of internals includes this file.

/// An allocator that counts its blocks, and fails on request.
class FailingMemory {
public:
    /// From now on, request number `n`, counted from 1, fails; with `for_good` all later ones fail, too.
    static void fail_at(std::size_t n, bool for_good = false) {
        left_ = n;
        for_good_ = for_good;
        failed_ = false;
        armed_ = true;
    }
    static void pause() { armed_ = false; }
    /// From now on no request fails. Returns whether one has failed.
    static bool disarm() {
        armed_ = false;
        return failed_;
    }
    /// The number of blocks in use.
    static long live() { return live_; }

    static void* take(std::size_t size) noexcept {
        if (armed_ && fails()) {
            return nullptr;
        }
        void* const block = std::malloc(size == 0 ? 1 : size);
        live_ += block != nullptr ? 1 : 0;
        return block;
    }
    static void give_back(void* block) noexcept {
        live_ -= block != nullptr ? 1 : 0;
        std::free(block);
    }
    static void* take_or_throw(std::size_t size) {
        if (void* const block = take(size)) {
            return block;
        }
        throw std::bad_alloc();
    }

private:
    static bool fails() noexcept {
        if (left_ > 1) {
            --left_;
            return false;
        }
        const bool now = left_ == 1 || for_good_;
        left_ = 0;
        failed_ = failed_ || now;
        return now;
    }

    static inline std::atomic<long> live_ = 0;
    static inline std::size_t left_ = 0;
    static inline bool for_good_ = false;
    static inline bool failed_ = false;
    static inline bool armed_ = false;
};

/// Pages of documents, which are allocated from this memory.
class FailingPages {
public:
    static bk::SlabPage* take() noexcept {
        const std::lock_guard lock(mutex_);
        for (Page& page : pages_) {
            if (page.block == nullptr) {
                page.block = FailingMemory::take(2 * bk::slab_page_size);
                page.head = page.block == nullptr ? nullptr : lay_out(page.block);
                return page.head;
            }
        }
        return nullptr;
    }
    static void give_back(bk::SlabPage* head) noexcept {
        const std::lock_guard lock(mutex_);
        release(*find(head));
    }
    /// Frees a block. Returns false when it is on no such page.
    static bool give_block_back(void* block) noexcept {
        const std::lock_guard lock(mutex_);
        bk::SlabPage* const head = bk::SlabPage::of(block);
        Page* const page = block == nullptr ? nullptr : find(head);
        if (page == nullptr) {
            return false;
        }
        if (head->put_block(block) && !head->is_owned_by(&bk::document_page)) {
            release(*page);
        }
        return true;
    }
    /// How many pages are in use.
    static std::size_t count() noexcept {
        return static_cast<std::size_t>(std::count_if(
            std::begin(pages_), std::end(pages_), [](const Page& page) { return page.block != nullptr; }));
    }

private:
    struct Page {
        void* block;
        bk::SlabPage* head;
    };

    static bk::SlabPage* lay_out(void* block) noexcept {
        auto* const place =
            reinterpret_cast<char*>(bk::SlabPage::of(static_cast<char*>(block) + bk::slab_page_size - 1));
        return new (place) bk::SlabPage{&bk::document_page,
                                        nullptr,
                                        place + sizeof(bk::SlabPage),
                                        place + bk::slab_page_size,
                                        0,
                                        bk::slab_run_class,
                                        0,
                                        nullptr,
                                        nullptr,
                                        nullptr,
                                        nullptr,
                                        nullptr};
    }
    static Page* find(const bk::SlabPage* head) noexcept {
        Page* const page = std::find_if(std::begin(pages_), std::end(pages_), [head](const Page& one) {
            return one.block != nullptr && one.head == head;
        });
        return page == std::end(pages_) ? nullptr : page;
    }
    static void release(Page& page) noexcept {
        bk::unpoison(page.head, bk::slab_page_size);
        FailingMemory::give_back(std::exchange(page.block, nullptr));
    }

    static inline std::mutex mutex_;
    static inline Page pages_[64] = {};
};

void* operator new(std::size_t size) {
    return FailingMemory::take_or_throw(size);
}
void* operator new[](std::size_t size) {
    return FailingMemory::take_or_throw(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return FailingMemory::take(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return FailingMemory::take(size);
}
void operator delete(void* block) noexcept {
    FailingMemory::give_back(block);
}
void operator delete[](void* block) noexcept {
    FailingMemory::give_back(block);
}
void operator delete(void* block, std::size_t) noexcept {
    FailingMemory::give_back(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    FailingMemory::give_back(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    FailingMemory::give_back(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    FailingMemory::give_back(block);
}

void* CoreMemory::allocate(std::size_t size) {
    return FailingMemory::take_or_throw(size);
}
void* bk::allocate_in_order(std::size_t size) {
    return FailingMemory::take_or_throw(size);
}
bk::SlabPage* bk::take_document_page() noexcept {
    return FailingPages::take();
}
void bk::give_document_pages_back(SlabPage* first) noexcept {
    while (first != nullptr) {
        SlabPage* const page = std::exchange(first, first->next_of_document);
        FailingPages::give_back(page);
    }
}
void* CoreMemory::grow(void* block, std::size_t size, std::size_t kept, std::size_t grown) {
    void* const larger = FailingMemory::take_or_throw(grown);
    if (kept != 0) {
        std::memcpy(larger, block, kept);
    }
    release(block, size);
    return larger;
}
void CoreMemory::release(void* block, std::size_t) noexcept {
    if (!FailingPages::give_block_back(block)) {
        FailingMemory::give_back(block);
    }
}
void CoreMemory::refuse_count() {
    throw bk::CountRefused("more than 4294967295 elements");
}
