#include "core/core_memory.h"

#include <new>

void* CoreMemory::allocate(std::size_t size) {
    return ::operator new(size);
}

void CoreMemory::release(void* block, std::size_t) noexcept {
    ::operator delete(block);
}
