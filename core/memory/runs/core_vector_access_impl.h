#pragma once

#include "core/core_containers.h"

namespace bk {

/// Lets the parser give a vector its storage.
class VectorAccess {
public:
    /// Gives a vector without storage a block for `capacity` elements, which the vector frees as its own.
    template <class T>
    static void take_storage(CoreVector<T>& vector, void* block, unsigned int capacity) noexcept {
        vector.data_ = static_cast<T*>(block);
        vector.capacity_ = capacity;
    }
};

} // namespace bk
