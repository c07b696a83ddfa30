#pragma once

#include "tests/support/forwarding_device.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <string_view>

/// While it lives, serves files from memory by their names. Forwards the calls for all other files to the device that was in use before.
class MemoryDevice : public ForwardingDevice {
public:
    std::map<std::string, std::string, std::less<>> files;

    SysPathInfo inspect(const std::string& path) override {
        const auto found = find(path);
        return found == files.end()
                   ? ForwardingDevice::inspect(path)
                   : SysPathInfo{SysPathKind::regular, static_cast<core_int64>(found->second.size())};
    }
    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override {
        const auto found = find(path);
        return found == files.end() ? ForwardingDevice::open_for_reading(path)
                                    : std::make_unique<Handle>(found->second);
    }

private:
    class Handle : public SysHandle {
    public:
        explicit Handle(std::string_view bytes) : rest_(bytes) {}

        core_int64 read(char* target, std::size_t size) override {
            const std::size_t taken = std::min(size, rest_.size());
            if (taken != 0) {
                std::memcpy(target, rest_.data(), taken);
            }
            rest_.remove_prefix(taken);
            return static_cast<core_int64>(taken);
        }
        core_int64 write(const char*, std::size_t) override { return -1; }
        bool sync() override { return true; }
        bool close() override { return true; }

    private:
        std::string_view rest_;
    };

    /// Finds a file by the last part of its path, so that it is found under every absolute path.
    std::map<std::string, std::string, std::less<>>::const_iterator find(const std::string& path) const {
        return files.find(path.substr(path.find_last_of("/\\") + 1));
    }
};
