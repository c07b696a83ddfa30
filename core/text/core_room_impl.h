#pragma once

#include "core/core_string.h"

namespace bk {

/// How much room an output that has filled `used` bytes gets next: at least twice as much, so that a byte costs constant
/// time. Filling a page for the first time costs more than what is written to it, and a block that was left is not
/// filled again: large rooms come in fewer steps. What is never written to takes no memory, and beyond a few MiB not
/// that much address space is taken either.
constexpr core_uint64 next_room(core_uint64 used) noexcept {
    constexpr core_uint64 large = core_uint64{1} << 16;
    constexpr core_uint64 very_large = core_uint64{1} << 22;
    return used * (used >= large && used < very_large ? 4 : 2);
}

} // namespace bk
