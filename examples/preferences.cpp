#include "document/document.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <system_error>

/// Reads preferences with defaults, changes them, and saves them. Keeps what else the user wrote.
namespace {

namespace fs = std::filesystem;
const fs::path path = "preferences.bkd";

/// A missing file means a first start. An unreadable or faulty file is the user's: do not change it.
bool is_missing() {
    std::error_code error;
    return fs::status(path, error).type() == fs::file_type::not_found;
}

void start() {
    bk_parser::Document preferences;
    if (!is_missing()) {
        bk_parser::LoadResult loaded = bk_parser::load(path);
        for (const bk_parser::Problem& problem : loaded.problems) {
            std::cout << problem.file.string() << ":" << problem.line << ": " << problem.message << "\n";
        }
        if (!loaded.ok()) {
            std::cout << "correct the preferences; they are not saved\n";
            return;
        }
        preferences = std::move(loaded.document);
    }
    ParserGroup& root = preferences.root();
    const int width = bk_parser::get_or(root, "window/width", 1280);
    const std::string theme = bk_parser::get_or(root, "theme", "dark");
    std::cout << width << " " << theme << "\n";
    bk_parser::set(root, "window/width", width + 20);
    bk_parser::set(root, "theme", theme);
    const bk_parser::SaveResult saved = bk_parser::save(preferences, path);
    std::cout << (saved.ok() ? "saved" : saved.reason) << "\n";
}

} // namespace

int main() {
    start(); // there is no file
    start(); // the file of the first start
    std::ofstream(path, std::ios::app) << "\nsound true\n";
    start(); // a faulty file
}
