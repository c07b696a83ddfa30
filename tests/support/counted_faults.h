#pragma once

#include "tests/support/forwarding_device.h"

#include <algorithm>

/// Counts every call on the device and on its handles, and makes call number `n`, counted from 1, fail. A call that fails does nothing,
/// except that `close` closes the file.
class FaultAtCall : public ForwardingDevice {
public:
    explicit FaultAtCall(int n) : left_(n) {}

    /// Whether call number n was made.
    bool has_failed() const { return left_ <= 0; }

    SysPathInfo inspect(const std::string& path) override {
        return fails() ? SysPathInfo() : ForwardingDevice::inspect(path);
    }
    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override {
        return fails() ? nullptr : watched(ForwardingDevice::open_for_reading(path));
    }
    std::unique_ptr<SysHandle> open_in_place(const std::string& path) override {
        return fails() ? nullptr : watched(ForwardingDevice::open_in_place(path));
    }
    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created) override {
        return fails() ? nullptr : watched(ForwardingDevice::create_beside(target, created));
    }
    bool replace(const std::string& from, const std::string& to) override {
        return !fails() && ForwardingDevice::replace(from, to);
    }
    bool remove(const std::string& path) override { return !fails() && ForwardingDevice::remove(path); }
    std::string resolve_links(const std::string& path) override {
        return fails() ? std::string() : ForwardingDevice::resolve_links(path);
    }
    std::string current_folder() override {
        return fails() ? std::string() : ForwardingDevice::current_folder();
    }

private:
    class Handle : public ForwardingHandle {
    public:
        Handle(FaultAtCall& device, std::unique_ptr<SysHandle> inner)
            : ForwardingHandle(std::move(inner)), device_(device) {}

        core_int64 read(char* buffer, std::size_t size) override {
            return device_.fails() ? -1 : ForwardingHandle::read(buffer, size);
        }
        core_int64 write(const char* data, std::size_t size) override {
            return device_.fails() ? -1 : ForwardingHandle::write(data, size);
        }
        bool sync() override { return !device_.fails() && ForwardingHandle::sync(); }
        bool close() override {
            const bool closed = ForwardingHandle::close();
            return !device_.fails() && closed;
        }

    private:
        FaultAtCall& device_;
    };

    std::unique_ptr<SysHandle> watched(std::unique_ptr<SysHandle> inner) {
        return inner == nullptr ? nullptr : std::make_unique<Handle>(*this, std::move(inner));
    }
    bool fails() { return --left_ == 0; }

    int left_;
};

/// Reads and writes at most `most` bytes in each call.
class ShortCalls : public ForwardingDevice {
public:
    explicit ShortCalls(std::size_t most) : most_(most) {}

    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override {
        return shortened(ForwardingDevice::open_for_reading(path));
    }
    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created) override {
        return shortened(ForwardingDevice::create_beside(target, created));
    }

private:
    class Handle : public ForwardingHandle {
    public:
        Handle(std::size_t most, std::unique_ptr<SysHandle> inner)
            : ForwardingHandle(std::move(inner)), most_(most) {}

        core_int64 read(char* buffer, std::size_t size) override {
            return ForwardingHandle::read(buffer, std::min(size, most_));
        }
        core_int64 write(const char* data, std::size_t size) override {
            return ForwardingHandle::write(data, std::min(size, most_));
        }

    private:
        std::size_t most_;
    };

    std::unique_ptr<SysHandle> shortened(std::unique_ptr<SysHandle> inner) {
        return inner == nullptr ? nullptr : std::make_unique<Handle>(most_, std::move(inner));
    }

    std::size_t most_;
};
