// Shows whether the cost per value grows with the size. Prints the time per value of each step for a small scene, for a hundred small
// scenes that are held at once, and for one scene a hundred times as large. Also prints the memory in use after the large scene was
// destroyed, and the memory of a document that is edited ten million times. What the large scene costs more than the hundred is due to the
// library. What the hundred cost more than one is due to the machine: fresh memory, and more of it than the caches hold.

#include "bench/phases.h"
#include "bench/scene_text.h"
#include "core/core_version.h"
#include "tests/support/live_document.h"
#include "tests/support/resident_memory.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

constexpr unsigned int small_count = 100000;
constexpr unsigned int large_count = 10000000;
constexpr unsigned int small_repetitions = 15;
constexpr unsigned int large_repetitions = 3;
constexpr double largest_growth = 1.3;
constexpr double mebibyte = 1024.0 * 1024.0;

const char* verdict(bool is_reached) {
    return is_reached ? "reached" : "NOT REACHED";
}

double median_seconds(const bench::Phase& phase, const CoreString& text, unsigned int copies,
                      unsigned int repetitions) {
    std::vector<double> samples;
    for (unsigned int i = 0; i < repetitions; ++i) {
        samples.push_back(phase.run(text, copies));
    }
    std::sort(samples.begin(), samples.end());
    return samples[samples.size() / 2];
}

void print_times(const CoreString& small, const CoreString& large) {
    constexpr unsigned int copies = large_count / small_count;
    std::printf("%-12s %10s %14s %12s %12s\n", "ns per value", "100,000", "100 x 100,000", "10,000,000",
                "large/small");
    for (const bench::Phase& phase : bench::phases) {
        const double of_small = median_seconds(phase, small, 1, small_repetitions) * 1e9 / small_count;
        const double of_many = median_seconds(phase, small, copies, large_repetitions) * 1e9 / large_count;
        const double of_large = median_seconds(phase, large, 1, large_repetitions) * 1e9 / large_count;
        std::printf("%-12s %10.2f %14.2f %12.2f %12.2f  %s\n", phase.name, of_small, of_many, of_large,
                    of_large / of_small, verdict(of_large <= largest_growth * of_small));
        std::fflush(stdout);
    }
}

void print_memory(const CoreString& text) {
    const double before = resident_memory();
    auto document = std::make_unique<ParserGroup>("root");
    document->set_text(text, CoreVersion(1.2), nullptr);
    const double held = resident_memory();
    document.reset();
    const double after = resident_memory();
    std::printf("\nresident MiB: %.1f before, %.1f with 10,000,000 values, %.1f after: %s\n",
                before / mebibyte, held / mebibyte, after / mebibyte, verdict(after <= 1.1 * before));
    std::fflush(stdout);
}

void print_edits() {
    constexpr unsigned int rounds = 10;
    constexpr unsigned int edits = 1000000;
    LiveDocument document(1);
    std::printf("\nresident MiB of a document under edits, after each million:");
    double first = 0.0;
    double last = 0.0;
    const auto start = std::chrono::steady_clock::now();
    for (unsigned int round = 0; round < rounds; ++round) {
        for (unsigned int i = 0; i < edits; ++i) {
            document.edit();
        }
        last = resident_memory();
        first = round == 0 ? last : first;
        std::printf(" %.1f", last / mebibyte);
        std::fflush(stdout);
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    std::printf(": %s\n%.0f ns an edit\n", verdict(last <= 1.1 * first),
                taken.count() * 1e9 / (rounds * static_cast<double>(edits)));
}

} // namespace

int main() {
    print_edits(); // first, before other documents took memory
    const CoreString large(bench::make_scene_text(large_count, 1));
    print_memory(large);
    std::printf("\n");
    print_times(CoreString(bench::make_scene_text(small_count, 1)), large);
    return 0;
}
