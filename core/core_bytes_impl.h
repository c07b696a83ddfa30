#pragma once

#include "core/core_string.h"

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// Little-endian numbers in byte buffers, whatever the machine's byte order.
namespace bk {

/// Between the machine's byte order and the buffers'.
template <std::unsigned_integral T>
constexpr T little_endian(T value) noexcept {
    if constexpr (std::endian::native == std::endian::big) {
        T swapped = 0;
        for (std::size_t i = 0; i < sizeof(T); ++i) {
            swapped = static_cast<T>(swapped << 8 | (value >> (8 * i) & 0xFF));
        }
        return swapped;
    }
    return value;
}

inline void store_le32(unsigned char* out, std::uint32_t value) noexcept {
    value = little_endian(value);
    std::memcpy(out, &value, sizeof(value));
}

inline void store_le64(unsigned char* out, std::uint64_t value) noexcept {
    value = little_endian(value);
    std::memcpy(out, &value, sizeof(value));
}

inline std::uint32_t load_le32(const unsigned char* bytes) noexcept {
    std::uint32_t value;
    std::memcpy(&value, bytes, sizeof(value));
    return little_endian(value);
}

inline std::uint64_t load_le64(const unsigned char* bytes) noexcept {
    std::uint64_t value;
    std::memcpy(&value, bytes, sizeof(value));
    return little_endian(value);
}

/// A number of up to 8 bytes.
inline std::uint64_t load_le(const unsigned char* bytes, std::size_t width) noexcept {
    if (width == sizeof(std::uint64_t)) {
        return load_le64(bytes);
    }
    if (width == sizeof(std::uint32_t)) {
        return load_le32(bytes);
    }
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < width; ++i) {
        value |= std::uint64_t{bytes[i]} << (8 * i);
    }
    return value;
}

/// Reads numbers from a buffer. A read past the end takes the missing bytes as zero and advances all the same.
class ByteCursor {
public:
    ByteCursor(const char* data, std::size_t size, core_uint64 position) noexcept
        : data_(data), size_(size), position_(position) {}

    std::uint64_t take(std::size_t width) noexcept {
        const std::string_view bytes = rest();
        const auto* const first = reinterpret_cast<const unsigned char*>(bytes.data());
        skip(width);
        return bytes.size() < width ? load_le(first, bytes.size()) : load_le(first, width);
    }

    /// The bytes from the position on.
    std::string_view rest() const noexcept {
        return at_end() ? std::string_view() : std::string_view(data_ + position_, size_ - position_);
    }
    /// Stops at the largest position there is.
    void skip(core_uint64 count) noexcept {
        position_ = count > ~position_ ? ~core_uint64{0} : position_ + count;
    }
    void move_to_end() noexcept { position_ = size_; }

    core_uint64 position() const noexcept { return position_; }
    bool at_end() const noexcept { return position_ >= size_; }

private:
    const char* data_;
    std::size_t size_;
    core_uint64 position_;
};

} // namespace bk
