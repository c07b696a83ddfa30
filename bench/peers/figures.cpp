#include "bench/peers/figures.h"

#include "bench/peers/targets.h"

#include <fstream>
#include <iomanip>

namespace bench {

namespace {

std::string processor() {
    std::ifstream info("/proc/cpuinfo");
    for (std::string line; std::getline(info, line);) {
        const std::size_t colon = line.find(": ");
        if (line.starts_with("model name") && colon != std::string::npos) {
            return line.substr(colon + 2);
        }
    }
    return "an unknown processor";
}

void write_rates(std::ofstream& out, const Results& results) {
    std::string rule = "|---|";
    out << "| |";
    for (unsigned int i = 0; i < operation_count; ++i) {
        if (is_measured(results, static_cast<Operation>(i))) {
            out << ' ' << operation_titles[i] << " |";
            rule += "---:|";
        }
    }
    out << '\n' << rule << '\n';
    for (const PeerKind& peer : all_peers()) {
        if (!takes_part(results, peer)) {
            continue;
        }
        out << "| " << peer.name << (peer.is(PeerKind::READ_ONLY) ? ", read-only |" : " |");
        for (unsigned int i = 0; i < operation_count; ++i) {
            const auto operation = static_cast<Operation>(i);
            const double rate = results.rate(peer.name, operation);
            if (is_measured(results, operation) && rate >= 0.0) {
                out << ' ' << rate << " |";
            } else if (is_measured(results, operation)) {
                out << " |";
            }
        }
        out << '\n';
    }
}

void write_target(std::ofstream& out, const Target& target) {
    out << "| " << target.what << " | " << target.reached << " | " << target.wanted << " | "
        << (target.is_reached ? "reached" : "**not reached**") << " |\n";
}

void begin_targets(std::ofstream& out) {
    out << "\n| target | is | wanted | |\n|---|---:|---:|---|\n";
}

} // namespace

void write_figures(const std::vector<Raced>& raced, const std::string& path) {
    std::ofstream out(path);
    out << std::fixed << std::setprecision(2);
    out << "# Performance figures\n\nWritten by `bench/peers/run --plot`, on " << processor() << ", with "
        <<
#if defined(__clang__)
        "clang++ " << __clang_major__
#else
        "g++ " << __GNUC__
#endif
        << ". Medians, in millions of values a second; for the edit, in millions of changes a second; in the "
           "column \"bytes\", bytes per value. [performance.md](performance.md) explains the columns and the "
           "names.\n";
    for (const Raced& race : raced) {
        out << "\n## " << race.corpus.name << ", " << static_cast<std::size_t>(race.corpus.values)
            << " values\n\n";
        write_rates(out, race.results);
        begin_targets(out);
        for (const Target& target : targets_over(race.corpus, race.results)) {
            write_target(out, target);
        }
    }
    out << "\n## Keystream\n";
    begin_targets(out);
    write_target(out, keystream_target());
}

} // namespace bench
