#pragma once

#include "core/core_memory.h"
#include "core/text/core_copy_impl.h"
#include "core/text/core_string_impl.h"
#include "core/text/core_text_buffer_impl.h"
#include "parser/parser_value.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
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

/// Whether a double is neither 0.0 nor -0.0. It compares bits, because a host may have set the processor to treat subnormal doubles as zero.
inline bool is_not_zero(double value) noexcept {
    return std::bit_cast<std::uint64_t>(value) << 1 != 0;
}

/// Owns storage that values have moved out of while their strings stayed there, because a host may hold references to the strings. The
/// storage is the block of a list, or an entry together with the block that follows it. It is freed when the last of these strings is
/// destroyed and, in the second case, the entry too.
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

/// The name of a type, as ParserValue::get_type_name gives it.
const char* type_name(ParserValue::Type type) noexcept;

/// A value in 16 bytes: what an entry stores, and what is inside a ParserValue. Its first four bytes tell what it is. A number below
/// `unlisted` is the length of a CoreString: the value is that string. A number from `least_mark` on is a mark, from the highest bit down:
///
///     1111 | 1 bit: has its scalar | 3 bits: type | 1 bit: has a spelling | 3 bits: highest bits of the offset | 20 bits: size of the spelling
///
/// The next four bytes depend on the type. The last eight are the scalar or a pointer. The spelling is in the text area of the list, and
/// the offset counts from the value itself. A spelling that cannot be in the text area is in a block of its own, together with the scalar.
///
/// `release` frees the content. The destructor does nothing.
class StoredValue : private ValueData {
public:
    using Type = ParserValue::Type;

    using ValueData::Scalar;

    static StoredValue& of(ParserValue& value) noexcept {
        return *std::launder(reinterpret_cast<StoredValue*>(&value.stored_));
    }
    static const StoredValue& of(const ParserValue& value) noexcept {
        return *std::launder(reinterpret_cast<const StoredValue*>(&value.stored_));
    }

    /// A value without content.
    explicit StoredValue(Type type) noexcept
        : ValueData(Plain{mark_of(type), 0, {.scalar = {.as_double = 0.0}}}) {
        if (type == ParserValue::TYPE_STRING) {
            ::new (&string_) CoreString();
        } else if (type > largest_type) {
            plain_ = {unlisted, 0, {.unlisted_type = type}};
        }
    }

    Type type() const noexcept {
        const std::uint32_t bits = mark();
        if (bits >= least_mark) {
            return static_cast<Type>(bits >> type_shift & largest_type);
        }
        return bits == unlisted ? static_cast<Type>(plain_.content.unlisted_type) : ParserValue::TYPE_STRING;
    }
    /// Null for a value that is not a group, and for one that was cleared.
    ParserGroup* group() const noexcept {
        return type() == ParserValue::TYPE_GROUP ? plain_.content.group : nullptr;
    }
    /// The scalar of a bool, char, int or double. Converts the spelling when that has not happened yet.
    const Scalar& scalar() const noexcept {
        return holds_scalar(mark()) ? plain_.content.scalar : converted();
    }
    /// The bits of that scalar, at the low end of the number. All bits above them are zero, so that two scalars of one type can be compared.
    std::uint64_t scalar_bits() const noexcept {
        return std::bit_cast<std::uint64_t>(scalar()) >> bits_below(type());
    }
    /// Whether the value itself holds the scalar. When its spelling has a block of its own, the scalar is in that block.
    bool has_scalar_inside() const noexcept { return holds_scalar(mark()); }
    std::string_view string() const { return get_as_string().get_view(); }
    /// The string of a value of that type.
    const CoreString& held_string() const noexcept {
        return has_string_inside() ? string_ : *plain_.content.string;
    }
    /// Whether a value other than a string has a spelling, which printing then copies.
    bool is_spelled() const noexcept { return is_spelled(mark()); }
    std::string_view spelling() const noexcept;
    /// Returns the spelling of the value at `next` together with the spellings that follow it in the text area, each after a single blank.
    /// Advances `next` past the values of these spellings. The values from `next` to `last` must be adjacent in memory, and the first must
    /// be spelled.
    static std::string_view take_spellings(const StoredValue*& next, const StoredValue* last) noexcept {
        const std::string_view first = next->spelling();
        const char* end = first.data() + first.size();
        if (!(next++)->has_text_in_area()) {
            return first;
        }
        for (; next != last && next->is_spelled() && next->text() == end + 1 && *end == ' '; ++next) {
            end +=
                1 + (next->mark() & size_mask); // never apart: with the offset 0, text() is before the area
        }
        return {first.data(), static_cast<std::size_t>(end - first.data())};
    }
    std::string_view bytes() const noexcept {
        return {reinterpret_cast<const char*>(plain_.content.bytes), plain_.offset};
    }

    /// These do the same as the functions of ParserValue with the same names.
    void make_value() const noexcept { static_cast<void>(scalar()); }
    bool get_as_bool() const {
        return mark() >> type_shift == held_form(ParserValue::TYPE_BOOL) ? plain_.content.scalar.as_bool
                                                                         : read_as_bool();
    }
    char get_as_char() const;
    int get_as_int() const {
        return mark() >> type_shift == held_form(ParserValue::TYPE_INT) ? plain_.content.scalar.as_int
                                                                        : read_as_int();
    }
    double get_as_double() const {
        return mark() >> type_shift == held_form(ParserValue::TYPE_DOUBLE) ? plain_.content.scalar.as_double
                                                                           : read_as_double();
    }
    const CoreString& get_as_string() const;
    void* get_as_binary_data(unsigned int& size) const;
    void set_bool(bool value) noexcept;
    void set_int(int value) noexcept;
    void set_char(char value) noexcept;
    void set_double(double value) noexcept;
    void set_string(const CoreString& value);
    void set_binary_data(const void* data, unsigned int size);
    void clear() noexcept;

    /// Constructs a value at `place`, and copies its spelling to `text`, which it advances. `text` must be at a higher address than
    /// `place`, and the memory there must outlive the value.
    static StoredValue* make_spelled(void* place, Type type, std::string_view word, char*& text) {
        if (is_kept_apart(type, word.size())) [[unlikely]] {
            return make_apart(place, type, word);
        }
        char* const begin = text;
        copy_text(begin, word.data(), word.size());
        text += word.size();
        return show_spelled(place, type, {begin, word.size()});
    }
    /// Constructs a value that refers to a spelling in the text area. Copies nothing.
    static StoredValue* show_spelled(void* place, Type type, std::string_view spelling) noexcept {
        const std::uint64_t offset = distance(place, spelling.data());
        const std::uint32_t bits = least_mark | static_cast<std::uint32_t>(type) << type_shift | spelled_bit;
        return ::new (place)
            StoredValue(Plain{bits | high_bits(offset) | static_cast<std::uint32_t>(spelling.size()),
                              static_cast<std::uint32_t>(offset),
                              {.scalar = {.as_double = 0.0}}});
    }
    /// Constructs a value with a copy of the spelling in a block of its own.
    static StoredValue* make_apart(void* place, Type type, std::string_view word);
    static StoredValue* make_string(void* place, std::string_view word, char*& text) {
        if (is_kept_apart(ParserValue::TYPE_STRING, word.size())) [[unlikely]] {
            return make_own_string(place, CoreString(word));
        }
        auto* value = ::new (place) StoredValue(ParserValue::TYPE_STRING);
        const bool is_short = word.size() <= CoreString::inline_capacity;
        StringAccess::show(value->string_, {is_short ? word.data() : put_string(word, text), word.size()});
        return value;
    }
    /// Constructs a string that owns its text.
    static StoredValue* make_own_string(void* place, CoreString string);
    /// Constructs a string from a word with escapes, and resolves them.
    static StoredValue* make_escaped_string(void* place, std::string_view word, char*& text);
    /// Constructs a bool, char, int or double from its bits, at the low end of the number. A double must be finite: see
    /// `clamp_to_finite`.
    static StoredValue* make_scalar(void* place, Type type, std::uint64_t bits) noexcept {
        return ::new (place)
            StoredValue(Plain{least_mark | held_bit | static_cast<std::uint32_t>(type) << type_shift,
                              0,
                              {.scalar = scalar_of(type, bits)}});
    }
    static StoredValue* make_group(void* place, ParserGroup* group) noexcept {
        return ::new (place) StoredValue(Plain{mark_of(ParserValue::TYPE_GROUP), 0, {.group = group}});
    }
    /// Takes over bytes that were allocated from CoreMemory.
    static StoredValue* make_binary_data(void* place, void* data, unsigned int size) noexcept {
        return ::new (place) StoredValue(Plain{
            mark_of(ParserValue::TYPE_BINARY_DATA), size, {.bytes = static_cast<unsigned char*>(data)}});
    }

    /// Whether a string or spelling of that size gets a block of its own, so that it takes nothing from a text area.
    static constexpr bool is_kept_apart(Type type, std::size_t size) noexcept {
        return size >= (type == ParserValue::TYPE_STRING ? unlisted : size_apart);
    }
    /// How many bytes a string of this size takes from a text area. The two functions below are for strings with escapes and for spellings.
    static constexpr std::size_t string_need(std::size_t size) noexcept {
        return size <= CoreString::inline_capacity || is_kept_apart(ParserValue::TYPE_STRING, size)
                   ? 0
                   : size + 1;
    }
    static constexpr std::size_t escaped_string_need(std::size_t size) noexcept { return size + 1; }
    static constexpr std::size_t spelling_need(std::size_t size) noexcept {
        return is_kept_apart(ParserValue::TYPE_WORD, size) ? 0 : size;
    }

    /// How many bytes a copy of the value takes from a text area.
    std::size_t text_need() const noexcept;
    /// Constructs a copy. Its text goes to `text`, or to a block of its own when `text` is null. The copy of a group value holds `group`.
    static StoredValue* copy(void* place, const StoredValue& value, ParserGroup* group, char*& text);
    /// Constructs a value that refers to the same content. If that is a string inside `value`, moves it to a block of its own first.
    static void copy_shallow(void* place, const StoredValue& value);

    /// Moves a value to `to`. `text_shift` is how far its text area has moved. Afterwards there is no object at the old place.
    static void relocate(const StoredValue& from, void* to, std::uintptr_t text_shift = 0) noexcept;
    /// Whether the value is a string that is stored inside it.
    bool has_string_inside() const noexcept { return mark() < unlisted; }
    /// Moves a string value to `to`, but leaves the string itself in the old block, where the value had position `index`. The caller then
    /// replaces the head of the old block with a pointer to `home`.
    static void leave_string(const StoredValue& from, void* to, unsigned int index,
                             StringHome& home) noexcept;
    /// Gives the value a text of its own, outside any text area.
    void own_text();
    /// Whether the value owns no memory outside its list. For assertions.
    bool keeps_nothing_outside() const noexcept;
    /// Makes the value own nothing, without freeing anything.
    void forget() noexcept { ::new (this) StoredValue(ParserValue::TYPE_WORD); }
    /// Frees the content. Leaves no object.
    void release() noexcept;

    /// The size of the head of a list's block. The first value follows it.
    static constexpr std::size_t block_head_size = 8;

private:
    static constexpr std::uint32_t least_mark = 0xF0000000u;
    static constexpr std::uint32_t held_bit = 1u << 27;
    static constexpr std::uint32_t spelled_bit = 1u << 23;
    static constexpr std::uint32_t size_mask = (1u << 20) - 1;
    static constexpr std::uint32_t size_apart = size_mask; // the spelling is in a block of its own
    static constexpr std::uint32_t offset_mask = 7u << 20; // bits 32 to 34 of the offset
    static constexpr int offset_shift = 12;
    static constexpr int type_shift = 24;
    static constexpr std::uint32_t largest_type = 7;
    static constexpr std::uint32_t unlisted =
        least_mark - 1; // in place of a mark: a type that ParserValue does not list
    static constexpr std::uint32_t in_own_block = 0xFFFFFFFFu; // in place of the old position of a string

    explicit StoredValue(const Plain& plain) noexcept : ValueData(plain) {}

    static constexpr std::uint32_t mark_of(Type type) noexcept {
        return least_mark | static_cast<std::uint32_t>(type) << type_shift;
    }
    static constexpr std::uint32_t held_form(Type type) noexcept {
        return (mark_of(type) | held_bit) >> type_shift;
    }
    std::uint32_t mark() const noexcept {
        std::uint32_t bits = 0;
        std::memcpy(&bits, static_cast<const void*>(this), sizeof(bits));
        return bits;
    }
    static constexpr bool holds_scalar(std::uint32_t bits) noexcept {
        return (bits & (least_mark | held_bit)) == (least_mark | held_bit);
    }
    static constexpr bool is_spelled(std::uint32_t bits) noexcept {
        return (bits & (least_mark | spelled_bit)) == (least_mark | spelled_bit);
    }
    bool is_spelled_apart() const noexcept { return is_spelled() && (mark() & size_mask) == size_apart; }
    /// Whether a spelling is in the text area of the list.
    bool has_text_in_area() const noexcept {
        return is_spelled() && (mark() & size_mask) != 0 && (mark() & size_mask) != size_apart;
    }
    static std::uint64_t distance(const void* from, const void* to) noexcept {
        return reinterpret_cast<std::uintptr_t>(to) - reinterpret_cast<std::uintptr_t>(from);
    }
    static constexpr std::uint32_t high_bits(std::uint64_t offset) noexcept {
        return static_cast<std::uint32_t>(offset >> offset_shift) & offset_mask;
    }
    std::uint64_t offset() const noexcept {
        return std::uint64_t{mark() & offset_mask} << offset_shift | plain_.offset;
    }
    const char* text() const noexcept { return reinterpret_cast<const char*>(this) + offset(); }
    void move_text(std::uint64_t by) noexcept;

    static StoredValue* make_boxed(void* place, CoreString string);
    void take_scalar(const StoredValue& from) noexcept;
    const Scalar& converted() const noexcept;
    /// Whether it has no scalar yet, and its spelling is in the text area.
    bool has_only_text(Type type) const noexcept {
        const std::uint32_t bits = mark();
        return (bits & ~(offset_mask | size_mask)) == (mark_of(type) | spelled_bit) &&
               (bits & size_mask) - 1 < size_apart - 1;
    }
    std::string_view text_in_area() const noexcept { return {text(), mark() & size_mask}; }
    const Scalar& hold(Scalar scalar) const noexcept {
        plain_.content.scalar = scalar;
        plain_.mark |= held_bit;
        return plain_.content.scalar;
    }
    static Scalar read_spelling(Type type, std::string_view text, bool has_margin) noexcept;
    bool read_as_bool() const;
    int read_as_int() const;
    double read_as_double() const;
    void become(Type type) noexcept;
    void release_string_outside() noexcept;
    void report_mismatch(const char* read) const;

    /// Stores all 64 bits, because store forwarding fails for a wide load after a narrow store.
    static Scalar scalar_of(Type type, std::uint64_t bits) noexcept {
        static_assert(sizeof(Scalar) == sizeof(bits));
        return std::bit_cast<Scalar>(bits << bits_below(type));
    }
    /// Returns how many of the 64 bits are below those of the member. Every member begins at the first byte, so on a big-endian machine it
    /// has the highest bits.
    static int bits_below([[maybe_unused]] Type type) noexcept {
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

/// The head of a block with a spelling of its own. The characters follow it.
struct ValueData::Apart {
    Scalar scalar;
    unsigned int size;
    bool is_converted;

    char* text() noexcept { return reinterpret_cast<char*>(this + 1); }
};

inline std::string_view StoredValue::spelling() const noexcept {
    if (is_spelled_apart()) [[unlikely]] {
        return {plain_.content.apart->text(), plain_.content.apart->size};
    }
    return text_in_area();
}

static_assert(sizeof(StoredValue) == 16 && sizeof(StoredValue) <= sizeof(ParserValue) - sizeof(void*));

/// Copies bytes to memory from CoreMemory. For a null pointer the copy is zeros.
unsigned char* copy_bytes(const void* data, unsigned int size);

/// Decodes a binary-data literal to memory from CoreMemory. Returns null for an empty one.
void* decode_binary_literal(std::string_view literal, unsigned int& size);

/// Appends the binary-data literal of some bytes.
void put_binary_literal(TextBuffer& out, std::string_view bytes);

} // namespace bk
