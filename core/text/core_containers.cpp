#include "core/core_containers.h"

#include "core/memory/core_count_impl.h"

// In a file of its own: tests replace core_memory.cpp.

// Without this definition, a shared library for Windows has no address for the constant that callers could import.
constexpr std::size_t CoreMemory::largest_slab_block; // NOLINT(readability-redundant-declaration)

void CoreMemory::refuse_count() {
    throw bk::CountRefused("more than 4294967295 elements");
}
