#pragma once

#include <string_view>

/// Names and limits of documents in files.
namespace bk {

/// The keyword of the line that states the serial version, with the blank after it.
inline constexpr std::string_view version_directive = "#Brellwick_Serial_Version ";
inline constexpr std::string_view version_keyword = version_directive.substr(0, version_directive.size() - 1);
/// What includes a file, up to the name.
inline constexpr std::string_view include_directive = "#include \"";
/// That of UTF-8, which some editors put in front of a text.
inline constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
/// The version that is written.
inline constexpr double written_version = 1.2;

} // namespace bk
