#pragma once

#include "core/sys_device.h"

namespace bkdoc {

/// While it lives, the library reaches the disk through it. Every call goes on to the device that was in use before; a derived
/// class overrides the calls that it handles itself.
class DeviceLayer : public SysDevice {
public:
    DeviceLayer() : beneath_(SysDevice::get()) { SysDevice::set(this); }
    ~DeviceLayer() override { SysDevice::set(&beneath_); }
    DeviceLayer(const DeviceLayer&) = delete;
    DeviceLayer& operator=(const DeviceLayer&) = delete;

    SysPathInfo inspect(const std::string& path) override { return beneath_.inspect(path); }
    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override {
        return beneath_.open_for_reading(path);
    }
    std::unique_ptr<SysHandle> open_in_place(const std::string& path) override {
        return beneath_.open_in_place(path);
    }
    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created_path) override {
        return beneath_.create_beside(target, created_path);
    }
    bool replace(const std::string& from, const std::string& to) override {
        return beneath_.replace(from, to);
    }
    bool remove(const std::string& path) override { return beneath_.remove(path); }
    std::string resolve_links(const std::string& path) override { return beneath_.resolve_links(path); }
    std::string current_folder() override { return beneath_.current_folder(); }

protected:
    SysDevice& beneath() const noexcept { return beneath_; }

private:
    SysDevice& beneath_;
};

} // namespace bkdoc
