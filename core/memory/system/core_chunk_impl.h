#pragma once

#include <cstddef>

namespace bk {

/// Slabs and very large blocks get their memory from the operating system in chunks of this size, aligned to it.
inline constexpr std::size_t chunk_size = std::size_t{2} << 20;

/// Allocates a whole number of adjacent chunks, all zeros. Returns null when there is no memory. Asks the kernel for huge
/// pages.
void* take_chunks(std::size_t size) noexcept;

/// Grows a range of chunks by moving its pages to another address instead of copying them. The new chunks are zeros. Returns null where
/// that is impossible; the range then stays as it is.
void* grow_chunks(void* chunks, std::size_t size, std::size_t grown) noexcept;

void give_chunks_back(void* chunks, std::size_t size) noexcept;

/// Gives the memory of the whole chunks in this range back to the kernel, on systems that can. The addresses stay valid. Each byte is then
/// zero or as it was.
void empty_chunks(void* bytes, std::size_t size) noexcept;

} // namespace bk
