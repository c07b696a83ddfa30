#pragma once

/// Small vectors of numbers. A default-constructed vector is all zeros; an index is not checked.
template <class T>
class GMathVec2 {
public:
    T x{}; ///< component 0
    T y{}; ///< component 1

    GMathVec2() = default;
    /// Sets the components in their order.
    GMathVec2(const T& x_value, const T& y_value) : x(x_value), y(y_value) {}

    /// The component at a position from 0, which is not checked.
    T& operator[](const unsigned int& i) { return i == 0 ? x : y; }
    /// The component at a position from 0, which is not checked.
    const T& operator[](const unsigned int& i) const { return i == 0 ? x : y; }
    /// Whether every component is the same.
    bool operator==(const GMathVec2&) const = default;
};

/// Three numbers, as a colour or a place has.
template <class T>
class GMathVec3 {
public:
    T x{}; ///< component 0
    T y{}; ///< component 1
    T z{}; ///< component 2

    GMathVec3() = default;
    /// Sets the components in their order.
    GMathVec3(const T& x_value, const T& y_value, const T& z_value) : x(x_value), y(y_value), z(z_value) {}

    /// The component at a position from 0, which is not checked.
    T& operator[](const unsigned int& i) { return i == 0 ? x : i == 1 ? y : z; }
    /// The component at a position from 0, which is not checked.
    const T& operator[](const unsigned int& i) const { return i == 0 ? x : i == 1 ? y : z; }
    /// Whether every component is the same.
    bool operator==(const GMathVec3&) const = default;
};

/// Four numbers, as a colour with an opacity has.
template <class T>
class GMathVec4 {
public:
    T x{}; ///< component 0
    T y{}; ///< component 1
    T z{}; ///< component 2
    T w{}; ///< component 3

    GMathVec4() = default;
    /// Sets the components in their order.
    GMathVec4(const T& x_value, const T& y_value, const T& z_value, const T& w_value)
        : x(x_value), y(y_value), z(z_value), w(w_value) {}

    /// The component at a position from 0, which is not checked.
    T& operator[](const unsigned int& i) { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
    /// The component at a position from 0, which is not checked.
    const T& operator[](const unsigned int& i) const { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
    /// Whether every component is the same.
    bool operator==(const GMathVec4&) const = default;
};
