#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace bk_parser {

/// What is known of the bytes of a file from one pass over each piece of it, while the piece is in the processor's cache.
class ByteFacts {
public:
    /// The bytes so far, of which the ones from `begin` on are new.
    void add(std::string_view bytes, std::size_t begin) noexcept;

    /// Whether there is no stray byte.
    bool are_clean() const noexcept { return clean_ == size_; }
    bool have_returns() const noexcept { return has_returns_; } // CR
    std::uint64_t line_feeds() const noexcept { return line_feeds_; }

private:
    std::size_t size_ = 0;
    std::size_t clean_ = 0; // up to where
    bool has_returns_ = false;
    std::uint64_t line_feeds_ = 0;
};

std::uint64_t count_line_feeds(std::string_view text) noexcept;

} // namespace bk_parser
