#pragma once

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

// Replaces the program's operator new and operator delete, for the library too where it takes them from the program.
// To be included by the one source of a test.

/// How many bytes of the global heap are in use, and how many were at most.
class HeapMeter {
public:
    /// Measures from here on.
    static void start() {
        base_ = used_.load();
        peak_ = base_.load();
        taken_ = 0;
    }
    /// The most that was in use at a time since the start, above what was in use then.
    static std::size_t growth() { return peak_ - base_; }

    /// How many blocks were taken since the start.
    static std::size_t taken() { return taken_; }

    static void* take(std::size_t size) {
        ++taken_;
        auto* block = static_cast<std::size_t*>(std::malloc(size + header));
        if (block == nullptr) {
            return nullptr;
        }
        *block = size;
        const std::size_t used = used_ += size;
        if (used > peak_) {
            peak_ = used;
        }
        return reinterpret_cast<char*>(block) + header;
    }
    static void give_back(void* data) noexcept {
        if (data != nullptr) {
            void* const block = static_cast<char*>(data) - header;
            used_ -= *static_cast<std::size_t*>(block);
            std::free(block);
        }
    }

private:
    static constexpr std::size_t header = alignof(std::max_align_t);

    static inline std::atomic<std::size_t> used_ = 0;
    static inline std::atomic<std::size_t> base_ = 0;
    static inline std::atomic<std::size_t> peak_ = 0;
    static inline std::atomic<std::size_t> taken_ = 0;
};

void* operator new(std::size_t size) {
    if (void* const block = HeapMeter::take(size)) {
        return block;
    }
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return HeapMeter::take(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return HeapMeter::take(size);
}
void operator delete(void* block) noexcept {
    HeapMeter::give_back(block);
}
void operator delete[](void* block) noexcept {
    HeapMeter::give_back(block);
}
void operator delete(void* block, std::size_t) noexcept {
    HeapMeter::give_back(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    HeapMeter::give_back(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    HeapMeter::give_back(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    HeapMeter::give_back(block);
}
