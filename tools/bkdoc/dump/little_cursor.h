#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace bkdoc {

/// Reads little-endian numbers from untrusted bytes. A read past the end returns nothing.
class LittleCursor {
public:
    explicit LittleCursor(std::string_view bytes) noexcept : bytes_(bytes) {}

    std::size_t position() const noexcept { return position_; }
    std::size_t left() const noexcept { return bytes_.size() - position_; }
    std::string_view rest() const noexcept { return bytes_.substr(position_); }

    /// Returns the next `size` bytes, or those that are left, and moves past them.
    std::string_view take(std::size_t size) noexcept {
        const std::string_view taken = bytes_.substr(position_, size);
        position_ += taken.size();
        return taken;
    }

private:
    std::string_view bytes_;
    std::size_t position_ = 0;
};

/// Up to eight bytes as a little-endian number.
inline std::uint64_t little_number(std::string_view bytes) noexcept {
    std::uint64_t number = 0;
    for (std::size_t i = bytes.size(); i > 0; --i) {
        number = number << 8 | static_cast<unsigned char>(bytes[i - 1]);
    }
    return number;
}

} // namespace bkdoc
