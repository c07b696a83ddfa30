#pragma once

#include "core/sys_device.h"

namespace bkdoc {

/// While it lives, a file that a save has not finished is removed when a signal ends the tool. All paths go to the device
/// that was there before.
class SavingDevice : public SysDevice {
public:
    SavingDevice();
    ~SavingDevice() override;
    SavingDevice(const SavingDevice&) = delete;
    SavingDevice& operator=(const SavingDevice&) = delete;

    SysPathInfo inspect(const std::string& path) override;
    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override;
    std::unique_ptr<SysHandle> open_in_place(const std::string& path) override;
    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created_path) override;
    bool replace(const std::string& from, const std::string& to) override;
    bool remove(const std::string& path) override;
    std::string resolve_links(const std::string& path) override;
    std::string current_folder() override;

private:
    SysDevice& beneath_;
};

} // namespace bkdoc
