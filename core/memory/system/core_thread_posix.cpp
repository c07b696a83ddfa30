#if !defined(_WIN32)

#include "core/memory/core_slab_impl.h"
#include "core/memory/system/core_thread_impl.h"

#include <utility>

namespace bk {

constinit thread_local SlabHeap* ThreadHeap::heap_ BK_TLS_MODEL = nullptr;

namespace {

constinit thread_local bool has_given_up BK_TLS_MODEL = false;

} // namespace

struct ThreadHeap::AtTheEnd {
    ~AtTheEnd() {
        has_given_up = true;
        std::exchange(heap_, nullptr)->leave();
    }
};

bool ThreadHeap::may_have_one() noexcept {
    return !has_given_up;
}

bool ThreadHeap::set(SlabHeap* heap) noexcept {
    heap_ = heap;
    static thread_local AtTheEnd at_the_end; // its destructor runs when the thread ends
    static_cast<void>(&at_the_end);
    return true;
}

} // namespace bk

#endif
