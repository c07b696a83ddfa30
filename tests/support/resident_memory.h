#pragma once

#include "tests/support/sanitizer.h"

#include <cstdio>

#if defined(__linux__)
#include <malloc.h>
#include <unistd.h>
#endif

/// The memory of this process that is in the machine's, in bytes; negative where that cannot be told. What the C library
/// keeps for later use is given back first. A sanitizer keeps freed blocks, so that nothing can be told under one.
inline double resident_memory() {
#if defined(__linux__) && !defined(BK_PARSER_SANITIZED_MEMORY)
    malloc_trim(0);
    long total_pages = 0;
    long resident_pages = -1;
    std::FILE* const file = std::fopen("/proc/self/statm", "r");
    if (file == nullptr) {
        return -1.0;
    }
    const bool is_read = std::fscanf(file, "%ld %ld", &total_pages, &resident_pages) == 2;
    std::fclose(file);
    return is_read ? static_cast<double>(resident_pages) * static_cast<double>(sysconf(_SC_PAGESIZE)) : -1.0;
#else
    return -1.0;
#endif
}
