#include "bench/peers/plot.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace bench {

namespace {

/// One chart, with a bar for each peer and corpus.
struct Picture {
    const char* file;
    const char* title;
    Operation operation;
};

constexpr Picture pictures[] = {
    {"parse_walk", "Parse and walk, millions of values a second", Operation::parse_walk},
    {"first", "First parse of a fresh process, millions of values a second", Operation::first},
    {"print", "Print compact, millions of values a second", Operation::print_compact},
    {"edit", "Edit, millions of changes a second", Operation::edit},
    {"encode", "Binary encode, millions of values a second", Operation::encode},
    {"decode", "Binary decode and walk, millions of values a second", Operation::decode_walk},
    {"memory", "Memory, bytes per value", Operation::memory}};

std::vector<const PeerKind*> peers_with(const std::vector<Raced>& raced, Operation operation) {
    std::vector<const PeerKind*> peers;
    for (const PeerKind& peer : all_peers()) {
        for (const Raced& race : raced) {
            if (race.results.rate(peer.name, operation) > 0.0) {
                peers.push_back(&peer);
                break;
            }
        }
    }
    return peers;
}

void write_data(const std::vector<Raced>& raced, Operation operation, const std::string& path) {
    std::ofstream out(path);
    out << "peer";
    for (const Raced& race : raced) {
        out << '\t' << race.corpus.name;
    }
    out << '\n';
    for (const PeerKind* peer : peers_with(raced, operation)) {
        out << peer->name << (peer->is(PeerKind::READ_ONLY) ? " (read-only)" : "");
        for (const Raced& race : raced) {
            const double rate = race.results.rate(peer->name, operation);
            out << '\t' << (rate > 0.0 ? rate : 0.0);
        }
        out << '\n';
    }
}

void write_script(const Picture& picture, std::size_t corpus_count, const std::string& data,
                  const std::string& output, const std::string& path) {
    std::ofstream(path) << "set terminal svg size 900,420 font 'sans-serif,12' background '#ffffff'\n"
                        << "set output '" << output << "'\n"
                        << "set title '" << picture.title << "'\n"
                        << "set datafile separator '\\t'\n"
                        << "set style data histograms\nset style histogram clustered gap 1\n"
                        << "set style fill solid 1.0 noborder\nset boxwidth 0.9\n"
                        << "set linetype 1 lc rgb '#1f4e79'\nset linetype 2 lc rgb '#5b9bd5'\n"
                        << "set linetype 3 lc rgb '#e0a030'\nset linetype 4 lc rgb '#3a7d44'\n"
                        << "set linetype 5 lc rgb '#b5446e'\n"
                        << "set key outside top right noenhanced\nset grid ytics\n"
                        << "set xtics rotate by -35 noenhanced\nset yrange [0:*]\n"
                        << "plot for [i=2:" << corpus_count + 1 << "] '" << data
                        << "' using i:xtic(1) title columnheader(i)\n";
}

bool draw(const Picture& picture, const std::vector<Raced>& raced, const std::string& scratch,
          const std::string& folder) {
    if (peers_with(raced, picture.operation).empty()) {
        return true;
    }
    const std::string data = scratch + "/" + picture.file + ".dat";
    const std::string script = scratch + "/" + picture.file + ".gp";
    write_data(raced, picture.operation, data);
    write_script(picture, raced.size(), data, folder + "/performance_" + picture.file + ".svg", script);
    return std::system(("gnuplot '" + script + "'").c_str()) == 0;
}

} // namespace

bool plot(const std::vector<Raced>& raced, const std::string& scratch, const std::string& folder) {
    bool is_drawn = true;
    for (const Picture& picture : pictures) {
        is_drawn = draw(picture, raced, scratch, folder) && is_drawn;
    }
    return is_drawn;
}

} // namespace bench
