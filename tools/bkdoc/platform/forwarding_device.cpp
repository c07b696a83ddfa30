#include "platform/forwarding_device.h"

namespace bkdoc {

ForwardingDevice::ForwardingDevice() : beneath_(SysDevice::get()) {
    SysDevice::set(this);
}

ForwardingDevice::~ForwardingDevice() {
    SysDevice::set(&beneath_);
}

} // namespace bkdoc
