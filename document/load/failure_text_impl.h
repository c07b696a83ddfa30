#pragma once

#include "parser/files/parser_source_host_impl.h"

#include <string>
#include <string_view>

namespace bk_parser {

/// The codes of the problems that a load finds before it parses.
namespace codes {
inline constexpr std::string_view unreadable = "unreadable";
inline constexpr std::string_view not_a_document = "not-a-document";
inline constexpr std::string_view include_not_found = "include-not-found";
inline constexpr std::string_view include_circle = "include-circle";
inline constexpr std::string_view include_left_open = "include-left-open";
inline constexpr std::string_view included_too_deeply = "included-too-deeply";
inline constexpr std::string_view too_many_includes = "too-many-includes";
inline constexpr std::string_view too_large = "too-large";
inline constexpr std::string_view cut_off = "cut-off";
inline constexpr std::string_view damaged = "damaged";
inline constexpr std::string_view wrong_key = "wrong-key";
inline constexpr std::string_view no_key = "no-key";
inline constexpr std::string_view no_version = "no-version";
inline constexpr std::string_view group_left_open = "group-left-open";
inline constexpr std::string_view nested_too_deeply = "nested-too-deeply";
inline constexpr std::string_view bytes_after_end = "bytes-after-end";
} // namespace codes

/// The code and the words of a failure.
std::string_view failure_code(const bk::SourceFailure& failure, bool has_key);
std::string failure_text(const bk::SourceFailure& failure, bool has_key);

/// "4,738"
std::string grouped_number(core_uint64 number);
/// "cut.bin is cut off: 4,738 bytes announced, 1,988 present"
std::string cut_off_text(std::string_view name, core_uint64 announced, core_uint64 present);
/// Why such bytes cannot be read as a text: "is a PNG image, not a document". Else empty.
std::string why_no_text(std::string_view bytes);

} // namespace bk_parser
