#pragma once

#include "core/sys_device.h"

#include <memory>
#include <string>
#include <utility>

/// While it lives, the library's calls on the device go through it. It forwards them to the device that was in use before. A test overrides
/// the calls that it wants to handle itself.
class ForwardingDevice : public SysDevice {
public:
    ForwardingDevice() : inner_(SysDevice::get()) { SysDevice::set(this); }
    ~ForwardingDevice() override { SysDevice::set(&inner_); }
    ForwardingDevice(const ForwardingDevice&) = delete;
    ForwardingDevice& operator=(const ForwardingDevice&) = delete;

    SysPathInfo inspect(const std::string& path) override { return inner_.inspect(path); }
    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override {
        return inner_.open_for_reading(path);
    }
    std::unique_ptr<SysHandle> open_in_place(const std::string& path) override {
        return inner_.open_in_place(path);
    }
    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created_path) override {
        return inner_.create_beside(target, created_path);
    }
    bool replace(const std::string& from, const std::string& to) override { return inner_.replace(from, to); }
    bool remove(const std::string& path) override { return inner_.remove(path); }
    std::string resolve_links(const std::string& path) override { return inner_.resolve_links(path); }
    std::string current_folder() override { return inner_.current_folder(); }

private:
    SysDevice& inner_;
};

/// Forwards every call to another handle, which it owns.
class ForwardingHandle : public SysHandle {
public:
    explicit ForwardingHandle(std::unique_ptr<SysHandle> inner) : inner_(std::move(inner)) {}

    core_int64 read(char* buffer, std::size_t size) override { return inner_->read(buffer, size); }
    core_int64 write(const char* data, std::size_t size) override { return inner_->write(data, size); }
    bool sync() override { return inner_->sync(); }
    bool close() override { return inner_->close(); }

private:
    std::unique_ptr<SysHandle> inner_;
};
