#pragma once

#include <cstdint>
#include <string_view>

namespace bk_parser {

/// What is known of the bytes of a file from one pass over each piece of it, while the piece is in the processor's cache.
struct ByteFacts {
    bool is_plain = true;         // no NUL, and nothing from 0x80 up
    bool has_returns = false;     // CR
    std::uint64_t line_feeds = 0; // LF

    void add(std::string_view piece) noexcept;
};

std::uint64_t count_line_feeds(std::string_view text) noexcept;

} // namespace bk_parser
