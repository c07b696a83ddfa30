// Doubles the inputs of many families. Fails when the time or the memory of one grows faster than its size, or takes more memory than a
// small constant times its size.

#include "bench/amplify.h"
#include "bench/child.h"
#include "tests/support/counting_log.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <limits>

namespace {

using namespace bench;

/// The largest growth of the time per doubling, on average over the doublings. 2 is proportional, and 4 is quadratic. The margin is for
/// slower caches and for logarithms. A single doubling may grow more, when the data no longer fit into a cache.
constexpr double most_growth = 2.6;
constexpr double most_memory_per_byte = 256.0;
/// Memory that does not depend on the input: tables, buffers of files, and what the allocator takes at once.
constexpr double free_memory = 4.0 * 1024 * 1024;
constexpr unsigned int doublings = 4;
constexpr unsigned int runs = 3;
/// A shorter time depends more on the clock and the caches than on the input.
constexpr double shortest = 1e-3;
/// How often a family is tried. Other programs can only lengthen a run, so one try within the limits is enough.
constexpr unsigned int tries = 6;

double processor_seconds() {
    std::timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// The cost of an input.
struct Cost {
    double seconds = std::numeric_limits<double>::max();
    double memory = 0.0; // the peak, less what was in use before; in bytes
    double bytes = 0.0;
};

/// Measures in a process of its own, so that memory that is left from one input does not count for another.
Cost measure(const Family& family, unsigned int count) {
    return in_child<Cost>([&] {
        const CountingLog log;
        const Work work = family.make(count);
        Cost cost;
        cost.bytes = static_cast<double>(work.bytes);
        for (unsigned int i = 0; i < runs; ++i) {
            work.prepare();
            const double before = i == 0 ? start_memory_peak() : 0.0;
            const double start = processor_seconds();
            work.run();
            cost.seconds = std::min(cost.seconds, processor_seconds() - start);
            cost.memory = i == 0 ? memory_peak() - before : cost.memory;
        }
        return cost;
    });
}

void keep_best(Cost& cost, const Cost& other) {
    cost.seconds = std::min(cost.seconds, other.seconds);
    cost.memory = std::min(cost.memory, other.memory);
}

/// Measures a family in all sizes.
class Series {
public:
    explicit Series(const Family& family) : family_(family) {
        counts_[0] = family.first_count;
        costs_[0] = measure(family, counts_[0]);
        while (costs_[0].seconds < shortest) {
            counts_[0] *= 2;
            costs_[0] = measure(family, counts_[0]);
        }
        for (unsigned int i = 1; i <= doublings; ++i) {
            counts_[i] = 2 * counts_[i - 1];
            costs_[i] = measure(family, counts_[i]);
        }
        for (unsigned int i = 1; i < tries && !holds(); ++i) {
            for (unsigned int k = 0; k <= doublings; ++k) {
                keep_best(costs_[k], measure(family, counts_[k]));
            }
        }
    }

    bool holds() const { return growth() <= most_growth && memory_per_byte() <= most_memory_per_byte; }

    void report() const {
        const Cost& last = costs_[doublings];
        std::printf("%-5s %-45s %8u %9.0f kB %8.1f ms  x %.2f %8.1f\n", holds() ? "" : "FAILS", family_.name,
                    counts_[doublings], last.bytes / 1024, last.seconds * 1e3, growth(), memory_per_byte());
        std::fflush(stdout);
    }

private:
    double growth() const { return std::pow(costs_[doublings].seconds / costs_[0].seconds, 1.0 / doublings); }
    double memory_per_byte() const {
        double worst = 0.0;
        for (const Cost& cost : costs_) {
            worst = std::max(worst, (cost.memory - free_memory) / cost.bytes);
        }
        return worst;
    }

    const Family& family_;
    unsigned int counts_[doublings + 1] = {};
    Cost costs_[doublings + 1];
};

} // namespace

int main(int argc, char** argv) {
    std::printf("%-5s %-45s %8s %12s %11s  %6s %8s\n", "", "family", "count", "input", "time", "growth",
                "B/byte");
    unsigned int failed = 0;
    unsigned int measured = 0;
    for (const auto* families : {&text_families(), &form_families(), &tree_families()}) {
        for (const Family& family : *families) {
            if (argc > 1 && std::strstr(family.name, argv[1]) == nullptr) {
                continue;
            }
            const Series series(family);
            series.report();
            ++measured;
            failed += series.holds() ? 0 : 1;
        }
    }
    std::printf("%u families, %u failed\n", measured, failed);
    return failed == 0 && measured != 0 ? 0 : 1;
}
