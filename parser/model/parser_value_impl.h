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

/// Turns infinities into the largest double of their sign, and not-a-number into the lowest double. It compares bits, because a
/// comparison of doubles raises a floating-point exception for not-a-number, which a host may have made fatal.
inline double clamp_to_finite(double value) noexcept {
    constexpr std::uint64_t infinity = std::uint64_t{0x7FF} << 52;
    const auto bits = std::bit_cast<std::uint64_t>(value);
    if ((bits & infinity) != infinity) {
        return value;
    }
    constexpr double limit = std::numeric_limits<double>::max();
    return bits == infinity ? limit : -limit;
}

/// Whether a double is neither 0.0 nor -0.0. It compares bits, because a processor may be set to take the smallest doubles for zeros.
inline bool is_not_zero(double value) noexcept {
    return std::bit_cast<std::uint64_t>(value) << 1 != 0;
}

/// Storage that the values have left, but not their strings, to which a host may hold references. It is the block of a list, or an entry
/// with the block that follows it. It is freed when the last of these strings is gone and, for an entry, the entry too.
class StringHome {
public:
    /// Creates a home with one user, the caller.
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
    /// Lets go without freeing the storage. Returns true when no user is left, so that the caller frees it.
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

/// Gives the rest of the library access to a value.
class ValueAccess {
public:
    static ParserValue::Type type(const ParserValue& value) noexcept { return value.get_type(); }
    /// Null for a value that is not a group, and for one that was cleared.
    static ParserGroup* group(const ParserValue& value) noexcept {
        return value.get_type() == ParserValue::TYPE_GROUP ? value.spelled_.scalar.group : nullptr;
    }
    /// The scalar of a bool, char, int or double. Converts the spelling when that has not happened yet.
    static const ParserValue::Scalar& scalar(const ParserValue& value) {
        if (!value.has(ParserValue::VALUE_HELD)) {
            value.make_value();
        }
        return value.spelled_.scalar;
    }
    /// The same as bits, at the low end of the number. The bits above them mean nothing.
    static std::uint64_t scalar_bits(const ParserValue& value) {
        return std::bit_cast<std::uint64_t>(scalar(value)) >> bits_below(type(value));
    }
    /// Makes the scalar of a bool, char, int or double out of its spelling.
    static void convert_spelling(const ParserValue& value) noexcept;
    static std::string_view string(const ParserValue& value) noexcept {
        return value.get_as_string().get_view();
    }
    /// The string of a value of that type.
    static const CoreString& held_string(const ParserValue& value) noexcept {
        return value.has(ParserValue::STRING_AWAY) ? *value.away_.string : value.string_;
    }
    /// Whether a value other than a string has a spelling, which printing then copies.
    static bool is_spelled(const ParserValue& value) noexcept { return value.has(ParserValue::TEXT_HELD); }
    static std::string_view spelling(const ParserValue& value) noexcept {
        return {value.spelled_.text, value.get_type() == ParserValue::TYPE_BINARY_DATA ? 0 : value.size_};
    }
    /// Whether the spellings of two values of a list are in one text area with a single blank between them.
    static bool is_spelled_behind(const ParserValue& value, const ParserValue& next) noexcept {
        constexpr unsigned int flags = ParserValue::TEXT_HELD | ParserValue::TEXT_OWNED;
        return (value.bits_ & flags) == ParserValue::TEXT_HELD &&
               (next.bits_ & flags) == ParserValue::TEXT_HELD &&
               next.spelled_.text == value.spelled_.text + value.size_ + 1 && next.spelled_.text[-1] == ' ';
    }
    static std::string_view bytes(const ParserValue& value) noexcept {
        return {reinterpret_cast<const char*>(value.spelled_.scalar.bytes), value.size_};
    }

    /// Constructs a value in its place, and copies its spelling to `text`, which it advances. The area of `text` outlives the value.
    static ParserValue* make_spelled(void* place, ParserValue::Type type, std::string_view word,
                                     char*& text) noexcept {
        char* const begin = text;
        copy_text(begin, word.data(), word.size());
        text += word.size();
        return ::new (place) ParserValue(type, begin, static_cast<unsigned int>(word.size()));
    }
    /// The same for a spelling that is in the area already.
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
    /// Constructs a bool, char, int or double from its bits, at the low end of the number. A double must be finite: see
    /// `clamp_to_finite`.
    static ParserValue* make_scalar(void* place, ParserValue::Type type, std::uint64_t bits) noexcept {
        return ::new (place) ParserValue(type, scalar_of(type, bits), ParserValue::VALUE_HELD);
    }
    static ParserValue* make_group(void* place, ParserGroup* group) noexcept {
        auto* value = ::new (place) ParserValue(ParserValue::TYPE_GROUP);
        value->spelled_.scalar.group = group;
        return value;
    }
    /// Takes over bytes that were allocated from CoreMemory.
    static ParserValue* make_binary_data(void* place, void* data, unsigned int size) noexcept {
        auto* value = ::new (place) ParserValue(ParserValue::TYPE_BINARY_DATA);
        value->spelled_.scalar.bytes = static_cast<unsigned char*>(data);
        value->size_ = size;
        return value;
    }

    /// How many bytes of a text area a value takes whose string or spelling has this size.
    static constexpr std::size_t string_need(std::size_t size) noexcept {
        return size <= CoreString::inline_capacity ? 0 : size + 1;
    }
    static constexpr std::size_t escaped_string_need(std::size_t size) noexcept { return size + 1; }
    static constexpr std::size_t spelling_need(std::size_t size) noexcept { return size; }

    /// How many bytes of a text area a copy of the value takes.
    static std::size_t text_need(const ParserValue& value) noexcept;
    /// Constructs a copy with its text in the area. The copy of a group value holds `group`.
    static ParserValue* copy(void* place, const ParserValue& value, ParserGroup* group, char*& text);

    /// Fills a new value of the same type. Its text is still that of the source.
    static void copy_content(ParserValue& copied, const ParserValue& value, ParserGroup* group);

    /// Moves a value to another place, bit for bit. Leaves no object at the old place.
    static void relocate(ParserValue& from, void* to) noexcept;
    /// Whether the value is a string that is stored inside it.
    static bool has_string_inside(const ParserValue& value) noexcept {
        return value.get_type() == ParserValue::TYPE_STRING && !value.has(ParserValue::STRING_AWAY);
    }
    /// Moves a string value to another place. Its string stays at its address, which `home` keeps alive.
    static void leave_string(ParserValue& from, void* to, StringHome& home) noexcept;
    /// Corrects the pointers of a value whose text area has moved.
    static void rebase_text(ParserValue& value, const char* old_begin, const char* old_end,
                            const char* begin) noexcept;
    /// Gives the value a text of its own, outside any text area.
    static void own_text(ParserValue& value);
    /// Whether the flags fit the type and each other. For assertions, as is the next function.
    static bool is_sound(const ParserValue& value) noexcept;
    /// Whether none of the values owns memory outside the list, so that none needs its destructor.
    static bool keep_nothing_outside(const ParserValue* values, unsigned int count) noexcept;
    /// Makes the value own nothing, without freeing anything.
    static void forget(ParserValue& value) noexcept;

private:
    static bool has_margin(const ParserValue& value) noexcept;
    static int spelled_int(const ParserValue& value) noexcept;
    static double spelled_double(const ParserValue& value) noexcept;
    /// Stores all 64 bits, because store forwarding fails for a wide load after a narrow store.
    static ParserValue::Scalar scalar_of(ParserValue::Type type, std::uint64_t bits) noexcept {
        static_assert(sizeof(ParserValue::Scalar) == sizeof(bits));
        return std::bit_cast<ParserValue::Scalar>(bits << bits_below(type));
    }
    /// Every member of a scalar begins at its first byte. Returns how many bits of the 64 are below it.
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

/// Copies bytes to memory from CoreMemory. For a null pointer the copy is zeros.
unsigned char* copy_bytes(const void* data, unsigned int size);

/// Decodes a binary-data literal to memory from CoreMemory. Returns null for an empty one.
void* decode_binary_literal(std::string_view literal, unsigned int& size);

/// Appends the binary-data literal of some bytes.
void put_binary_literal(TextBuffer& out, std::string_view bytes);

} // namespace bk
