#pragma once

namespace bk {

/// An object that is there before the first static constructor runs and that no static destructor takes away,
/// so that other statics may use it whenever they are made or destroyed.
template <class T>
union Immortal {
    T value;

    constexpr Immortal() : value() {}
    ~Immortal() {}
};

} // namespace bk
