#pragma once

#include "platform/device_layer.h"

namespace bkdoc {

/// While it lives, files that a save has not finished are removed when a signal ends the tool. All paths go to the device
/// that was there before.
class SavingDevice : public DeviceLayer {
public:
    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created_path) override;
    bool replace(const std::string& from, const std::string& to) override;
    bool remove(const std::string& path) override;
};

} // namespace bkdoc
