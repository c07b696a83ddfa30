#include "document/strings.h"
#include "parser/parser_file.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

namespace fs = std::filesystem;

/// Caches the binary form of a document. Uses the cache while it is newer than each file it was made of.
namespace {

const fs::path source = "project/harbour.bkd";
const fs::path cache = "harbour.cache";
const fs::path list = "harbour.files"; // the files that the cache was made of, one per line

bool is_fresh() {
    std::ifstream lines(list);
    bool has_lines = false;
    for (std::string line; std::getline(lines, line); has_lines = true) {
        if (!fs::exists(line) || fs::last_write_time(line) > fs::last_write_time(cache)) {
            return false;
        }
    }
    return has_lines && fs::exists(cache);
}

bool read_cache(ParserFile& document) {
    std::ifstream stream(cache, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    CoreVector<char> data;
    for (const char byte : bytes) {
        data.add(byte);
    }
    return document.set_binary(data);
}

bool read_source(ParserFile& document) {
    document.set_search_paths({"project/library", "project/shots"});
    if (!document.read(source.string().c_str(), "", nullptr)) {
        return false;
    }
    std::ofstream lines(list);
    lines << source.string() << "\n";
    for (const CoreString& path : document.get_dependencies()) {
        lines << path << "\n";
    }
    lines.close();
    const CoreVector<char> data = document.get_binary();
    std::ofstream(cache, std::ios::binary).write(data.get_data(), data.get_count());
    return true;
}

void show() {
    ParserFile document("");
    const bool is_cached = is_fresh();
    if (is_cached ? read_cache(document) : read_source(document)) {
        std::cout << (is_cached ? "from the cache: " : "from the text: ")
                  << document.get_root().get_entries().get_count() << " entries\n";
    }
}

} // namespace

int main() {
    show();
    show();
    fs::last_write_time(source, fs::last_write_time(cache) + std::chrono::seconds(2)); // as if it were edited
    show();
}
