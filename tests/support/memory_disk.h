#pragma once

#include "tests/support/memory_device.h"

#include <memory>
#include <string>
#include <utility>

/// A disk in memory. It keeps what is written to it. All other files are missing, also those on the real disk.
class MemoryDisk : public MemoryDevice {
public:
    /// How many more files can be opened for reading.
    unsigned int opens_left = 0xFFFFFFFFu;

    SysPathInfo inspect(const std::string& path) override {
        return files.contains(name_of(path)) ? MemoryDevice::inspect(path) : SysPathInfo();
    }
    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override {
        if (opens_left == 0 || !files.contains(name_of(path))) {
            return nullptr;
        }
        --opens_left;
        return MemoryDevice::open_for_reading(path);
    }
    std::unique_ptr<SysHandle> open_in_place(const std::string&) override { return nullptr; }
    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created_path) override {
        created_path = target + ".new";
        return std::make_unique<Writer>(files[name_of(created_path)] = std::string());
    }
    bool replace(const std::string& from, const std::string& to) override {
        files[name_of(to)] = std::move(files[name_of(from)]);
        return remove(from);
    }
    bool remove(const std::string& path) override { return files.erase(name_of(path)) != 0; }
    std::string resolve_links(const std::string& path) override { return path; }
    std::string current_folder() override { return "/memory"; }

private:
    class Writer : public SysHandle {
    public:
        explicit Writer(std::string& file) : file_(file) {}

        core_int64 read(char*, std::size_t) override { return -1; }
        core_int64 write(const char* data, std::size_t size) override {
            file_.append(data, size);
            return static_cast<core_int64>(size);
        }
        bool sync() override { return true; }
        bool close() override { return true; }

    private:
        std::string& file_;
    };

    static std::string name_of(const std::string& path) { return path.substr(path.find_last_of("/\\") + 1); }
};
