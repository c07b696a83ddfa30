#include "core/core_containers.h"

#include "core/memory/core_count_impl.h"

// Apart from the storage itself, so that a program that brings its own can still link this.

// In a shared library for Windows a constant has no place for callers to import without this.
constexpr std::size_t CoreMemory::largest_slab_block; // NOLINT(readability-redundant-declaration)

void CoreMemory::refuse_count() {
    throw bk::CountRefused("more than 4294967295 elements");
}
