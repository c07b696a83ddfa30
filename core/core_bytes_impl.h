#pragma once

#include "core/core_string.h"

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>

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

inline std::uint64_t load_le(const unsigned char* bytes, std::size_t width) noexcept {
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
        : data_(reinterpret_cast<const unsigned char*>(data)), size_(size), position_(position) {}

    std::uint64_t take(std::size_t width) noexcept {
        std::uint64_t value = 0;
        if (position_ < size_) {
            const std::size_t left = size_ - static_cast<std::size_t>(position_);
            value = load_le(data_ + position_, width < left ? width : left);
        }
        position_ += width;
        return value;
    }

    core_uint64 position() const noexcept { return position_; }
    bool at_end() const noexcept { return position_ >= size_; }

private:
    const unsigned char* data_;
    std::size_t size_;
    core_uint64 position_;
};

} // namespace bk
