#pragma once

#include "core/core_containers.h"
#include "core/core_export.h"
#include "core/core_string.h"

#include <concepts>
#include <new>

class ParserGroup;
class ParserWord;
namespace bk {
class StoredValue;

/// @cond
/// Internal: the 16 bytes of bk::StoredValue, which says what they mean. They are in this header so that debuggers know them.
struct ValueData {
    /// A spelling that has a block of its own, and its scalar.
    struct Apart;
    /// The number of a value; its type says which member holds it.
    union Scalar {
        bool as_bool;     ///< of a bool
        char as_char;     ///< of a char
        int as_int;       ///< of an int
        double as_double; ///< of a double; 0.0 until a spelling is converted
    };
    /// What a value holds.
    union Content {
        Scalar scalar;              ///< of a bool, char, int or double
        unsigned char* bytes;       ///< of binary data
        ParserGroup* group;         ///< of a group value
        Apart* apart;               ///< of a value whose spelling has a block of its own
        CoreString* string;         ///< of a string outside the value
        unsigned int unlisted_type; ///< the type, when ParserValue does not list it
    };
    /// Every value except a string inside.
    struct Plain {
        /// Type, flags, and the size of the spelling.
        unsigned int mark;
        /// The offset of the spelling; the size of binary data; the old position of a string outside the value.
        unsigned int offset;
        /// What the value holds.
        Content content;
    };

    /// Holds these bytes.
    explicit ValueData(const Plain& plain) noexcept : plain_(plain) {}
    ValueData(const ValueData&) = delete;
    ValueData& operator=(const ValueData&) = delete;
    ~ValueData() {} // NOLINT(modernize-use-equals-default): the union has none

    union {
        mutable Plain plain_;       ///< every value but a string inside
        mutable CoreString string_; ///< a string inside
    };
};
/// @endcond
} // namespace bk

/// One typed value of an entry: a scalar, a string, binary data, a bare word or a whole group.
///
/// A value that was read from text keeps its spelling, and is written back as it was spelled. Its first typed read converts it once.
/// A value that was set has no spelling: each request makes its text anew.
///
/// Layout: 32 bytes. An entry stores its values in 16 bytes each (docs/architecture.md draws them).
struct BK_PARSER_API ParserValue {
    /// Stored in binary documents: the numbers are fixed.
    enum Type : unsigned int {
        TYPE_GROUP = 0,
        TYPE_BOOL = 1,
        TYPE_CHAR = 2,
        TYPE_INT = 3,
        TYPE_DOUBLE = 4,
        TYPE_STRING = 5,
        TYPE_BINARY_DATA = 6,
        TYPE_WORD = 7
    };

    /// A value of TYPE_CHAR.
    explicit ParserValue(const char& value);
    /// A value of TYPE_INT.
    explicit ParserValue(const int& value);
    /// A double is always finite: infinities become the largest magnitude of their sign, not-a-number the
    /// lowest finite double.
    explicit ParserValue(const double& value);
    /// A value of TYPE_BOOL.
    explicit ParserValue(const bool& value);
    /// A value of TYPE_STRING, with a copy of the string.
    explicit ParserValue(const CoreString& value);
    /// Does not compile: a plain pointer would convert to a bool. Pass a CoreString.
    template <std::same_as<char> T>
    explicit ParserValue(const T* text) = delete;
    /// Adopts the group, which dies with the value. Null makes a new group with an empty name.
    explicit ParserValue(ParserGroup* group);
    /// Copies `size` bytes.
    ParserValue(void* data, const unsigned int& size);
    /// A value from a word of a text, which is converted later. Binary data is decoded at once, and its text is
    /// not kept. For TYPE_GROUP makes a new group named `text`. For a type that is not listed above stores nothing.
    ParserValue(const Type& type, const CoreString& text);
    /// A deep copy: copies a group with everything in it, at any depth, without recursion.
    ParserValue(const ParserValue& other);
    virtual ~ParserValue();

    /// **Shallow and unsafe**: afterwards both values refer to the same string, bytes or group, and what this value held before leaks.
    /// The caller must let only one of the two be destroyed, cleared or set.
    ParserValue& operator=(const ParserValue& other);

    /// Frees the content. The type stays. A cleared value reads and prints as the empty text.
    void clear();

    /// Sets type and content to a bool. Frees the old content.
    void set_bool(const bool& value);
    /// Sets type and content to a char. Frees the old content.
    void set_char(const char& value);
    /// Sets type and content to an int. Frees the old content.
    void set_int(const int& value);
    /// Sets type and content to a double. Frees the old content.
    void set_double(const double& value);
    /// Sets type and content to a copy of the string. Frees the old content.
    void set_string(const CoreString& value);
    /// Sets type and content to a copy of `size` bytes. Frees the old content.
    void set_binary_data(void* data, const unsigned int& size);

    /// Reads the value as this type. **A double outside the int range reads as -2147483648**. Bool, char, int and double convert into each
    /// other: a char gets the low 8 bits of an int, and a double is truncated toward zero. For a value of another type, returns
    /// false, 0 or an empty text, and logs at level 2, if there is memory for that,
    /// "ParserValue.<read>: type mismatch, value type is '<type name>' \n".
    bool get_as_bool() const;
    /// Reads the value as a char; see get_as_bool.
    char get_as_char() const;
    /// Reads the value as an int; see get_as_bool.
    int get_as_int() const;
    /// Reads the value as a double; see get_as_bool.
    double get_as_double() const;
    /// The string of a TYPE_STRING value, else the empty string. Valid until the value is changed or assigned to another
    /// one, or dies. For the strings of an entry see ParserEntry::get_string.
    const CoreString& get_as_string() const;
    /// The bytes of a TYPE_BINARY_DATA value, which still owns them. For any other type returns null and leaves `size` as it was.
    void* get_as_binary_data(unsigned int& size) const;

    /// Converts a value that is still only text. The typed reads do this themselves.
    void make_value() const;

    /// The name of a type, from "TYPE_GROUP" to "TYPE_WORD"; "TYPE_UNKNOWN" for any other number.
    static CoreString get_type_name(const Type& type);

    /// Appends the value as text: a string with quotes and escapes, a group in braces, indented by `level` when `pretty`.
    void get_text(CoreString& out, const bool& pretty, const unsigned int& level) const;

    /// Decodes a binary-data literal: "0x", two upper-case hexadecimal digits a byte, eight digits of checksum. **Does not verify the
    /// checksum**. A pair with any other character decodes as 0. For a literal of odd length, or of at most
    /// 10 characters, returns null and a size of 0. The caller frees the bytes with CoreMemory::release and their size.
    static void word_to_binary_data(void*& data, unsigned int& size, const ParserWord& word);

    /// Appends the binary form (docs/formats.md) and adds its length to `count`. Linear in the output.
    void get_binary(CoreVector<char>& out, unsigned long long& count, const bool& with_type) const;

    /// Encoders: each appends to `out` and returns the number of bytes appended.
    static unsigned long long bool_to_bin(CoreVector<char>& out, const bool& value);
    /// Appends the value's bytes, little-endian (docs/formats.md).
    static unsigned long long char_to_bin(CoreVector<char>& out, const char& value);
    /// Appends the value's bytes, little-endian (docs/formats.md).
    static unsigned long long int_to_bin(CoreVector<char>& out, const int& value);
    /// Appends the value's bytes, little-endian (docs/formats.md).
    static unsigned long long double_to_bin(CoreVector<char>& out, const double& value);
    /// Appends the value's bytes, little-endian (docs/formats.md).
    static unsigned long long size_to_bin(CoreVector<char>& out, const unsigned long long& value);
    /// Appends the value's bytes, little-endian (docs/formats.md).
    static unsigned long long string_to_bin(CoreVector<char>& out, const CoreString& value);
    /// Appends the value's bytes, little-endian (docs/formats.md).
    static unsigned long long binary_data_to_bin(CoreVector<char>& out, void* data, const unsigned int& size);
    /// Appends the value's bytes, little-endian (docs/formats.md).
    static unsigned long long group_to_bin(CoreVector<char>& out, const ParserGroup& group);

    /// Decoders: each reads at `position` and advances it. Missing bytes of a fixed-width value count as 0.
    static bool bin_to_bool(const CoreVector<char>& data, unsigned long long& position);
    /// Reads the value at the position, and advances it. Missing bytes count as 0.
    static char bin_to_char(const CoreVector<char>& data, unsigned long long& position);
    /// Reads the value at the position, and advances it. Missing bytes count as 0.
    static int bin_to_int(const CoreVector<char>& data, unsigned long long& position);
    /// Reads the value at the position, and advances it. Missing bytes count as 0.
    static double bin_to_double(const CoreVector<char>& data, unsigned long long& position);
    /// Reads the value at the position, and advances it. Missing bytes count as 0.
    static unsigned long long bin_to_size(const CoreVector<char>& data, unsigned long long& position);
    /// Reads a string up to its NUL. Without a NUL returns the empty string, sets `position` to the end, and logs
    /// "ParserValue.bin_to_string: Failed to parse string\n" at level 2.
    static CoreString bin_to_string(const CoreVector<char>& data, unsigned long long& position);
    /// Reads binary data. The caller frees the bytes with CoreMemory::release and their size. Returns null and a size of 0 for empty data,
    /// and when the buffer ends too early; in the second case logs "ParserValue.bin_to_binary_data: Failed to parse string\n" at level 2.
    static void* bin_to_binary_data(const CoreVector<char>& data, unsigned long long& position,
                                    unsigned int& size);
    /// Reads a tag and its value, which the caller owns. Null for a tag above 6 and at the end of the data.
    static ParserValue* bin_to_value(const CoreVector<char>& data, unsigned long long& position);

    /// Allocates from the library's slabs, whichever module makes the object.
    static void* operator new(std::size_t size);
    /// Null when memory has run out, and for a derived class of more than CoreMemory::largest_slab_block bytes.
    static void* operator new(std::size_t size, const std::nothrow_t&) noexcept;
    /// Constructs the object in memory of the caller's.
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    /// Returns the block to the library's slabs, whichever module deletes the object.
    static void operator delete(void* block, std::size_t size) noexcept;
    /// Returns the block when a constructor threw.
    static void operator delete(void* block, const std::nothrow_t&) noexcept;

private:
    friend class bk::StoredValue;

    bk::ValueData stored_{bk::ValueData::Plain{}}; // a bk::StoredValue
    unsigned int unused_[2] = {0, 0};              // keeps the size of the class at 32 bytes
};
