#pragma once

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/wait.h>
#include <type_traits>
#include <unistd.h>

namespace bench {

/// Does the work in a child process and returns its result. Ends the program when the child fails.
template <class Result, class Work>
Result in_child(Work work) {
    static_assert(std::is_trivially_copyable_v<Result>);
    int ends[2];
    const pid_t child = pipe(ends) == 0 ? fork() : -1;
    if (child == 0) {
        const Result result = work();
        _exit(write(ends[1], &result, sizeof(result)) == sizeof(result) ? 0 : 1);
    }
    Result result{};
    bool is_told = false;
    if (child > 0) {
        close(ends[1]);
        is_told = read(ends[0], &result, sizeof(result)) == sizeof(result);
        close(ends[0]);
        waitpid(child, nullptr, 0);
    }
    if (!is_told) {
        std::fprintf(stderr, "a child process has failed\n");
        std::exit(2);
    }
    return result;
}

/// The value of a line of /proc/self/status in bytes; 0 on systems without that file.
inline double process_status(const char* field) {
    double kilobytes = 0.0;
    if (std::FILE* const file = std::fopen("/proc/self/status", "r")) {
        char line[256];
        while (std::fgets(line, sizeof(line), file) != nullptr) {
            if (std::strncmp(line, field, std::strlen(field)) == 0) {
                kilobytes = std::strtod(line + std::strlen(field), nullptr);
            }
        }
        std::fclose(file);
    }
    return kilobytes * 1024;
}

/// Resets the peak of the memory in use, and returns the memory in use now.
inline double start_memory_peak() {
    if (std::FILE* const file = std::fopen("/proc/self/clear_refs", "w")) {
        std::fputs("5", file);
        std::fclose(file);
    }
    return process_status("VmRSS:");
}

/// The peak of the memory in use since then.
inline double memory_peak() {
    return process_status("VmHWM:");
}

} // namespace bench
