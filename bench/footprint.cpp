#include "bench/footprint.h"

#if defined(__linux__)

#include "core/core_version.h"
#include "parser/parser_group.h"

#include <cstdio>
#include <malloc.h>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace bench {

namespace {

double resident_bytes() {
    long total_pages = 0;
    long resident_pages = -1;
    if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &total_pages, &resident_pages) != 2) {
            resident_pages = -1;
        }
        std::fclose(file);
    }
    return static_cast<double>(resident_pages) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

double measure(const CoreString& text, unsigned int copies) {
    std::vector<std::unique_ptr<ParserGroup>> documents;
    documents.reserve(copies);
    malloc_trim(0);
    const double before = resident_bytes();
    for (unsigned int i = 0; i < copies; ++i) {
        documents.push_back(std::make_unique<ParserGroup>("root"));
        documents.back()->set_text(text, CoreVersion(1.2), nullptr);
    }
    return (resident_bytes() - before) / copies;
}

} // namespace

double resident_bytes_per_copy(const CoreString& text, unsigned int copies) {
    int ends[2];
    if (pipe(ends) != 0) {
        return -1.0;
    }
    const pid_t child = fork();
    if (child == 0) {
        const double result = measure(text, copies);
        const bool sent = write(ends[1], &result, sizeof(result)) == sizeof(result);
        _exit(sent ? 0 : 1);
    }
    close(ends[1]);
    double result = -1.0;
    if (child < 0 || read(ends[0], &result, sizeof(result)) != sizeof(result)) {
        result = -1.0;
    }
    close(ends[0]);
    if (child > 0) {
        waitpid(child, nullptr, 0);
    }
    return result;
}

} // namespace bench

#else

namespace bench {

double resident_bytes_per_copy(const CoreString&, unsigned int) {
    return -1.0;
}

} // namespace bench

#endif
