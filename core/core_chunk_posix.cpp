#if !defined(_WIN32)

#include "core/core_chunk_impl.h"

#include <cerrno>
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

/// Maps a chunk more than is needed and gives back what lies outside the aligned part.
char* map_and_trim(std::size_t size) noexcept {
    char* const mapped = map(size + chunk_size);
    if (mapped == nullptr) {
        return nullptr;
    }
    const std::size_t before =
        (chunk_size - reinterpret_cast<std::uintptr_t>(mapped) % chunk_size) % chunk_size;
    if (before != 0) {
        munmap(mapped, before);
    }
    munmap(mapped + before + size, chunk_size - before);
    return mapped + before;
}

} // namespace

void* take_chunks(std::size_t size) noexcept {
    // Chunks are often mapped one beside the other, so that the next one is aligned as it comes.
    char* chunks = map(size);
    if (chunks != nullptr && !is_aligned(chunks)) {
        munmap(chunks, size);
        chunks = map_and_trim(size);
    }
#if defined(MADV_HUGEPAGE)
    if (chunks != nullptr) {
        const int kept = errno; // some kernels have none
        madvise(chunks, size, MADV_HUGEPAGE);
        errno = kept;
    }
#endif
    return chunks;
}

void give_chunks_back(void* chunks, std::size_t size) noexcept {
    munmap(chunks, size);
}

} // namespace bk

#endif
