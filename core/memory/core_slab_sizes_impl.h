#pragma once

#include <cstddef>

/// The size classes of slabs. Small blocks have a class for each multiple of the granularity. Larger blocks have a class for each number of
/// equal blocks that fill a page.
namespace bk {

inline constexpr std::size_t slab_page_size = std::size_t{64} << 10;
inline constexpr std::size_t slab_granularity = 16;
inline constexpr std::size_t slab_page_room =
    slab_page_size - 256; // what is left behind the head of any page, the first of a chunk included

inline constexpr std::size_t slab_largest_small_block = 1024;
inline constexpr std::size_t slab_small_class_count = slab_largest_small_block / slab_granularity;
inline constexpr std::size_t slab_most_blocks =
    slab_page_room / (slab_largest_small_block + slab_granularity);
inline constexpr std::size_t slab_fewest_blocks = 4;
inline constexpr std::size_t slab_largest_block = slab_page_room / slab_fewest_blocks;
/// The last class: pages of blocks of any size, in the order in which they were allocated.
inline constexpr std::size_t run_granularity = 8;
inline constexpr std::size_t slab_run_class =
    slab_small_class_count + slab_most_blocks - slab_fewest_blocks + 1;
inline constexpr std::size_t slab_class_count = slab_run_class + 1;

constexpr std::size_t slab_rounded(std::size_t size, std::size_t granularity = slab_granularity) noexcept {
    return (size + granularity - 1) / granularity * granularity;
}

constexpr std::size_t slab_class_of(std::size_t size) noexcept {
    if (size <= slab_largest_small_block) {
        return size == 0 ? 0 : (size - 1) / slab_granularity;
    }
    return slab_small_class_count + slab_most_blocks - slab_page_room / slab_rounded(size);
}

constexpr std::size_t slab_block_size(std::size_t size_class) noexcept {
    if (size_class < slab_small_class_count) {
        return (size_class + 1) * slab_granularity;
    }
    if (size_class == slab_run_class) {
        return 0;
    }
    const std::size_t block_count = slab_most_blocks - (size_class - slab_small_class_count);
    return slab_page_room / block_count / slab_granularity * slab_granularity;
}

} // namespace bk
