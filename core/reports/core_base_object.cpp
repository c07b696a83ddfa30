#include "core/core_base_object.h"

CoreBaseObject::~CoreBaseObject() = default;

bool CoreBaseObject::is_kindof(const CoreClassInfo& info) const {
    for (const CoreClassInfo* own = &get_class_info(); own != nullptr; own = own->get_base()) {
        if (own == &info) {
            return true;
        }
    }
    return false;
}

const CoreClassInfo& CoreBaseObject::get_class_info() const {
    static constexpr CoreClassInfo info("CoreBaseObject");
    return info;
}
