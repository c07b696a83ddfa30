#pragma once

#include <cstddef>

namespace bk {

/// As CoreMemory::allocate, behind the block that this thread took last in this way, whatever the sizes: what is made in an
/// order then lies in it. CoreMemory::release gives it back, but its memory is used again only when all that lies on its
/// page has been given back, so that this is for what is read, and not for edits.
[[nodiscard]] void* allocate_in_order(std::size_t size);

struct SlabPage;

/// An empty page for a document, whose blocks lie one behind the other; null when there is no memory, and always in a build
/// without slabs.
[[nodiscard]] SlabPage* take_document_page() noexcept;
/// Gives all pages of a document back, with whatever lies on them.
void give_document_pages_back(SlabPage* first) noexcept;

} // namespace bk
