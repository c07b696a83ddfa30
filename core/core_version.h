#pragma once

/// A version number, held as one double. Versions are compared with a tolerance of `epsilon`.
class CoreVersion {
public:
    static constexpr double epsilon = 1e-9;

    constexpr CoreVersion(const double& value = 0.0) noexcept : value_(value) {}

    constexpr const double& get_value() const noexcept { return value_; }

    /// A version that is not above zero by more than `epsilon` counts as unset.
    constexpr bool is_set() const noexcept { return value_ > epsilon; }
    constexpr bool is_older_than(const CoreVersion& other) const noexcept {
        return other.value_ - value_ > epsilon;
    }

private:
    double value_;
};
