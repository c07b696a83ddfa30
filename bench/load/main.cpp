// Compares `load` with ParserFile::read on documents without problems. Runs both in turns, and prints medians. A load does more: it finds
// problems, records where each byte came from, and hashes the files.

#include "bench/curves.h"
#include "bench/scene_text.h"
#include "document/document.h"
#include "parser/parser_file.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr double most = 1.1;
constexpr unsigned int values_timed = 8000000; // values of one kind of document in all repetitions together
constexpr unsigned int least_repetitions = 12;
constexpr unsigned int most_repetitions = 1001;
constexpr double mebibyte = 1024.0 * 1024.0;

/// Measures processor time, which other programs hardly lengthen. The files are in the system's cache.
double seconds_since(std::clock_t start) {
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// Both keep the tree, so that its destruction is not timed.
double time_read(const std::filesystem::path& path) {
    ParserFile file{CoreString()};
    const std::string name = path.string();
    const auto start = std::clock();
    file.read(CoreString(std::string_view(name)), CoreString(), nullptr);
    return seconds_since(start);
}

double time_load(const std::filesystem::path& path, const bk_parser::LoadOptions& options) {
    const auto start = std::clock();
    const bk_parser::LoadResult result = bk_parser::load(path, options);
    const double seconds = seconds_since(start);
    if (!result.problems.empty()) {
        std::printf("%s: %s\n", path.string().c_str(), result.problems[0].message.c_str());
    }
    return seconds;
}

double median(std::vector<double>& samples) {
    std::sort(samples.begin(), samples.end());
    return samples[samples.size() / 2];
}

void compare(const char* name, const std::filesystem::path& path, double megabytes, unsigned int values) {
    const unsigned int repetitions = std::clamp(values_timed / values, least_repetitions, most_repetitions);
    bk_parser::LoadOptions watched;
    watched.progress = [](double) { return true; };
    std::vector<double> reads;
    std::vector<double> loads;
    std::vector<double> watched_loads;
    // The order matters, because each one reuses the memory that the one before freed. So all orders are run.
    std::array<unsigned int, 3> order{0, 1, 2};
    for (unsigned int i = 0; i < repetitions; ++i, std::next_permutation(order.begin(), order.end())) {
        for (const unsigned int which : order) {
            if (which == 0) {
                reads.push_back(time_read(path));
            } else if (which == 1) {
                loads.push_back(time_load(path, {}));
            } else {
                watched_loads.push_back(time_load(path, watched));
            }
        }
    }
    const double read = median(reads);
    const double load = median(loads);
    const double watched_load = median(watched_loads);
    std::printf("%-10s %8.1f MiB %10.1f ms %10.1f ms %8.3f %8.3f  %s\n", name, megabytes, read * 1e3,
                load * 1e3, load / read, watched_load / read,
                load <= most * read ? "reached" : "NOT REACHED");
    std::fflush(stdout);
}

/// Uses version 1.2, because escapes are a problem in versions before 1.1.
void store(const std::filesystem::path& path, std::string_view text) {
    std::ofstream file(path, std::ios::binary);
    file << "#Brellwick_Serial_Version 1.2\n";
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
}

std::string with_comments(std::string_view text) {
    std::string commented;
    std::size_t lines = 0;
    for (const char c : text) {
        if (c == '\n' && ++lines % 4 == 0) {
            commented += " // a comment that says something\n";
        }
        commented += c;
    }
    return commented;
}

} // namespace

/// Also times the documents that the arguments name.
int main(int count, char** arguments) {
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "bk_parser_bench_load";
    std::filesystem::create_directories(folder);
    const std::filesystem::path path = folder / "main.bkd";
    std::printf("%-10s %12s %13s %13s %8s %8s\n", "document", "size", "read", "load", "ratio", "watched");
    for (const unsigned int values : {1000u, 100000u, 1000000u}) {
        const std::string text = bench::make_scene_text(values, 1);
        store(path, text);
        compare("scene", path, static_cast<double>(text.size()) / mebibyte, values);
        const std::string commented = with_comments(text);
        store(path, commented);
        compare("comments", path, static_cast<double>(commented.size()) / mebibyte, values);
    }
    constexpr unsigned int curve_values = 1000000;
    bench::SceneText curves;
    bench::make_curves(curves, curve_values, 1);
    store(path, curves.get_text());
    compare("curves", path, static_cast<double>(curves.get_text().size()) / mebibyte, curve_values);
    for (int i = 1; i < count; ++i) {
        const std::filesystem::path given = std::filesystem::absolute(arguments[i]);
        const auto size = static_cast<double>(std::filesystem::file_size(given));
        constexpr double bytes_of_value = 10;
        compare(given.stem().string().c_str(), given, size / mebibyte,
                static_cast<unsigned int>(size / bytes_of_value) + 1);
    }
    std::filesystem::remove_all(folder);
    return 0;
}
