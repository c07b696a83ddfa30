#pragma once

#include <cstdio>

#if defined(__linux__)
#include <malloc.h>
#include <unistd.h>
#endif

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define BK_PARSER_SHADOWED_MEMORY 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(memory_sanitizer) || __has_feature(thread_sanitizer)
#define BK_PARSER_SHADOWED_MEMORY 1
#endif
#endif

/// The memory of this process that is in the machine's, in bytes; negative where that cannot be told. What the C library
/// keeps for later use is given back first. A sanitizer keeps freed blocks, so that nothing can be told under one.
inline double resident_memory() {
#if defined(__linux__) && !defined(BK_PARSER_SHADOWED_MEMORY)
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
