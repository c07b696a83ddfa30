#pragma once

#include <stdexcept>

namespace bk {

/// Thrown where a count would pass its limit. It has a type of its own, so that guarded operations do not take a host's
/// std::length_error for it.
class CountRefused : public std::length_error {
public:
    using std::length_error::length_error;
};

} // namespace bk
