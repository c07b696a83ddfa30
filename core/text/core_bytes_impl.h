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

/// Converts between the machine's byte order and little-endian.
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

template <std::unsigned_integral T>
void store_le(unsigned char* out, T value) noexcept {
    value = little_endian(value);
    std::memcpy(out, &value, sizeof(value));
}

template <std::unsigned_integral T>
T load_le(const unsigned char* bytes) noexcept {
    T value;
    std::memcpy(&value, bytes, sizeof(value));
    return little_endian(value);
}

inline void store_le32(unsigned char* out, std::uint32_t value) noexcept {
    store_le(out, value);
}

inline void store_le64(unsigned char* out, std::uint64_t value) noexcept {
    store_le(out, value);
}

inline std::uint32_t load_le32(const unsigned char* bytes) noexcept {
    return load_le<std::uint32_t>(bytes);
}

inline std::uint64_t load_le64(const unsigned char* bytes) noexcept {
    return load_le<std::uint64_t>(bytes);
}

/// Loads a number of up to 8 bytes: as two overlapping halves, or as up to three single bytes.
inline std::uint64_t load_le(const unsigned char* bytes, std::size_t width) noexcept {
    if (width >= 4) {
        return load_le32(bytes) | std::uint64_t{load_le32(bytes + width - 4)} << (8 * (width - 4));
    }
    if (width == 0) {
        return 0;
    }
    const auto placed = [bytes](std::size_t i) { return std::uint64_t{bytes[i]} << (8 * i); };
    return placed(0) | placed(width / 2) | placed(width - 1);
}

/// Reads numbers from a buffer. A read past the end takes the missing bytes as zero and advances all the same.
class ByteCursor {
public:
    ByteCursor(const char* data, std::size_t size, core_uint64 position) noexcept
        : data_(data), size_(size), position_(position) {}

    std::uint64_t take(std::size_t width) noexcept {
        const std::string_view bytes = rest().substr(0, width);
        skip(width);
        return load_le(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    }
    template <std::unsigned_integral T>
    T take() noexcept {
        if (rest().size() < sizeof(T)) {
            return static_cast<T>(take(sizeof(T)));
        }
        const T value = load_le<T>(reinterpret_cast<const unsigned char*>(data_ + position_));
        position_ += sizeof(T);
        return value;
    }

    /// The bytes from the position on.
    std::string_view rest() const noexcept {
        return at_end() ? std::string_view() : std::string_view(data_ + position_, size_ - position_);
    }
    /// The position does not wrap: it stops at the largest 64-bit number.
    void skip(core_uint64 count) noexcept {
        position_ = count > ~position_ ? ~core_uint64{0} : position_ + count;
    }
    void move_to_end() noexcept { position_ = size_; }
    void move_to(core_uint64 position) noexcept { position_ = position; }

    core_uint64 position() const noexcept { return position_; }
    bool at_end() const noexcept { return position_ >= size_; }

private:
    const char* data_;
    std::size_t size_;
    core_uint64 position_;
};

} // namespace bk
