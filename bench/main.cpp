// Times the steps in the life of a document over a small scene and a large one. What grows with the size of a
// document faster than the document shows in the ratio of the two times per value.

#include "bench/footprint.h"
#include "bench/phases.h"
#include "bench/scene_text.h"
#include "core/core_string.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <utility>

namespace {

constexpr unsigned int small_scene = 1000;
constexpr unsigned int large_scene = 1000000;
constexpr int repetitions = 5;

const CoreString& scene_text(unsigned int value_count) {
    static std::map<unsigned int, CoreString> texts;
    const auto [place, is_new] = texts.try_emplace(value_count);
    if (is_new) {
        place->second = CoreString(bench::make_scene_text(value_count, 1));
    }
    return place->second;
}

void run_phase(benchmark::State& state, const bench::Phase& phase, unsigned int value_count) {
    const CoreString& text = scene_text(value_count);
    for ([[maybe_unused]] auto iteration : state) {
        state.SetIterationTime(phase.run(text));
    }
}

std::string run_name(const bench::Phase& phase, unsigned int value_count) {
    return std::string(phase.name) + "/" + std::to_string(value_count);
}

/// Prints a line a benchmark and keeps its best time; a disturbance only ever makes a run longer.
class BestTimes : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& context) override {
        PrintBasicContext(&GetErrorStream(), context);
        return true;
    }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration && !run.error_occurred) {
                keep(run.run_name.function_name,
                     run.real_accumulated_time / static_cast<double>(run.iterations));
            }
        }
    }

    /// In nanoseconds; negative when that benchmark did not run.
    double per_value(const bench::Phase& phase, unsigned int value_count) const {
        const auto found = seconds_.find(run_name(phase, value_count));
        return found == seconds_.end() ? -1.0 : found->second * 1e9 / value_count;
    }

private:
    void keep(const std::string& name, double seconds) {
        const auto [place, is_new] = seconds_.try_emplace(name, seconds);
        place->second = std::min(place->second, seconds);
        if (is_new) {
            std::fprintf(stderr, "%s\n", name.c_str());
        }
    }

    std::map<std::string, double> seconds_;
};

void print_row(const char* name, double small, double large, const char* unit) {
    if (small > 0.0 && large > 0.0) {
        std::printf("%-12s %12.1f %12.1f %-6s %8.2f\n", name, small, large, unit, large / small);
    } else if (small > 0.0) {
        std::printf("%-12s %12.1f %12s %-6s\n", name, small, "", unit);
    }
}

void print_table(const BestTimes& times) {
    std::printf("\n%-12s %12u %12u %-6s %8s\n", "per value", small_scene, large_scene, "", "ratio");
    for (const bench::Phase& phase : bench::phases) {
        print_row(phase.name, times.per_value(phase, small_scene), times.per_value(phase, large_scene), "ns");
    }
}

struct Footprint {
    double small = bench::resident_bytes_per_copy(scene_text(small_scene), large_scene / small_scene);
    double large = bench::resident_bytes_per_copy(scene_text(large_scene), 1);
};

void print_footprint(const Footprint& footprint) {
    print_row("memory", footprint.small / small_scene, footprint.large / large_scene, "bytes");
    print_row("text", static_cast<double>(scene_text(small_scene).get_length()) / small_scene,
              static_cast<double>(scene_text(large_scene).get_length()) / large_scene, "bytes");
}

} // namespace

int main(int argc, char** argv) {
    for (const bench::Phase& phase : bench::phases) {
        for (const unsigned int value_count : {small_scene, large_scene}) {
            benchmark::RegisterBenchmark(
                run_name(phase, value_count).c_str(),
                [&phase, value_count](benchmark::State& state) { run_phase(state, phase, value_count); })
                ->UseManualTime()
                ->Unit(benchmark::kMicrosecond)
                ->Repetitions(repetitions);
        }
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    const Footprint footprint; // first, while nothing has been allocated and given back
    BestTimes times;
    benchmark::RunSpecifiedBenchmarks(&times);
    print_table(times);
    print_footprint(footprint);
    return 0;
}
