#pragma once

#include "tests/support/forwarding_device.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <string_view>

/// Serves files from memory by their names, as long as it lives; what it does not hold is asked of the device that
/// was in use before.
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

    /// By the last part of the path, so that a file is found however the name was made absolute.
    std::map<std::string, std::string, std::less<>>::const_iterator find(const std::string& path) const {
        return files.find(path.substr(path.find_last_of("/\\") + 1));
    }
};
