#pragma once

/// Initial-exec TLS: reading a thread's variable is one load. It uses static TLS space when the library is loaded by dlopen.
#if defined(__GNUC__) && !defined(_WIN32)
#define BK_TLS_MODEL __attribute__((tls_model("initial-exec")))
#else
#define BK_TLS_MODEL
#endif

namespace bk {

class SlabHeap;

/// The heap of the calling thread. A thread has no heap before its first allocation, nor after it gave its heap up, near its end. Its
/// thread_local objects may be destroyed even later, and may still allocate and free.
class ThreadHeap {
public:
    /// Null when the thread has no heap.
    static SlabHeap* get() noexcept;
    /// False when the thread has given its heap up. It then gets no other one, because nothing would give that one up.
    static bool may_have_one() noexcept;
    /// Gives the thread a heap, whose `leave` is called when the thread ends. Returns false when the system is out of memory.
    static bool set(SlabHeap* heap) noexcept;

#if !defined(_WIN32)

private:
    struct AtTheEnd;

    static constinit thread_local SlabHeap* heap_ BK_TLS_MODEL;
#endif
};

#if !defined(_WIN32)
inline SlabHeap* ThreadHeap::get() noexcept {
    return heap_;
}
#endif

} // namespace bk
