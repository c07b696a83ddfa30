#if !defined(_WIN32)

#include "core/core_chunk_impl.h"

#include <cstdint>

#include <sys/mman.h>

namespace bk {

namespace {

char* map(std::size_t size) noexcept {
    void* mapped = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return mapped == MAP_FAILED ? nullptr : static_cast<char*>(mapped);
}

bool is_aligned(const char* chunk) noexcept {
    return reinterpret_cast<std::uintptr_t>(chunk) % chunk_size == 0;
}

/// Maps twice the size and gives back what lies outside the aligned part.
char* map_and_trim() noexcept {
    char* const mapped = map(2 * chunk_size);
    if (mapped == nullptr) {
        return nullptr;
    }
    const std::size_t before =
        (chunk_size - reinterpret_cast<std::uintptr_t>(mapped) % chunk_size) % chunk_size;
    if (before != 0) {
        munmap(mapped, before);
    }
    munmap(mapped + before + chunk_size, chunk_size - before);
    return mapped + before;
}

} // namespace

void* take_chunk() noexcept {
    // Chunks are often mapped one beside the other, so that the next one is aligned as it comes.
    char* chunk = map(chunk_size);
    if (chunk != nullptr && !is_aligned(chunk)) {
        munmap(chunk, chunk_size);
        chunk = map_and_trim();
    }
#if defined(MADV_HUGEPAGE)
    if (chunk != nullptr) {
        madvise(chunk, chunk_size, MADV_HUGEPAGE);
    }
#endif
    return chunk;
}

void give_chunk_back(void* chunk) noexcept {
    munmap(chunk, chunk_size);
}

} // namespace bk

#endif
