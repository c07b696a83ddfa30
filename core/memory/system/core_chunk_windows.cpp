#if defined(_WIN32)

#include "core/memory/system/core_chunk_impl.h"

#include <cstdint>

#include <windows.h>

namespace bk {

namespace {

void* map(void* place, std::size_t size) noexcept {
    return VirtualAlloc(place, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

/// Finds room for aligned chunks; another thread may take it before this one does.
void* find_aligned_place(std::size_t size) noexcept {
    void* const room = VirtualAlloc(nullptr, size + chunk_size, MEM_RESERVE, PAGE_NOACCESS);
    if (room == nullptr) {
        return nullptr;
    }
    VirtualFree(room, 0, MEM_RELEASE);
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(room);
    return reinterpret_cast<void*>((address + chunk_size - 1) / chunk_size * chunk_size);
}

} // namespace

void* take_chunks(std::size_t size) noexcept {
    constexpr int attempts = 16;
    for (int i = 0; i < attempts; ++i) {
        void* const place = find_aligned_place(size);
        if (place == nullptr) {
            return nullptr;
        }
        if (void* chunk = map(place, size)) {
            return chunk;
        }
    }
    return nullptr;
}

/// Memory cannot be moved there.
void* grow_chunks(void*, std::size_t, std::size_t) noexcept {
    return nullptr;
}

void give_chunks_back(void* chunks, std::size_t) noexcept {
    VirtualFree(chunks, 0, MEM_RELEASE);
}

void empty_chunks(void*, std::size_t) noexcept {}

} // namespace bk

#endif
