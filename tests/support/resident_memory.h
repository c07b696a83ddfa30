#pragma once

#include "tests/support/sanitizer.h"

#include <cstdio>

#if defined(__linux__)
#include <malloc.h>
#include <unistd.h>
#endif

/// The resident memory of this process in bytes; negative when it is not known. First makes the C library give back free memory. Not known
/// under a sanitizer, which keeps freed blocks.
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
