#pragma once

#include <cstddef>

namespace bk {

/// Slabs get their memory from the operating system in chunks of this size, aligned to their size.
inline constexpr std::size_t chunk_size = std::size_t{2} << 20;

/// A chunk, all zeros, or null when there is no memory. The kernel is asked to back it with one huge page.
void* take_chunk() noexcept;
void give_chunk_back(void* chunk) noexcept;

} // namespace bk
