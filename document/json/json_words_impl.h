#pragma once

#include "parser/parser_entry.h"
#include "parser/parser_value.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// The words of the lossless shape, for its writer and its reader.
namespace bk_parser {

/// A key with this beginning is not the name of an entry.
inline constexpr char json_mark = '$';
/// Precedes a name that needs escapes.
inline constexpr std::string_view escaped_name_mark = "$:";

// Keys for the other parts of an entry.
inline constexpr std::string_view kind_key = "$kind";
inline constexpr std::string_view template_key = "$template";
inline constexpr std::string_view array_key = "$array";
inline constexpr std::string_view values_key = "$values";
// A group with a name of its own.
inline constexpr std::string_view group_key = "$group";
inline constexpr std::string_view entries_key = "$entries";
// Tags of values that JSON has no word for.
inline constexpr std::string_view bool_key = "$bool";
inline constexpr std::string_view char_key = "$char";
inline constexpr std::string_view int_key = "$int";
inline constexpr std::string_view double_key = "$double";
inline constexpr std::string_view string_key = "$string";
inline constexpr std::string_view binary_key = "$binary";
inline constexpr std::string_view word_key = "$word";
inline constexpr std::string_view type_key = "$type";

/// What a number of JSON is.
enum class JsonNumber { none, whole, broken };
/// Whether all of the word is a number of JSON: a whole one, or one with a point or an exponent.
JsonNumber json_number_of(std::string_view word) noexcept;
/// The length of the number that the text begins with; 0 when there is none.
std::size_t json_number_length(std::string_view text) noexcept;

/// The kind of an entry without a "$kind".
ParserEntry::Type usual_kind(std::string_view name) noexcept;
/// "entry", "keyword", "call", "raw"; empty for another number.
std::string_view kind_word(ParserEntry::Type kind) noexcept;
std::optional<ParserEntry::Type> kind_of_word(std::string_view word) noexcept;

/// The value of a hexadecimal digit of either case; negative for another character.
int hexadecimal_digit(char digit) noexcept;
/// Whether the text is valid UTF-8.
bool is_utf8(std::string_view text) noexcept;
/// Resolves "\\" and "\x" with two hexadecimal digits. False when something else stands behind a backslash.
bool resolve_byte_escapes(std::string_view text, std::string& out);

void append_base64(std::string& out, std::string_view bytes);
/// False when the text is no base64 with its padding.
bool resolve_base64(std::string_view text, std::string& out);

} // namespace bk_parser
