#pragma once

/// Small vectors of numbers. A default-constructed vector is all zeros; an index is not checked.
template <class T>
class GMathVec2 {
public:
    T x{}, y{};

    GMathVec2() = default;
    GMathVec2(const T& x_value, const T& y_value) : x(x_value), y(y_value) {}

    T& operator[](const unsigned int& i) { return i == 0 ? x : y; }
    const T& operator[](const unsigned int& i) const { return i == 0 ? x : y; }
    bool operator==(const GMathVec2&) const = default;
};

template <class T>
class GMathVec3 {
public:
    T x{}, y{}, z{};

    GMathVec3() = default;
    GMathVec3(const T& x_value, const T& y_value, const T& z_value) : x(x_value), y(y_value), z(z_value) {}

    T& operator[](const unsigned int& i) { return i == 0 ? x : i == 1 ? y : z; }
    const T& operator[](const unsigned int& i) const { return i == 0 ? x : i == 1 ? y : z; }
    bool operator==(const GMathVec3&) const = default;
};

template <class T>
class GMathVec4 {
public:
    T x{}, y{}, z{}, w{};

    GMathVec4() = default;
    GMathVec4(const T& x_value, const T& y_value, const T& z_value, const T& w_value)
        : x(x_value), y(y_value), z(z_value), w(w_value) {}

    T& operator[](const unsigned int& i) { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
    const T& operator[](const unsigned int& i) const { return i == 0 ? x : i == 1 ? y : i == 2 ? z : w; }
    bool operator==(const GMathVec4&) const = default;
};
