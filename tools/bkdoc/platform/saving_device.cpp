#include "platform/saving_device.h"

#include "platform/unfinished_file.h"

namespace bkdoc {

std::unique_ptr<SysHandle> SavingDevice::create_beside(const std::string& target, std::string& created_path) {
    const SignalsHeld held;
    auto handle = beneath().create_beside(target, created_path);
    if (handle != nullptr) {
        note_unfinished_file(created_path);
    }
    return handle;
}

bool SavingDevice::replace(const std::string& from, const std::string& to) {
    const SignalsHeld held;
    const bool is_replaced = beneath().replace(from, to);
    if (is_replaced) {
        forget_unfinished_file(from);
    }
    return is_replaced;
}

bool SavingDevice::remove(const std::string& path) {
    const SignalsHeld held;
    forget_unfinished_file(path);
    return beneath().remove(path);
}

} // namespace bkdoc
