#include "platform/saving_device.h"

#include "platform/unfinished_file.h"

namespace bkdoc {

SavingDevice::SavingDevice() : beneath_(SysDevice::get()) {
    SysDevice::set(this);
}

SavingDevice::~SavingDevice() {
    SysDevice::set(&beneath_);
}

SysPathInfo SavingDevice::inspect(const std::string& path) {
    return beneath_.inspect(path);
}

std::unique_ptr<SysHandle> SavingDevice::open_for_reading(const std::string& path) {
    return beneath_.open_for_reading(path);
}

std::unique_ptr<SysHandle> SavingDevice::open_in_place(const std::string& path) {
    return beneath_.open_in_place(path);
}

std::unique_ptr<SysHandle> SavingDevice::create_beside(const std::string& target, std::string& created_path) {
    const SignalsHeld held;
    auto handle = beneath_.create_beside(target, created_path);
    if (handle != nullptr) {
        note_unfinished_file(created_path);
    }
    return handle;
}

bool SavingDevice::replace(const std::string& from, const std::string& to) {
    const SignalsHeld held;
    const bool is_replaced = beneath_.replace(from, to);
    if (is_replaced) {
        forget_unfinished_file(from);
    }
    return is_replaced;
}

bool SavingDevice::remove(const std::string& path) {
    const SignalsHeld held;
    forget_unfinished_file(path);
    return beneath_.remove(path);
}

std::string SavingDevice::resolve_links(const std::string& path) {
    return beneath_.resolve_links(path);
}

std::string SavingDevice::current_folder() {
    return beneath_.current_folder();
}

} // namespace bkdoc
