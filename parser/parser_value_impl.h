#pragma once

#include "core/core_copy_impl.h"
#include "core/core_string.h"
#include "core/core_text_buffer_impl.h"
#include "parser/parser_value.h"

#include <limits>
#include <string_view>

namespace bk {

/// Not-a-number fails the first test and becomes the lowest double.
inline double clamp_to_finite(double value) noexcept {
    constexpr double limit = std::numeric_limits<double>::max();
    if (!(value >= -limit)) {
        return -limit;
    }
    return value > limit ? limit : value;
}

/// What the library's other parts see of a value.
class ValueAccess {
public:
    static ParserValue::Type type(const ParserValue& value) noexcept { return value.get_type(); }
    /// Null for a value that is no group, and for one that was cleared.
    static ParserGroup* group(const ParserValue& value) noexcept {
        return value.get_type() == ParserValue::TYPE_GROUP ? value.spelled_.scalar.group : nullptr;
    }
    static std::string_view string(const ParserValue& value) noexcept {
        return value.get_as_string().get_view();
    }
    /// Whether a value that is no string has a spelling, which is then written as it stands.
    static bool is_spelled(const ParserValue& value) noexcept { return value.has(ParserValue::TEXT_HELD); }
    static std::string_view spelling(const ParserValue& value) noexcept {
        return {value.spelled_.text, value.get_type() == ParserValue::TYPE_BINARY_DATA ? 0 : value.size_};
    }
    static std::string_view bytes(const ParserValue& value) noexcept {
        return {reinterpret_cast<const char*>(value.spelled_.scalar.bytes), value.size_};
    }

    /// A value made where it will stand, with its text in `text`: an area that outlives the value, from which
    /// what is needed is taken.
    static ParserValue* make_spelled(void* place, ParserValue::Type type, std::string_view word,
                                     char*& text) noexcept {
        char* const begin = text;
        copy_text(begin, word.data(), word.size());
        text += word.size();
        return new (place) ParserValue(type, begin, static_cast<unsigned int>(word.size()));
    }
    static ParserValue* make_string(void* place, std::string_view word, char*& text) noexcept {
        auto* value = new (place) ParserValue(ParserValue::TYPE_STRING);
        const auto size = static_cast<unsigned int>(word.size());
        const bool is_short = size <= CoreString::inline_capacity;
        value->string_.set_borrowed(is_short ? word.data() : put_string(word, text), size);
        return value;
    }
    /// The same for a string with escapes.
    static ParserValue* make_escaped_string(void* place, std::string_view word, char*& text) noexcept;
    static ParserValue* make_bool(void* place, bool value) noexcept {
        return make_held(place, ParserValue::TYPE_BOOL, {.as_bool = value});
    }
    static ParserValue* make_char(void* place, char value) noexcept {
        return make_held(place, ParserValue::TYPE_CHAR, {.as_char = value});
    }
    static ParserValue* make_int(void* place, int value) noexcept {
        return make_held(place, ParserValue::TYPE_INT, {.as_int = value});
    }
    static ParserValue* make_double(void* place, double value) noexcept {
        return make_held(place, ParserValue::TYPE_DOUBLE, {.as_double = clamp_to_finite(value)});
    }
    static ParserValue* make_group(void* place, ParserGroup* group) noexcept {
        auto* value = new (place) ParserValue(ParserValue::TYPE_GROUP);
        value->spelled_.scalar.group = group;
        return value;
    }
    /// Adopts bytes taken from CoreMemory.
    static ParserValue* make_binary_data(void* place, void* data, unsigned int size) noexcept {
        auto* value = new (place) ParserValue(ParserValue::TYPE_BINARY_DATA);
        value->spelled_.scalar.bytes = static_cast<unsigned char*>(data);
        value->size_ = size;
        return value;
    }

    /// How much of a text area a value takes that is made of, or copied from, a string or a spelling of this size.
    static constexpr std::size_t string_need(std::size_t size) noexcept {
        return size <= CoreString::inline_capacity ? 0 : size + 1;
    }
    static constexpr std::size_t escaped_string_need(std::size_t size) noexcept { return size + 1; }
    static constexpr std::size_t spelling_need(std::size_t size) noexcept { return size; }

    /// How much of a text area a copy of the value needs.
    static std::size_t text_need(const ParserValue& value) noexcept;
    /// A copy with its text in the area; `group` stands for a group.
    static ParserValue* copy(void* place, const ParserValue& value, ParserGroup* group, char*& text);

    /// Fills a new value of the same type; its text is still the source's.
    static void copy_content(ParserValue& copied, const ParserValue& value, ParserGroup* group);

    /// Moves a value to another place, bit for bit; nothing is left at the old one.
    static void relocate(ParserValue& from, void* to) noexcept;
    /// Follows a text area that has moved.
    static void rebase_text(ParserValue& value, const char* old_begin, const char* old_end,
                            const char* begin) noexcept;
    /// Makes the value independent of any text area.
    static void own_text(ParserValue& value);
    /// Leaves the value with nothing to release.
    static void forget(ParserValue& value) noexcept;

private:
    static ParserValue* make_held(void* place, ParserValue::Type type, ParserValue::Scalar scalar) noexcept {
        auto* value = new (place) ParserValue(type);
        value->bits_ |= ParserValue::VALUE_HELD;
        value->spelled_.scalar = scalar;
        return value;
    }
    /// Copies a string into an area, a NUL after it.
    static const char* put_string(std::string_view string, char*& text) noexcept {
        char* const begin = text;
        copy_text(begin, string.data(), string.size());
        begin[string.size()] = '\0';
        text += string.size() + 1;
        return begin;
    }
};

/// A copy of some bytes, zeros for a null pointer, taken from CoreMemory.
unsigned char* copy_bytes(const void* data, unsigned int size);

/// Decodes a binary-data literal into bytes taken from CoreMemory; null for an empty one.
void* decode_binary_literal(std::string_view literal, unsigned int& size);

/// Appends the binary-data literal of some bytes.
void put_binary_literal(TextBuffer& out, std::string_view bytes);

} // namespace bk
