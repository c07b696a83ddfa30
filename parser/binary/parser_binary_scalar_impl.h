#pragma once

#include "core/text/core_bytes_impl.h"
#include "parser/model/parser_value_impl.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

/// Bools, chars, ints and doubles in the binary form: a byte for the type, then the bytes of the value.
namespace bk {

/// Entries of scalars and strings are stored and made in one; bench/ablation shows what that gains.
inline constexpr bool takes_whole_entries =
#if defined(BK_WITHOUT_WHOLE_ENTRIES)
    false;
#else
    true;
#endif

/// The bytes that a tag and its scalar take; 0 when the tag is of something else.
constexpr std::array<unsigned char, 256> make_stored_sizes() {
    std::array<unsigned char, 256> sizes{};
    sizes[ParserValue::TYPE_BOOL] = 1 + sizeof(std::uint8_t);
    sizes[ParserValue::TYPE_CHAR] = 1 + sizeof(std::uint8_t);
    sizes[ParserValue::TYPE_INT] = 1 + sizeof(std::uint32_t);
    sizes[ParserValue::TYPE_DOUBLE] = 1 + sizeof(std::uint64_t);
    return sizes;
}

inline constexpr std::array<unsigned char, 256> stored_sizes = make_stored_sizes();
inline constexpr std::size_t largest_stored_size = 1 + sizeof(std::uint64_t); // with its tag

inline std::size_t stored_size(char tag) noexcept {
    return stored_sizes[static_cast<unsigned char>(tag)];
}

/// Stores a tag and its scalar, and returns the place after them. Returns `out` when the value is no scalar. May write up to
/// `largest_stored_size` bytes, so that there must be room for these.
inline char* put_scalar(char* out, const StoredValue& value) {
    const ParserValue::Type type = value.type();
    const std::size_t size = type < stored_sizes.size() ? stored_sizes[type] : 0;
    if (size != 0) {
        *out = static_cast<char>(type);
        store_le64(reinterpret_cast<unsigned char*>(out) + 1, value.scalar_bits());
    }
    return out + size;
}

/// Stores a value that holds its scalar, so that no spelling needs to be converted.
inline char* put_read_scalar(char* out, const StoredValue& value) noexcept {
    *out = static_cast<char>(value.type());
    store_le64(reinterpret_cast<unsigned char*>(out) + 1, value.scalar_bits());
    return out + stored_size(*out);
}

/// The scalar in the low bytes of `bytes`, as StoredValue::make_scalar takes it. Ignores the bytes above.
inline std::uint64_t stored_scalar(ParserValue::Type type, std::uint64_t bytes) noexcept {
    const std::size_t unused_bytes = largest_stored_size - stored_sizes[type];
    const std::uint64_t bits = bytes & ~std::uint64_t{0} >> (8 * unused_bytes);
    if (type == ParserValue::TYPE_BOOL) {
        return bits != 0 ? 1 : 0;
    }
    // The bits of an infinity or of not-a-number are too many for any type but a double.
    return std::bit_cast<std::uint64_t>(clamp_to_finite(std::bit_cast<double>(bits)));
}

} // namespace bk
