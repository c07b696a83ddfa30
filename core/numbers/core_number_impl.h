#pragma once

#include <cstddef>
#include <string_view>

/// Numbers from and to text, the same whatever locale the process has set. Text is read by the rules of the C
/// library's conversions in the "C" locale: leading white space is skipped and the longest prefix that is a
/// number is taken; what follows does not matter.
namespace bk {

/// A number, and how many characters it took (leading white space and sign included); 0 when there is none.
struct IntText {
    int value = 0;
    std::size_t length = 0;
};
struct DoubleText {
    double value = 0.0;
    std::size_t length = 0;
};

/// An optional sign and decimal digits; out of range gives the nearest int limit.
IntText text_to_int(std::string_view text) noexcept;

/// What `strtod` takes: decimal and hexadecimal floating-point numbers, "inf", "infinity", "nan" and "nan(...)"
/// in either case. Too large a number gives infinity, too small a one zero.
DoubleText text_to_double(std::string_view text) noexcept;

/// Whether `sscanf` of the GNU C library converts one item of the text with "%lf". It looks ahead by at most one character, and so it fails
/// on two kinds of text from which text_to_double takes a shorter number: "0x" without a hexadecimal digit or a point after it, and "infi"
/// that does not go on with "nity". It converts everything else that text_to_double takes.
bool is_scanned_double(std::string_view text) noexcept;

/// Room for any number that the functions below write.
inline constexpr std::size_t number_text_capacity = 32;

/// Write a number into `out`, which has room for number_text_capacity characters, and return its length.
std::size_t write_int(char* out, int number) noexcept;
std::size_t write_unsigned(char* out, unsigned long long number) noexcept;
/// The shortest text that reads back to the same double (std::to_chars without format or precision), with ".0" after it
/// where it has neither a point nor an exponent: a double never reads back as an int.
std::size_t write_double(char* out, double number) noexcept;

} // namespace bk
