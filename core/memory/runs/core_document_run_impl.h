#pragma once

#include "core/memory/core_slab_page_impl.h"

#include <cstddef>

namespace bk {

/// The pages of one document: blocks of any size, one behind the other. They go back all at once, with whatever lies on them, or,
/// once the document has let go of them, each when the last of its blocks was given back.
///
/// Until then only the document's one user takes blocks and gives blocks back, and a block that was given back is counted
/// and nothing more.
class DocumentRun {
public:
    /// A first page with room for `size` bytes, which are the document; null when there is no memory.
    static void* begin(std::size_t size) noexcept;
    /// Of a document that was made in such a place.
    explicit DocumentRun(void* document) noexcept;

    /// Null when there is no memory. At most slab_largest_small_block bytes.
    void* take(std::size_t size) noexcept {
        const std::size_t rounded = slab_rounded(size, run_granularity);
        void* const block = last_->take_next(rounded);
        if (block == nullptr) {
            return take_elsewhere(size);
        }
        unpoison(block, size);
        return block;
    }

    /// Of a block that was taken from slabs or from the pages of a document: that document, unless it has let go.
    static void* document_of(const void* block) noexcept {
        const SlabPage* const page = SlabPage::of(const_cast<void*>(block));
        return page->is_owned_by(&document_page) ? page->document : nullptr;
    }

    /// From here on, these are pages as others. The document is destroyed, but in its place.
    void let_go() noexcept;
    /// Everything on the pages is gone afterwards, the document with it.
    void drop() noexcept;

private:
    void* take_elsewhere(std::size_t size) noexcept;

    SlabPage* first_;
    SlabPage* last_;
};

} // namespace bk
