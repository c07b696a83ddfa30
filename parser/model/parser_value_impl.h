#pragma once

#include "core/core_memory.h"
#include "core/text/core_copy_impl.h"
#include "core/text/core_string_impl.h"
#include "core/text/core_text_buffer_impl.h"
#include "parser/parser_value.h"

#include <bit>
#include <cstdint>
#include <limits>
#include <new>
#include <string_view>

namespace bk {

/// Infinities become the largest double of their sign, not-a-number the lowest one. Bits are compared: a comparison of
/// doubles would raise a floating-point exception for not-a-number, which a host may have set to be fatal.
inline double clamp_to_finite(double value) noexcept {
    constexpr std::uint64_t infinity = std::uint64_t{0x7FF} << 52;
    const auto bits = std::bit_cast<std::uint64_t>(value);
    if ((bits & infinity) != infinity) {
        return value;
    }
    constexpr double limit = std::numeric_limits<double>::max();
    return bits == infinity ? limit : -limit;
}

/// Whether a double is neither zero. A processor that takes the smallest doubles for zeros is not asked.
inline bool is_not_zero(double value) noexcept {
    return std::bit_cast<std::uint64_t>(value) << 1 != 0;
}

/// Storage that values have left, but strings have not which a host may hold by reference: the block of a list, or an
/// entry with the block behind it. It goes back when the last of these strings has died and, of an entry, the entry too.
class StringHome {
public:
    /// A home with one user: whoever makes it, until it lets go.
    static StringHome* make(void* storage, std::size_t size) {
        return new (CoreMemory::allocate(sizeof(StringHome))) StringHome{storage, size, 1};
    }

    void add_user() noexcept { ++user_count_; }
    void let_go() noexcept {
        if (--user_count_ == 0) {
            CoreMemory::release(storage_, size_);
            CoreMemory::release(this, sizeof(StringHome));
        }
    }
    /// The same of whoever gives the storage back itself when nobody else uses it, which the result tells.
    bool let_go_of_record() noexcept {
        if (user_count_ != 1) {
            --user_count_;
            return false;
        }
        CoreMemory::release(this, sizeof(StringHome));
        return true;
    }

private:
    StringHome(void* storage, std::size_t size, unsigned int user_count) noexcept
        : storage_(storage), size_(size), user_count_(user_count) {}

    void* storage_;
    std::size_t size_;
    unsigned int user_count_;
};

/// What the library's other parts see of a value.
class ValueAccess {
public:
    static ParserValue::Type type(const ParserValue& value) noexcept { return value.get_type(); }
    /// Null for a value that is no group, and for one that was cleared.
    static ParserGroup* group(const ParserValue& value) noexcept {
        return value.get_type() == ParserValue::TYPE_GROUP ? value.spelled_.scalar.group : nullptr;
    }
    /// What a bool, char, int or double holds, converted when it was not yet.
    static const ParserValue::Scalar& scalar(const ParserValue& value) {
        if (!value.has(ParserValue::VALUE_HELD)) {
            value.make_value();
        }
        return value.spelled_.scalar;
    }
    /// The same as bits, in the low end of the number. What stands above them is of no account.
    static std::uint64_t scalar_bits(const ParserValue& value) {
        return std::bit_cast<std::uint64_t>(scalar(value)) >> bits_below(type(value));
    }
    /// Makes the scalar of a bool, char, int or double out of its spelling.
    static void convert_spelling(const ParserValue& value) noexcept;
    static std::string_view string(const ParserValue& value) noexcept {
        return value.get_as_string().get_view();
    }
    /// Of a value that is a string.
    static const CoreString& held_string(const ParserValue& value) noexcept {
        return value.has(ParserValue::STRING_AWAY) ? *value.away_.string : value.string_;
    }
    /// Whether a value that is no string has a spelling, which is then written as it stands.
    static bool is_spelled(const ParserValue& value) noexcept { return value.has(ParserValue::TEXT_HELD); }
    static std::string_view spelling(const ParserValue& value) noexcept {
        return {value.spelled_.text, value.get_type() == ParserValue::TYPE_BINARY_DATA ? 0 : value.size_};
    }
    /// Whether the spellings of two values of a list stand in one text area with just a blank between.
    static bool is_spelled_behind(const ParserValue& value, const ParserValue& next) noexcept {
        constexpr unsigned int flags = ParserValue::TEXT_HELD | ParserValue::TEXT_OWNED;
        return (value.bits_ & flags) == ParserValue::TEXT_HELD &&
               (next.bits_ & flags) == ParserValue::TEXT_HELD &&
               next.spelled_.text == value.spelled_.text + value.size_ + 1 && next.spelled_.text[-1] == ' ';
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
        return ::new (place) ParserValue(type, begin, static_cast<unsigned int>(word.size()));
    }
    /// The same of a spelling that stands in the area already.
    static ParserValue* show_spelled(void* place, ParserValue::Type type,
                                     std::string_view spelling) noexcept {
        return ::new (place) ParserValue(type, spelling.data(), static_cast<unsigned int>(spelling.size()));
    }
    static ParserValue* make_string(void* place, std::string_view word, char*& text) noexcept {
        auto* value = ::new (place) ParserValue(ParserValue::TYPE_STRING);
        const auto size = static_cast<unsigned int>(word.size());
        const bool is_short = size <= CoreString::inline_capacity;
        StringAccess::show(value->string_, {is_short ? word.data() : put_string(word, text), size});
        return value;
    }
    /// The same for a string with escapes.
    static ParserValue* make_escaped_string(void* place, std::string_view word, char*& text) noexcept;
    /// A bool, char, int or double from its bits, in the low end of the number. A double has to be finite, as
    /// `clamp_to_finite` makes it.
    static ParserValue* make_scalar(void* place, ParserValue::Type type, std::uint64_t bits) noexcept {
        return ::new (place) ParserValue(type, scalar_of(type, bits), ParserValue::VALUE_HELD);
    }
    static ParserValue* make_group(void* place, ParserGroup* group) noexcept {
        auto* value = ::new (place) ParserValue(ParserValue::TYPE_GROUP);
        value->spelled_.scalar.group = group;
        return value;
    }
    /// Adopts bytes taken from CoreMemory.
    static ParserValue* make_binary_data(void* place, void* data, unsigned int size) noexcept {
        auto* value = ::new (place) ParserValue(ParserValue::TYPE_BINARY_DATA);
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
    /// Whether the value is a string that stands inside of it.
    static bool has_string_inside(const ParserValue& value) noexcept {
        return value.get_type() == ParserValue::TYPE_STRING && !value.has(ParserValue::STRING_AWAY);
    }
    /// Moves a string value to another place without its string, which stays where it is, in `home`.
    static void leave_string(ParserValue& from, void* to, StringHome& home) noexcept;
    /// Follows a text area that has moved.
    static void rebase_text(ParserValue& value, const char* old_begin, const char* old_end,
                            const char* begin) noexcept;
    /// Makes the value independent of any text area.
    static void own_text(ParserValue& value);
    /// Whether the flags fit the type and each other. For assertions, as the next one.
    static bool is_sound(const ParserValue& value) noexcept;
    /// Whether values may be dropped without being destroyed, as far as blocks of their own go.
    static bool keep_nothing_outside(const ParserValue* values, unsigned int count) noexcept;
    /// Leaves the value with nothing to release.
    static void forget(ParserValue& value) noexcept;

private:
    static bool has_margin(const ParserValue& value) noexcept;
    static int spelled_int(const ParserValue& value) noexcept;
    static double spelled_double(const ParserValue& value) noexcept;
    /// Stored whole: a narrow store is slow to read back in a wide load.
    static ParserValue::Scalar scalar_of(ParserValue::Type type, std::uint64_t bits) noexcept {
        static_assert(sizeof(ParserValue::Scalar) == sizeof(bits));
        return std::bit_cast<ParserValue::Scalar>(bits << bits_below(type));
    }
    /// Every member of a scalar begins at its first byte. How many bits of the whole stand below it.
    static int bits_below([[maybe_unused]] ParserValue::Type type) noexcept {
        if constexpr (std::endian::native == std::endian::big) {
            const bool is_byte = type == ParserValue::TYPE_BOOL || type == ParserValue::TYPE_CHAR;
            return is_byte ? 56 : type == ParserValue::TYPE_INT ? 32 : 0;
        }
        return 0;
    }
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
