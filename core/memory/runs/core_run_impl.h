#pragma once

#include <cstddef>

namespace bk {

/// Allocates like CoreMemory::allocate, but right after the block that this thread allocated last in this way, whatever the sizes. So
/// objects are in memory in the order of their creation. CoreMemory::release frees the block. Its memory is used again only when every
/// block of its page is free, so reading allocates in this way, and edits do not.
[[nodiscard]] void* allocate_in_order(std::size_t size);

struct SlabPage;

/// Takes an empty page for a document, whose blocks follow each other. Returns null when there is no memory, and always in a build without
/// slabs.
[[nodiscard]] SlabPage* take_document_page() noexcept;
/// Frees all pages of a document, with whatever is on them.
void give_document_pages_back(SlabPage* first) noexcept;

} // namespace bk
