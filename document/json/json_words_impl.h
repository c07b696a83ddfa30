#pragma once

#include "parser/parser_entry.h"
#include "parser/parser_value.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// The keys and tags of the lossless shape, for its writer and its reader.
namespace bk_parser {

/// A key that begins with this is not the name of an entry.
inline constexpr char json_mark = '$';
/// Begins the key of a name that needs escapes.
inline constexpr std::string_view escaped_name_mark = "$:";

// Keys of the other parts of an entry.
inline constexpr std::string_view kind_key = "$kind";
inline constexpr std::string_view template_key = "$template";
inline constexpr std::string_view array_key = "$array";
inline constexpr std::string_view values_key = "$values";
// Keys of a named group.
inline constexpr std::string_view group_key = "$group";
inline constexpr std::string_view entries_key = "$entries";
// Tags of values that JSON cannot spell.
inline constexpr std::string_view bool_key = "$bool";
inline constexpr std::string_view char_key = "$char";
inline constexpr std::string_view int_key = "$int";
inline constexpr std::string_view double_key = "$double";
inline constexpr std::string_view string_key = "$string";
inline constexpr std::string_view binary_key = "$binary";
inline constexpr std::string_view word_key = "$word";
inline constexpr std::string_view type_key = "$type";

/// The kinds of JSON numbers.
enum class JsonNumber { none, whole, broken };
/// Whether the whole word is a JSON number, and which kind: an integer, or one with a point or an exponent.
JsonNumber json_number_of(std::string_view word) noexcept;
/// The length of the JSON number at the beginning of the text; 0 when there is none.
std::size_t json_number_length(std::string_view text) noexcept;

/// The kind of an entry without a "$kind".
ParserEntry::Type usual_kind(std::string_view name) noexcept;
/// "entry", "keyword", "call", "raw"; empty for any other value.
std::string_view kind_word(ParserEntry::Type kind) noexcept;
std::optional<ParserEntry::Type> kind_of_word(std::string_view word) noexcept;

/// The value of a hexadecimal digit of either case; negative for any other character.
int hexadecimal_digit(char digit) noexcept;
/// Whether the text is valid UTF-8.
bool is_utf8(std::string_view text) noexcept;
/// Resolves "\\" and "\x" with two hexadecimal digits. Returns false for any other escape.
bool resolve_byte_escapes(std::string_view text, std::string& out);

void append_base64(std::string& out, std::string_view bytes);
/// Returns false when the text is not base64 with padding.
bool resolve_base64(std::string_view text, std::string& out);

} // namespace bk_parser
