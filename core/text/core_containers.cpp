#include "core/core_containers.h"

#include "core/memory/core_count_impl.h"

// In a file of its own: tests replace core_memory.cpp.

// In a shared library for Windows a constant has no place for callers to import without this.
constexpr std::size_t CoreMemory::largest_slab_block; // NOLINT(readability-redundant-declaration)

void CoreMemory::refuse_count() {
    throw bk::CountRefused("more than 4294967295 elements");
}
