#if !defined(_WIN32)

#include "core/memory/system/core_chunk_impl.h"

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

/// Maps one chunk more than it needs, and unmaps what is outside the aligned part.
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

char* map_aligned(std::size_t size) noexcept {
    // The kernel often maps chunks next to each other. Then the next one is aligned already.
    char* const chunks = map(size);
    if (chunks == nullptr || is_aligned(chunks)) {
        return chunks;
    }
    munmap(chunks, size);
    return map_and_trim(size);
}

} // namespace

void* take_chunks(std::size_t size) noexcept {
    char* const chunks = map_aligned(size);
#if defined(MADV_HUGEPAGE)
    if (chunks != nullptr) {
        const int kept = errno; // some kernels have none
        madvise(chunks, size, MADV_HUGEPAGE);
        errno = kept;
    }
#endif
    return chunks;
}

void* grow_chunks([[maybe_unused]] void* chunks, [[maybe_unused]] std::size_t size,
                  [[maybe_unused]] std::size_t grown) noexcept {
#if defined(MREMAP_FIXED)
    const int kept = errno;
    char* const place = map_aligned(grown); // the kernel would not align one of its own choice
    void* const moved =
        place == nullptr ? MAP_FAILED : mremap(chunks, size, grown, MREMAP_MAYMOVE | MREMAP_FIXED, place);
    if (moved != MAP_FAILED) {
        return moved;
    }
    // The kernel may have unmapped the place before the move failed, and another thread may own it by now. So it is not touched.
    errno = kept;
#endif
    return nullptr;
}

void give_chunks_back(void* chunks, std::size_t size) noexcept {
    munmap(chunks, size);
}

void empty_chunks([[maybe_unused]] void* bytes, [[maybe_unused]] std::size_t size) noexcept {
#if defined(__linux__)
    const auto begin = (reinterpret_cast<std::uintptr_t>(bytes) + chunk_size - 1) / chunk_size * chunk_size;
    const auto end = (reinterpret_cast<std::uintptr_t>(bytes) + size) / chunk_size * chunk_size;
    if (begin < end) {
        const int kept = errno;
        madvise(reinterpret_cast<void*>(begin), end - begin, MADV_DONTNEED);
        errno = kept;
    }
#endif
}

} // namespace bk

#endif
