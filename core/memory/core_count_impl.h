#pragma once

#include <stdexcept>

namespace bk {

/// Thrown where a count would pass its limit. A type of its own, so that a std::length_error of a host's is told apart from it.
class CountRefused : public std::length_error {
public:
    using std::length_error::length_error;
};

} // namespace bk
