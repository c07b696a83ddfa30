#pragma once

namespace bk {

/// An object that exists before the first static constructor runs and is never destroyed. So other static objects may use it in their
/// constructors and destructors.
template <class T>
union Immortal {
    T value;

    constexpr Immortal() : value() {}
    ~Immortal() {}
};

} // namespace bk
