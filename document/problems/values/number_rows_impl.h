#pragma once

#include "parser/text/parser_known_entry_impl.h"

#include <cstdint>

/// Checks all numbers of a row at once with a few bit masks.
namespace bk_parser {

/// Whether ten digits in a row begin at one of `firsts`. Any nine digits fit into an int.
inline bool begins_with_ten_digits(std::uint64_t digits, std::uint64_t firsts) noexcept {
    const std::uint64_t two = digits & digits >> 1;
    const std::uint64_t four = two & two >> 2;
    const std::uint64_t eight = four & four >> 4;
    return eight != 0 && (eight & two >> 8 & firsts) != 0;
}

/// Whether each number is an optional '-' and digits with at most one point, and those without a point have at most nine. False
/// when that is not certain. A row contains no letter except 'e'.
inline bool are_plain_numbers(const bk::KnownEntry::Numbers& row) noexcept {
    const std::uint64_t numbers = row.ends - row.starts; // the bits of each number
    const std::uint64_t no_digits = numbers & (row.others | row.double_marks);
    const std::uint64_t dashes = row.starts & no_digits; // nothing else begins a number of a row
    const std::uint64_t points = no_digits ^ dashes;
    if ((points & ~(row.others & row.double_marks)) != 0) {
        return false;
    }
    // From each start a carry runs through the digits, up to the first point or the number's end.
    const std::uint64_t carried = (numbers ^ points) + row.starts;
    return (points & ~carried) == 0 && !begins_with_ten_digits(numbers ^ no_digits, row.starts + dashes);
}

} // namespace bk_parser
