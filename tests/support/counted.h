#pragma once

#include <utility>

/// An element that counts its living objects, which shows when a container loses one or destroys one twice.
class Counted {
public:
    Counted(int value = 0) : value_(value) { ++alive; }
    Counted(const Counted& other) : value_(other.value_) { ++alive; }
    Counted(Counted&& other) noexcept : value_(std::exchange(other.value_, -1)) { ++alive; }
    Counted& operator=(const Counted&) = default;
    Counted& operator=(Counted&& other) noexcept {
        value_ = std::exchange(other.value_, -1);
        return *this;
    }
    ~Counted() { --alive; }

    int value() const { return value_; }
    bool operator==(const Counted& other) const { return value_ == other.value_; }

    static inline int alive = 0;

private:
    int value_;
};
