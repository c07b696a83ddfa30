#pragma once

#include "core/core_memory.h"
#include "core/memory/core_count_impl.h"
#include "core/memory/core_run_impl.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>

// Replaces the program's operator new and the library's CoreMemory, all of it, which a static library leaves to the
// program. To be included by the one source of a test of internals.

/// Memory whose blocks are counted, and that runs out when it is told to.
class FailingMemory {
public:
    /// From now on request number `n`, counted from 1, fails; with `for_good` all those after it as well.
    static void fail_at(std::size_t n, bool for_good = false) {
        left_ = n;
        for_good_ = for_good;
        failed_ = false;
        armed_ = true;
    }
    static void pause() { armed_ = false; }
    /// Nothing fails any more. Whether anything did.
    static bool disarm() {
        armed_ = false;
        return failed_;
    }
    /// Blocks in use.
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
void* CoreMemory::grow(void* block, std::size_t, std::size_t kept, std::size_t grown) {
    void* const larger = FailingMemory::take_or_throw(grown);
    if (kept != 0) {
        std::memcpy(larger, block, kept);
    }
    FailingMemory::give_back(block);
    return larger;
}
void CoreMemory::release(void* block, std::size_t) noexcept {
    FailingMemory::give_back(block);
}
void CoreMemory::refuse_count() {
    throw bk::CountRefused("more than 4294967295 elements");
}
