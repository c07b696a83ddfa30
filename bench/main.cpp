// Times the steps in the life of a document for a small scene, for many small scenes one after the other, and for a large one. The time per
// value shows a step whose cost grows faster than the document. The large scene compared with the small one also shows the effect of the
// machine's caches; compared with the many small ones it does not.

#include "bench/footprint.h"
#include "bench/phases.h"
#include "bench/scene_text.h"
#include "core/core_string.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <map>
#include <string>

namespace {

/// How many values each document has.
struct Load {
    const char* name;
    unsigned int value_count;
    unsigned int copies;
};

constexpr Load small = {"small", 1000, 1};
constexpr Load many = {"many", 1000, 1000};
constexpr Load large = {"large", 1000000, 1};
constexpr double none = -1.0;

const CoreString& text_of(const Load& load) {
    static std::map<unsigned int, CoreString> texts;
    const auto [place, is_new] = texts.try_emplace(load.value_count);
    if (is_new) {
        place->second = CoreString(bench::make_scene_text(load.value_count, 1));
    }
    return place->second;
}

double per_value(const Load& load, double amount) {
    return amount / load.value_count / load.copies;
}

/// The shortest time of each step, because other programs can only lengthen a run.
class BestTimes {
public:
    void keep(const bench::Phase& phase, const Load& load, double seconds) {
        const auto place = seconds_.try_emplace(key(phase, load), std::numeric_limits<double>::max()).first;
        place->second = std::min(place->second, seconds);
    }

    /// Nanoseconds a value, or `none`.
    double of(const bench::Phase& phase, const Load& load) const {
        const auto found = seconds_.find(key(phase, load));
        return found == seconds_.end() ? none : per_value(load, found->second * 1e9);
    }

private:
    static std::string key(const bench::Phase& phase, const Load& load) {
        return std::string(phase.name) + "/" + load.name;
    }

    std::map<std::string, double> seconds_;
};

void register_all(BestTimes& times) {
    for (const bench::Phase& phase : bench::phases) {
        for (const Load* load : {&small, &many, &large}) {
            const auto run = [&times, &phase, load](benchmark::State& state) {
                for ([[maybe_unused]] auto iteration : state) {
                    const double seconds = phase.run(text_of(*load), load->copies);
                    times.keep(phase, *load, seconds);
                    state.SetIterationTime(seconds);
                }
            };
            const std::string name = std::string(phase.name) + "/" + load->name;
            benchmark::RegisterBenchmark(name.c_str(), run)->UseManualTime()->Unit(benchmark::kMicrosecond);
        }
    }
}

void print_amount(double amount) {
    if (amount > 0.0) {
        std::printf(" %9.1f", amount);
    } else {
        std::printf(" %9s", "");
    }
}

void print_ratio(double amount, double base) {
    if (amount > 0.0 && base > 0.0) {
        std::printf(" %12.2f", amount / base);
    } else {
        std::printf(" %12s", "");
    }
}

void print_row(const char* name, const char* unit, double of_small, double of_many, double of_large) {
    std::printf("%-11s %-5s", name, unit);
    print_amount(of_small);
    print_amount(of_many);
    print_amount(of_large);
    print_ratio(of_large, of_small);
    print_ratio(of_large, of_many);
    std::printf("\n");
}

struct Footprint {
    double of_many = per_value(small, bench::resident_bytes_per_copy(text_of(many), many.copies));
    double of_large = per_value(large, bench::resident_bytes_per_copy(text_of(large), large.copies));
};

void print_table(const BestTimes& times, const Footprint& footprint) {
    std::printf("\nsmall: %u values; many: %u documents of %u values; large: %u values\n", small.value_count,
                many.copies, many.value_count, large.value_count);
    std::printf("%-11s %-5s %9s %9s %9s %12s %12s\n", "per value", "", small.name, many.name, large.name,
                "large/small", "large/many");
    for (const bench::Phase& phase : bench::phases) {
        print_row(phase.name, "ns", times.of(phase, small), times.of(phase, many), times.of(phase, large));
    }
    print_row("memory", "bytes", none, footprint.of_many, footprint.of_large);
    print_row("text", "bytes", none, per_value(small, text_of(small).get_length()),
              per_value(large, text_of(large).get_length()));
}

} // namespace

int main(int argc, char** argv) {
    BestTimes times;
    register_all(times);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    const Footprint footprint; // first, before anything was allocated and freed
    benchmark::RunSpecifiedBenchmarks();
    print_table(times, footprint);
    return 0;
}
