#pragma once

#include "core/core_export.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace bk {
class StringAccess;
}

/// Lines and columns: 32 bits on every platform.
#if defined(_WIN32)
using core_ulong = unsigned long;
#else
using core_ulong = std::uint32_t;
#endif
using core_uint64 = unsigned long long;
using core_int64 = long long;

/// The read-only part of a string: 8-bit characters with an explicit length. They may be any bytes, NUL too. One more NUL
/// always follows the last character, so that C interfaces can read it.
///
/// Layout: 16 bytes. A text of up to `inline_capacity` characters is inside the object; a longer one is in a block.
class BK_PARSER_API CoreBasicString {
public:
    /// The length of the longest text that needs no block.
    static constexpr unsigned int inline_capacity = 11;

    /// The first character. Valid until the string changes, moves or dies.
    const char* get_data() const noexcept { return is_inline() ? short_.text : long_.data; }
    /// The number of characters, without the closing NUL.
    unsigned int get_length() const noexcept { return short_.length; }
    /// Whether the length is 0.
    bool is_empty() const noexcept { return short_.length == 0; }
    /// The characters, without a copy. Valid until the string changes, moves or dies.
    std::string_view get_view() const noexcept { return {get_data(), get_length()}; }

    /// Byte-wise equality, length included.
    bool operator==(const CoreBasicString& other) const noexcept { return get_view() == other.get_view(); }
    /// Compares with a NUL-terminated text; null is an empty one.
    bool operator==(const char* text) const noexcept {
        return get_view() == (text == nullptr ? std::string_view() : std::string_view(text));
    }

    CoreBasicString(const CoreBasicString&) = delete;
    CoreBasicString& operator=(const CoreBasicString&) = delete;

protected:
    constexpr CoreBasicString() noexcept : short_{0, {}} {}
    ~CoreBasicString() = default;

    /// Whether the characters are inside the object.
    bool is_inline() const noexcept { return short_.length <= inline_capacity; }

    /// What a string holds when its length is at most inline_capacity.
    struct Short {
        /// How many characters there are.
        unsigned int length;
        /// The characters and a NUL.
        char text[inline_capacity + 1];
    };
    /// What every longer string holds. A capacity of 0 marks a borrowed text.
    struct Long {
        /// How many characters there are.
        unsigned int length;
        /// Room for characters; 0 when the text is borrowed.
        unsigned int capacity;
        /// The characters and a NUL.
        char* data;
    };
    union {
        Short short_;
        Long long_;
    };
};

/// An owned string. Copies are deep; a moved-from string is empty. Lengths are 32-bit: `append` refuses what would make the string
/// longer than `max_length`, and the string stays as it was.
class BK_PARSER_API CoreString : public CoreBasicString {
public:
    /// One byte less than the largest length, so that the closing NUL can be counted too.
    static constexpr unsigned int max_length = 0xFFFFFFFEu;

    constexpr CoreString() noexcept = default;
    /// Copies the text up to its NUL; null gives the empty string.
    CoreString(const char* text);
    /// Copies exactly `size` bytes.
    CoreString(const char* data, const unsigned int& size);
    /// Copies the characters, NUL bytes included.
    explicit CoreString(std::string_view text);
    /// Copies the characters.
    CoreString(const CoreString& other) : CoreBasicString() {
        if (other.is_inline()) {
            short_ = other.short_;
        } else {
            assign(other.long_.data, other.long_.length);
        }
    }
    /// Takes the characters; the source is left empty.
    CoreString(CoreString&& other) noexcept : CoreBasicString() { take(other); }
    /// Becomes a copy of the characters.
    CoreString& operator=(const CoreString& other) {
        assign(other.get_data(), other.get_length());
        return *this;
    }
    /// Takes the characters; the source is left empty.
    CoreString& operator=(CoreString&& other) noexcept {
        if (this != &other) {
            release();
            take(other);
        }
        return *this;
    }
    ~CoreString() { release(); }

    /// Replaces the contents with `size` bytes, which may lie inside this very string. A size of 0xFFFFFFFF
    /// means up to the NUL.
    void set_data(const char* data, const unsigned int& size = 0xFFFFFFFF);
    /// Borrows the text instead of copying it; a text of up to `inline_capacity` characters is copied all the same. The caller
    /// keeps the bytes, and a NUL after them, as long as this string borrows them. A copy of the string
    /// owns its text, and so does the string itself after its next change.
    void set_borrowed(const char* data, const unsigned int& size);
    /// Whether the text is borrowed (see set_borrowed).
    bool is_borrowed() const noexcept { return !is_inline() && long_.capacity == 0; }
    /// Becomes the empty string.
    void clear() noexcept;

    /// A shared empty string, for functions that return a reference and have nothing to return.
    static const CoreString& get_null_string() noexcept;

    /// The `length` characters from `start`, fewer where the string ends before.
    CoreString sub_string(const unsigned int& start, const unsigned int& length) const;

    /// The leading decimal integer: white space, a sign and digits. 0 without digits; the nearest int when it is out of range.
    explicit operator int() const noexcept;
    /// The longest prefix that `strtod` takes in the "C" locale; 0 when there is none.
    explicit operator double() const noexcept;

    /// Makes room for `length` characters in all. Only for a text longer than `inline_capacity`: a shorter one is inside the
    /// object, where there is no such room.
    void reserve(const unsigned int& length);
    /// Makes the text `length` bytes long, at most `max_length`, and returns them for writing. The bytes that were there stay.
    /// New ones have unspecified values.
    char* resize(const unsigned int& length);

    /// Appends `size` bytes, which may lie inside this very string. False, and no change, when the length
    /// would pass `max_length`. Amortised constant time per byte.
    bool append(const char* data, const std::size_t& size);
    /// Appends the characters, NUL bytes included.
    bool append(std::string_view text) { return append(text.data(), text.size()); }

    /// Appends the characters up to the NUL.
    CoreString& operator+=(const char* text);
    /// Appends the characters of the other string, which may be this one.
    CoreString& operator+=(const CoreString& other) {
        append(other.get_data(), other.get_length());
        return *this;
    }
    /// Appends one character.
    CoreString& operator+=(char character) {
        const unsigned int length = get_length();
        if (length < capacity()) {
            char* const text = writable_data();
            text[length] = character;
            close_at(text, length + 1);
        } else {
            append_growing(character);
        }
        return *this;
    }
    /// Appends the byte as one character.
    CoreString& operator+=(unsigned char byte) { return *this += static_cast<char>(byte); }
    /// Numbers are appended in decimal digits; a negative one with "-".
    CoreString& operator+=(int number);
    /// Appends the number in decimal digits.
    CoreString& operator+=(unsigned int number);
    /// Appends the number in decimal digits.
    CoreString& operator+=(unsigned long number);
    /// Appends the number in decimal digits.
    CoreString& operator+=(unsigned long long number);
    /// The shortest text that reads back to the same double, with ".0" after it where it has neither a point nor an "e"
    /// (60.0, -0.0, 1e+300). Infinities are "inf" and "-inf"; not-a-number is "nan" or "-nan".
    CoreString& operator+=(double number);

private:
    friend class bk::StringAccess;

    void release() noexcept {
        if (owns_block()) {
            release_block();
        }
    }
    void release_block() noexcept;
    /// Takes over the contents; this string's own have been released.
    void take(CoreString& other) noexcept {
        if (other.is_inline()) {
            short_ = other.short_;
        } else {
            long_ = other.long_;
        }
        other.short_ = {0, {}};
    }

    bool owns_block() const noexcept { return !is_inline() && long_.capacity != 0; }
    unsigned int capacity() const noexcept { return is_inline() ? inline_capacity : long_.capacity; }
    /// How many characters can be appended without a new block: none to a borrowed text.
    unsigned int room() const noexcept { return capacity() > get_length() ? capacity() - get_length() : 0; }
    char* writable_data() noexcept { return is_inline() ? short_.text : long_.data; }
    /// Sets the length of the text at `text`, and its NUL. The text stays inside the object or outside of it, as it was.
    void close_at(char* text, unsigned int length) noexcept {
        text[length] = '\0';
        if (length <= inline_capacity) {
            short_.length = length;
        } else {
            long_.length = length;
        }
    }

    void assign(const char* data, unsigned int size);
    bool append_growing(const char* data, std::size_t size);
    void append_growing(char character);
    void move_to_block(unsigned int capacity);
};

static_assert(sizeof(CoreString) == 16, "names and values are laid out around a string of 16 bytes");
