#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace bk_parser {

/// Collects facts about the bytes of a file while it is read, so that each piece is looked at once, while it is in the processor's cache.
class ByteFacts {
public:
    /// Takes the next piece. `bytes` are all bytes read so far; those from `begin` on are new.
    void add(std::string_view bytes, std::size_t begin) noexcept;

    /// Whether the bytes have no NUL, no invalid UTF-8 and no byte order mark inside.
    bool are_clean() const noexcept { return clean_ == size_; }
    /// Whether the bytes have a carriage return.
    bool have_returns() const noexcept { return has_returns_; }
    std::uint64_t line_feeds() const noexcept { return line_feeds_; }

private:
    std::size_t size_ = 0;
    std::size_t clean_ = 0; // there is no stray byte before this place
    bool has_returns_ = false;
    std::uint64_t line_feeds_ = 0;
};

std::uint64_t count_line_feeds(std::string_view text) noexcept;

} // namespace bk_parser
