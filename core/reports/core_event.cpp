#include "core/core_event.h"

#include <new>
#include <unordered_map>

namespace {

using Registry = std::unordered_map<unsigned int, CoreString>;

// Created by the first registration, because static constructors register names in no fixed order.
Registry& registry() {
    static Registry names;
    return names;
}

} // namespace

bool event_debug_collisions(const unsigned int& hash, const CoreString& name) {
    try {
        return registry().try_emplace(hash, name).first->second == name;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

const CoreString& event_get_name(const unsigned int& hash) {
    const Registry::const_iterator found = registry().find(hash);
    return found != registry().end() ? found->second : CoreString::get_null_string();
}

unsigned int event_get_count() {
    return static_cast<unsigned int>(registry().size());
}
