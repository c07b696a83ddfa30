#pragma once

#include "core/core_export.h"

#include <cstddef>

/// The allocator for the objects and the text of documents. Small blocks come from slabs, larger ones from the global heap, and
/// those of several MiB from the operating system. The library itself allocates and frees, so one module may free a block that
/// another one allocated. Any thread may free a block.
class BK_PARSER_API CoreMemory {
public:
    /// Blocks of up to this many bytes come from slabs.
    static constexpr std::size_t largest_slab_block = 16320;

    /// A block of at least `size` bytes, aligned for any object of up to 16 bytes' alignment.
    /// Throws std::bad_alloc when memory has run out. Amortised constant time.
    [[nodiscard]] static void* allocate(std::size_t size);

    /// Moves a block of `size` bytes into one of at least `grown` bytes, with its first `kept` bytes, and frees the old one.
    /// Free the new block with the size `grown`. Where the operating system can, a block of several MiB moves without a copy. A
    /// null block of size 0 is legal. Throws std::bad_alloc when memory has run out; the old block then stays as it is.
    [[nodiscard]] static void* grow(void* block, std::size_t size, std::size_t kept, std::size_t grown);

    /// Frees a block. `size` is the size that was asked for. When that is at most `largest_slab_block`, it may also be the size of
    /// an object at the block's beginning. Null is legal.
    static void release(void* block, std::size_t size) noexcept;

    /// Throws std::length_error: a container would hold more than 2^32-1 elements.
    [[noreturn]] static void refuse_count();
};
