#include "input/archive_facts.h"

#include "input/form_mark.h"

#include <cstddef>
#include <cstdint>

namespace bkdoc {

namespace {

constexpr std::size_t hash_size = 8;

/// Takes a 32-bit little-endian number from the front of the bytes.
std::optional<std::uint32_t> take_number(std::string_view& bytes) noexcept {
    constexpr std::size_t size = 4;
    if (bytes.size() < size) {
        return std::nullopt;
    }
    std::uint32_t number = 0;
    for (std::size_t i = size; i > 0; --i) {
        number = number << 8 | static_cast<unsigned char>(bytes[i - 1]);
    }
    bytes.remove_prefix(size);
    return number;
}

} // namespace

std::optional<ArchiveFacts> archive_facts(std::string_view bytes) noexcept {
    if (bytes.size() < form_mark_size + hash_size) {
        return std::nullopt;
    }
    bytes.remove_prefix(form_mark_size + hash_size);
    const auto strings = take_number(bytes);
    if (!strings) {
        return std::nullopt;
    }
    for (std::uint32_t i = 0; i < *strings; ++i) {
        const std::size_t end = bytes.find('\0');
        if (end == std::string_view::npos) {
            return std::nullopt;
        }
        bytes.remove_prefix(end + 1);
    }
    const auto words = take_number(bytes);
    return words ? std::optional(ArchiveFacts{*strings, *words}) : std::nullopt;
}

} // namespace bkdoc
