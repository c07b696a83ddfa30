#pragma once

#include <cstddef>

namespace bk {

/// As CoreMemory::allocate, behind the block that this thread took last in this way, whatever the sizes: what is made in an
/// order then lies in it. CoreMemory::release gives it back, but its memory is used again only when all that lies on its
/// page has been given back, so that this is for what is read, and not for edits.
[[nodiscard]] void* allocate_in_order(std::size_t size);

} // namespace bk
