#pragma once

#include "tests/support/forwarding_device.h"

#include <memory>
#include <string>

/// A full disk: files can be created, but nothing can be written to them.
class FullDisk : public ForwardingDevice {
public:
    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created) override {
        auto inner = ForwardingDevice::create_beside(target, created);
        return inner ? std::make_unique<Handle>(std::move(inner)) : nullptr;
    }

private:
    class Handle : public ForwardingHandle {
    public:
        using ForwardingHandle::ForwardingHandle;
        core_int64 write(const char*, std::size_t) override { return -1; }
    };
};
