#pragma once

#include <bit>
#include <cstdint>

/// A version number, held as one double. Versions are compared with a tolerance of `epsilon`.
class CoreVersion {
public:
    /// Versions that differ by no more count as one: 1e-9.
    static constexpr double epsilon = 1e-9;

    /// 0 means that there is no version.
    constexpr CoreVersion(const double& value = 0.0) noexcept : value_(value) {}

    /// The version as a number.
    constexpr const double& get_value() const noexcept { return value_; }

    /// A version that is not above zero by more than `epsilon` counts as unset.
    constexpr bool is_set() const noexcept { return is_number(value_) && value_ > epsilon; }
    /// Whether it is below the other by more than `epsilon`.
    constexpr bool is_older_than(const CoreVersion& other) const noexcept {
        return is_number(value_) && is_number(other.value_) && value_ < other.value_ &&
               other.value_ - value_ > epsilon;
    }

private:
    /// Compares bits, because comparing with not-a-number raises a floating-point exception.
    static constexpr bool is_number(double value) noexcept {
        return std::bit_cast<std::uint64_t>(value) << 1 <= std::uint64_t{0x7FF} << 53;
    }

    double value_;
};
