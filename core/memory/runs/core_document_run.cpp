#include "core/memory/runs/core_document_run_impl.h"

#include "core/core_memory.h"
#include "core/memory/runs/core_run_impl.h"

namespace bk {

/// The first block of each page is its hold. On the first page that block is the document itself.
void* DocumentRun::begin(std::size_t size) noexcept {
    SlabPage* const page = take_document_page();
    if (page == nullptr) {
        return nullptr;
    }
    page->hold = page->take_next(slab_rounded(size, run_granularity));
    unpoison(page->hold, size);
    return page->hold;
}

DocumentRun::DocumentRun(void* document) noexcept : first_(SlabPage::of(document)), last_(first_) {
    first_->document = document;
}

void* DocumentRun::take_elsewhere(std::size_t size) noexcept {
    SlabPage* const page = take_document_page();
    if (page == nullptr) {
        return nullptr;
    }
    page->document = first_->document;
    page->hold = page->take_next(run_granularity);
    unpoison(page->hold, run_granularity);
    last_->next_of_document = page;
    last_ = page;
    return take(size);
}

void DocumentRun::let_go() noexcept {
    for (SlabPage* page = first_; page != nullptr;) {
        SlabPage* const next = page->next_of_document;
        if (page->live_count == 1) { // only the hold
            page->next_of_document = nullptr;
            give_document_pages_back(page);
            page = next;
            continue;
        }
        page->fresh = page->end;
        page->owner.store(&full_page, std::memory_order_release);
        CoreMemory::release(page->hold, run_granularity);
        page = next;
    }
}

void DocumentRun::drop() noexcept {
    give_document_pages_back(first_);
}

} // namespace bk
