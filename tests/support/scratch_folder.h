#pragma once

#include "core/core_string.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

/// A new empty folder. The destructor removes it with its content.
class ScratchFolder {
public:
    ScratchFolder() {
        std::random_device random;
        do {
            root_ = std::filesystem::temp_directory_path() / ("bk_parser_" + std::to_string(random()));
        } while (!std::filesystem::create_directory(root_));
        root_ = std::filesystem::canonical(root_);
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    /// The path of a file or folder in it, which need not exist. Uses slashes.
    std::string path(std::string_view name) const { return (root_ / name).generic_string(); }
    std::string path() const { return root_.generic_string(); }
    /// The absolute path as the library returns it, with the separators of the platform.
    std::string full_path(std::string_view name) const { return (root_ / name).make_preferred().string(); }
    CoreString core_path(std::string_view name) const { return CoreString(std::string_view(path(name))); }

    /// Makes a folder and the folders above it, and returns its path.
    std::string make_folder(std::string_view name) const {
        std::filesystem::create_directories(root_ / name);
        return path(name);
    }

    /// Stores a file, makes its folder if necessary, and returns its path.
    std::string write(std::string_view name, std::string_view bytes) const {
        const std::filesystem::path target = root_ / name;
        std::filesystem::create_directories(target.parent_path());
        std::ofstream stream(target, std::ios::binary);
        stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return path(name);
    }

    std::string read(std::string_view name) const {
        std::ifstream stream(root_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }

    bool exists(std::string_view name) const { return std::filesystem::exists(root_ / name); }

    /// How many files and folders are directly in it.
    std::size_t count() const {
        const std::filesystem::directory_iterator entries(root_);
        return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }

private:
    std::filesystem::path root_;
};
