#include "bench/peers/corpora.h"

#include "bench/curves.h"
#include "bench/peers/json_source.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace bench {

namespace {

void write_file(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

Corpus write_all(const std::string& name, const Document& document, const std::string& target) {
    Corpus corpus;
    corpus.name = name;
    corpus.path = target + "/" + name;
    corpus.values = static_cast<double>(document.value_count());
    corpus.is_numeric = document.decimal_count() > document.value_count() * 9 / 10;
    for (const Form form : all_forms) {
        write_file(corpus.path + "." + form_name(form), write_form(document, form));
    }
    write_file(corpus.path + ".kinds", xml_kinds(document));
    return corpus;
}

struct Generated {
    const char* name;
    void (*make)(SceneSink& sink, unsigned int value_count, std::uint64_t seed);
    unsigned int value_count;
};

constexpr Generated generated[] = {
    {"scene_1m", make_scene, 1000000}, {"scene_10k", make_scene, 10000}, {"curves", make_curves, 1000000}};

std::vector<std::filesystem::path> json_files(const std::string& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".json") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

bool is_wanted(const std::string& name, const std::string& only) {
    return only.empty() || name == only;
}

} // namespace

TemporaryFolder::TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "bk_parser_peers_XXXXXX").string();
    path_ = mkdtemp(name.data()) == nullptr ? std::string() : name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::vector<Corpus> make_corpora(const std::string& folder, const std::string& only,
                                 const std::string& target) {
    std::vector<Corpus> corpora;
    for (const Generated& from : generated) {
        if (is_wanted(from.name, only)) {
            Document document;
            from.make(document, from.value_count, 1);
            corpora.push_back(write_all(from.name, document, target));
            corpora.back().is_scene = from.make == make_scene;
        }
    }
    if (folder.empty()) {
        return corpora;
    }
    for (const std::filesystem::path& file : json_files(folder)) {
        if (!is_wanted(file.stem(), only)) {
            continue;
        }
        std::ifstream input(file, std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(input), {}};
        Document document;
        if (read_json(text, document)) {
            corpora.push_back(write_all(file.stem(), document, target));
        } else {
            std::fprintf(stderr, "%s: not an object in JSON\n", file.c_str());
        }
    }
    return corpora;
}

} // namespace bench
