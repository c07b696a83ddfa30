#pragma once

#include "core/memory/core_slab_page_impl.h"

#include <cstddef>

namespace bk {

/// The pages of one document, with blocks of any size in the order in which they were allocated. The document either frees all of them at
/// once, whatever is on them, or gives them up (`let_go`). Then each page is freed when the last of its blocks is.
///
/// Until then only the document's one user allocates and frees its blocks. A block that is freed is only counted.
class DocumentRun {
public:
    /// Takes a first page, and returns a block of `size` bytes on it for the document. Returns null when there is no memory.
    static void* begin(std::size_t size) noexcept;
    /// For the document in such a block.
    explicit DocumentRun(void* document) noexcept;

    /// Allocates at most slab_largest_small_block bytes. Returns null when there is no memory.
    void* take(std::size_t size) noexcept {
        const std::size_t rounded = slab_rounded(size, run_granularity);
        void* const block = last_->take_next(rounded);
        if (block == nullptr) {
            return take_elsewhere(size);
        }
        unpoison(block, size);
        return block;
    }

    /// The document of a block from slabs or from pages of a document. Null when there is none, or when it has given up its pages.
    static void* document_of(const void* block) noexcept {
        const SlabPage* const page = SlabPage::of(const_cast<void*>(block));
        return page->is_owned_by(&document_page) ? page->document : nullptr;
    }

    /// Turns the pages into ordinary ones, each of which is freed when its last block is. The document object is destroyed already, but its
    /// block is still allocated.
    void let_go() noexcept;
    /// Frees the pages with everything on them, the document's block included.
    void drop() noexcept;

private:
    void* take_elsewhere(std::size_t size) noexcept;

    SlabPage* first_;
    SlabPage* last_;
};

} // namespace bk
