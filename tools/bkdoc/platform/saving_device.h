#pragma once

#include "platform/device_layer.h"

namespace bkdoc {

/// While it lives, a signal that ends the tool first removes the unfinished files of a save. All calls go on to the device that
/// was in use before.
class SavingDevice : public DeviceLayer {
public:
    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created_path) override;
    bool replace(const std::string& from, const std::string& to) override;
    bool remove(const std::string& path) override;
};

} // namespace bkdoc
