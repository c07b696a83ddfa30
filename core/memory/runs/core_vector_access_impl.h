#pragma once

#include "core/core_containers.h"

namespace bk {

/// What reading sees of a vector.
class VectorAccess {
public:
    /// Gives a vector without storage some: a block for `capacity` elements, which it gives back as its own.
    template <class T>
    static void take_storage(CoreVector<T>& vector, void* block, unsigned int capacity) noexcept {
        vector.data_ = static_cast<T*>(block);
        vector.capacity_ = capacity;
    }
};

} // namespace bk
