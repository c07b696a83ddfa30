#pragma once

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

// Replaces operator new and operator delete of the program, and of the library where it uses those of the program. Only one source of a
// test includes this file.

/// Counts the bytes of the global heap in use, and their peak.
class HeapMeter {
public:
    /// Starts a measurement.
    static void start() {
        base_ = used_.load();
        peak_ = base_.load();
        taken_ = 0;
    }
    /// The peak since the start of the measurement, less what was in use at the start.
    static std::size_t growth() { return peak_ - base_; }

    /// How many blocks were allocated since the start.
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
