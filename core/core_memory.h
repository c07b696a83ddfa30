#pragma once

#include "core/core_export.h"

#include <cstddef>

/// Storage for the objects and the text of documents. Small blocks come from slabs, larger ones from the global heap, and
/// those of several MiB from the operating system. Both sides are always inside the library, so that a block taken in one
/// module may be given back in another. A block may be given back on another thread than the one that took it.
class BK_PARSER_API CoreMemory {
public:
    /// Blocks of up to this many bytes come from slabs.
    static constexpr std::size_t largest_slab_block = 16320;

    /// A block of at least `size` bytes, aligned for any object of up to 16 bytes' alignment.
    /// Throws std::bad_alloc when memory has run out. Amortised constant time.
    [[nodiscard]] static void* allocate(std::size_t size);

    /// A block of at least `grown` bytes for one that was taken with `size`, which is given back; its first `kept` bytes
    /// are moved. Where the operating system can, a block of several MiB is moved without being copied. A null block
    /// of no size is legal. The new block's size is `grown`. Throws std::bad_alloc when memory has run out; the block then
    /// stays as it is.
    [[nodiscard]] static void* grow(void* block, std::size_t size, std::size_t kept, std::size_t grown);

    /// Gives back a block; `size` is the size that it was taken with, or that of an object at its beginning when
    /// both are at most `largest_slab_block`. Null is legal.
    static void release(void* block, std::size_t size) noexcept;

    /// Throws what says that a container would hold more elements than can be counted.
    [[noreturn]] static void refuse_count();
};
