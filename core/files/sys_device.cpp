#include "core/sys_device.h"

#include "core/files/sys_device_impl.h"

namespace {

constinit SysDevice* device_in_use = nullptr; // null stands for the platform's

} // namespace

SysHandle::~SysHandle() = default;

SysDevice::~SysDevice() = default;

SysDevice& SysDevice::get() {
    return device_in_use != nullptr ? *device_in_use : bk::platform_device();
}

void SysDevice::set(SysDevice* device) {
    device_in_use = device;
}
