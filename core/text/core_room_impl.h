#pragma once

#include "core/core_string.h"

namespace bk {

/// The capacity that an output with `used` bytes gets next: at least twice as much, so that appending a byte takes amortised
/// constant time. From 64 KiB to 4 MiB it is four times as much: each growth moves to fresh pages, and the first write to a page
/// costs more than the bytes written. Pages that are never written to take no memory, only address space.
constexpr core_uint64 next_room(core_uint64 used) noexcept {
    constexpr core_uint64 large = core_uint64{1} << 16;
    constexpr core_uint64 very_large = core_uint64{1} << 22;
    return used * (used >= large && used < very_large ? 4 : 2);
}

} // namespace bk
