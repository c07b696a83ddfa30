#pragma once

#include "platform/forwarding_device.h"

namespace bkdoc {

/// While it lives, files that a save has not finished are removed when a signal ends the tool.
class SavingDevice : public ForwardingDevice {
public:
    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created_path) override;
    bool replace(const std::string& from, const std::string& to) override;
    bool remove(const std::string& path) override;
};

} // namespace bkdoc
