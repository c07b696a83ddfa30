#include "bench/scene_text.h"
#include "document/document.h"
#include "parser/parser_file.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

// What a save that keeps the layout costs, measured against reading the document: seconds of the process's work, the least of
// several rounds. The disk's own time is not counted. Usage: bk_parser_save_bench [values] [rounds] [folder]

namespace {

constexpr unsigned int usual_values = 5830000; // a scene of 100 MB
constexpr int usual_rounds = 5;

double now() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// The least that a step took.
struct Step {
    const char* name;
    double least = 1e9;

    void note(double seconds) { least = seconds < least ? seconds : least; }
};

double seconds_of_read(const std::string& path) {
    ParserFile file{CoreString()};
    const double start = now();
    file.read(CoreString(std::string_view(path)), "", nullptr);
    return now() - start;
}

/// Another string at each call, in the middle of the document.
void change(bk_parser::Document& document, int round) {
    ParserGroup& root = document.root();
    unsigned int at = root.get_entry_count() / 2;
    while (!root.get_entry(at)->is_group()) {
        ++at;
    }
    root.get_entry(at)->get_group(0)->get_entries()[0]->set_int(round + 1000, 0);
}

double seconds_of_save(bk_parser::Document& document) {
    const double start = now();
    const bk_parser::SaveResult result = bk_parser::save(document);
    const double seconds = now() - start;
    if (!result.ok()) {
        std::fprintf(stderr, "%s\n", result.reason.c_str());
        std::exit(1);
    }
    return seconds;
}

} // namespace

int main(int count, char** arguments) {
    const auto values = count > 1 ? static_cast<unsigned int>(std::atoi(arguments[1])) : usual_values;
    const int rounds = count > 2 ? std::atoi(arguments[2]) : usual_rounds;
    const std::filesystem::path folder =
        count > 3 ? std::filesystem::path(arguments[3]) : std::filesystem::temp_directory_path();
    const std::string path = (folder / "bk_parser_save_bench.bkd").string();
    std::ofstream(path, std::ios::binary) << "#Brellwick_Serial_Version 1.2\n"
                                          << bench::make_scene_text(values, 1);
    std::printf("document: %.1f MB\n", static_cast<double>(std::filesystem::file_size(path)) / 1e6);

    Step read{"ParserFile::read"};
    Step unchanged{"save, nothing changed"};
    Step value{"save, one value changed"};
    Step line{"save, one entry added"};
    for (int round = 0; round < rounds; ++round) {
        read.note(seconds_of_read(path));
        bk_parser::LoadResult loaded = bk_parser::load(path);
        unchanged.note(seconds_of_save(loaded.document));
        change(loaded.document, round);
        value.note(seconds_of_save(loaded.document));
        ParserGroup& root = loaded.document.root();
        root.add_entry("added", 0, 0)->add_int(1);
        root.move_entry(root.get_entries().get_count() - 1, root.get_entries().get_count() / 2);
        line.note(seconds_of_save(loaded.document));
    }
    std::printf("%-26s %7.3f s\n", read.name, read.least);
    for (const Step* const step : {&unchanged, &value, &line}) {
        std::printf("%-26s %7.3f s  %5.2f of reading\n", step->name, step->least, step->least / read.least);
    }
    std::filesystem::remove(path);
    return 0;
}
