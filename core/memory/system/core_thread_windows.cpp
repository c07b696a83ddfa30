#if defined(_WIN32)

#include "core/memory/core_slab_impl.h"
#include "core/memory/system/core_thread_impl.h"

#include <windows.h>

// MinGW frees the memory of a thread's thread_local variables before it destroys thread_local objects. A destructor would find no
// heap in such a variable. So a slot of the system holds the heap, and the loader calls the library when a thread ends.

namespace bk {

namespace {

/// No slot before the loader's first call and after its last one, nor when the system has none left. Then no thread has a heap.
constinit DWORD slot = TLS_OUT_OF_INDEXES;

/// Its address is in the slot of a thread that has given its heap up.
constinit char given_up = 0;

/// Reading a slot clears the last error of the system, which belongs to the host.
void* slot_value() noexcept {
    const DWORD error = GetLastError();
    void* const value = TlsGetValue(slot);
    SetLastError(error);
    return value;
}

void NTAPI on_thread_or_process(void*, DWORD reason, void* is_process_ending) noexcept {
    if (reason == DLL_PROCESS_ATTACH) {
        slot = TlsAlloc();
    } else if (reason == DLL_THREAD_DETACH) {
        SlabHeap* const heap = ThreadHeap::get();
        TlsSetValue(slot, &given_up);
        if (heap != nullptr) {
            heap->leave();
        }
    } else if (reason == DLL_PROCESS_DETACH && is_process_ending == nullptr) {
        TlsFree(slot);
        slot = TLS_OUT_OF_INDEXES;
    }
}

} // namespace

SlabHeap* ThreadHeap::get() noexcept {
    void* const value = slot_value();
    return value != &given_up ? static_cast<SlabHeap*>(value) : nullptr;
}

bool ThreadHeap::may_have_one() noexcept {
    return slot != TLS_OUT_OF_INDEXES && slot_value() != &given_up;
}

bool ThreadHeap::set(SlabHeap* heap) noexcept {
    return TlsSetValue(slot, heap) != 0;
}

} // namespace bk

// The loader calls the functions in this section, in programs and in DLLs. Its first call comes before static constructors run.
#if defined(_MSC_VER)
#pragma comment(linker, "/INCLUDE:_tls_used")
#pragma section(".CRT$XLF", long, read)
extern "C" __declspec(allocate(".CRT$XLF")) const PIMAGE_TLS_CALLBACK bk_parser_thread_callback =
    bk::on_thread_or_process;
#pragma comment(linker, "/INCLUDE:bk_parser_thread_callback")
#else
extern "C" __attribute__((section(".CRT$XLF"), used)) const PIMAGE_TLS_CALLBACK bk_parser_thread_callback =
    bk::on_thread_or_process;
#endif

#endif
