#pragma once

#include <string_view>

/// Names and limits of documents in files.
namespace bk {

/// The keyword of the line that states the serial version, with the blank after it.
inline constexpr std::string_view version_directive = "#Brellwick_Serial_Version ";
inline constexpr std::string_view version_keyword = version_directive.substr(0, version_directive.size() - 1);
/// The beginning of an include directive, up to the name.
inline constexpr std::string_view include_directive = "#include \"";
/// The byte order mark of UTF-8, which some editors put before a text.
inline constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
/// The version that is written.
inline constexpr double written_version = 1.2;

} // namespace bk
