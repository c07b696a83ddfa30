#pragma once

#include "core/core_containers.h"
#include "core/core_export.h"
#include "core/core_string.h"
#include "core/gmath_vec.h"
#include "parser/parser_value.h"
#include "parser/parser_value_list.h"

class ParserGroup;
class ParserWord;
namespace bk {
class EntryAccess;
struct EntryFields;
} // namespace bk

/// An entry of a document: a name, a kind, an optional template name, an optional array count, the place where it was read, and an
/// ordered list of values, which the entry owns.
///
/// Functions that take an index do not check it unless their comment says so. The comments of get_name, get_template and get_string say
/// how long their references are valid.
///
/// When memory runs out, constructors and edits throw std::bad_alloc (std::length_error where a count would pass its limit) and
/// leave everything as it was. Nothing else throws.
///
/// Layout: 64 bytes, one cache line. An entry with values takes 8 more for the head of their list, and 16 for each value.
class BK_PARSER_API ParserEntry {
public:
    /// What kind of entry it is.
    enum Type : unsigned int {
        TYPE_ENTRY = 0,         ///< ordinary; the name is an identifier
        TYPE_KEYWORD = 1,       ///< the name is a keyword, "#" and a name
        TYPE_FUNCTION_CALL = 2, ///< the values are an argument list in parentheses
        TYPE_RAW_TEXT = 3       ///< its strings are written verbatim, without name or separators
    };

    /// What get_array_count returns for an entry that is not an array.
    static constexpr unsigned int not_an_array = 0xFFFFFFFFu;

    /// An entry without values. get_line and get_column will return `line` and `column`.
    ParserEntry(const CoreString& name, const Type& type, const core_ulong& line, const core_ulong& column);
    /// A deep copy: copies nested groups at any depth. Their source entries are null.
    ParserEntry(const ParserEntry& other);
    virtual ~ParserEntry();

    /// **Shallow**: afterwards both entries list the same values, and a change of a value shows in both. A value dies with the last
    /// entry that lists it. Use copy_from for an independent copy.
    ParserEntry& operator=(const ParserEntry& other);
    /// Becomes a deep copy of the other entry. Copying an entry from itself changes nothing.
    void copy_from(const ParserEntry& other);
    /// Deletes all values; name, type, place, array count and template stay.
    void reset();

    /// The name. The reference is valid until the entry is renamed or assigned to, or dies.
    const CoreString& get_name() const noexcept { return name_; }
    /// The kind of the entry.
    const Type& get_type() const noexcept { return type_; }
    /// The template name, empty when there is none. The reference is valid until set_template.
    const CoreString& get_template() const noexcept;
    /// The line of the entry, counted from 1, in the text that was parsed. That is not the line in the file: includes are spliced into
    /// that text and comments dropped (docs/language.md). 0 for an entry made by add_group.
    const core_ulong& get_line() const noexcept { return line_; }
    /// The column in that line of the text that was parsed.
    const core_ulong& get_column() const noexcept { return column_; }
    /// The declared size, 0 when none was stated, not_an_array otherwise.
    const unsigned int& get_array_count() const noexcept { return array_count_; }
    /// How many values it holds.
    const unsigned int& get_value_count() const noexcept { return values_.get_count(); }
    /// Whether it holds a value.
    bool has_value() const noexcept { return values_.get_count() != 0; }
    /// Whether it was declared as an array.
    bool is_array() const noexcept { return array_count_ != not_an_array; }
    /// Whether it has a template name.
    bool is_template() const noexcept { return !get_template().is_empty(); }
    /// Whether it has exactly one value, and that is a group.
    bool is_group() const;

    /// Gives the entry another name. Does not check the name, and does not update the indexes of the group.
    void rename(const CoreString& name);
    /// The empty string removes the template.
    void set_template(const CoreString& name);
    /// Sets the declared size, or with `is_array` false removes it; `count` is then ignored. The values do not change.
    void set_array(const bool& is_array, const unsigned int& count);
    /// Makes the entry TYPE_RAW_TEXT, or with false TYPE_ENTRY, whatever it was before. The indexes of the group change only when they
    /// are next rebuilt.
    void set_as_raw_text(bool raw);

    /// Appends a bool. Each of these functions appends one value, or for a vector one value a component, in amortised constant time.
    void add_bool(const bool& value);
    /// Appends a char. It is written as its code: 'A' as 65, which reads back as an int.
    void add_char(const char& value);
    /// Appends an int.
    void add_int(const int& value);
    /// Appends a double.
    void add_double(const double& value);
    /// Appends a copy of the string.
    void add_string(const CoreString& value);
    /// Appends a copy of `size` bytes.
    void add_binary_data(void* data, const unsigned int& size);
    /// Appends a value of this type from a word of the text syntax. Removes the quotes of a string.
    void add_word(const ParserWord& word, const ParserValue::Type& type);
    /// Adopts `group`, leaves its source entry as it is, and returns it. When memory runs out, the caller still owns it. With null,
    /// makes a new group without a name, whose source entry is this entry.
    ParserGroup* add_group(ParserGroup* group);
    /// Appends the components as values of their own, in order.
    void add_vec2d(const GMathVec2<double>& value);
    /// Appends the components as values of their own, in order.
    void add_vec2i(const GMathVec2<int>& value);
    /// Appends the components as values of their own, in order.
    void add_vec3d(const GMathVec3<double>& value);
    /// Appends the components as values of their own, in order.
    void add_vec4d(const GMathVec4<double>& value);

    /// Reads value `i` as this type. ParserValue describes conversions and messages. A message for which there is no memory is
    /// dropped.
    bool get_bool(const unsigned int& i) const;
    /// Reads value `i` as a char, as get_bool does.
    char get_char(const unsigned int& i) const;
    /// Reads value `i` as an int, as get_bool does.
    int get_int(const unsigned int& i) const;
    /// Reads value `i` as a double, as get_bool does.
    double get_double(const unsigned int& i) const;
    /// The string of value `i`. The reference is valid, and the characters stay at their address, until that value is set or
    /// removed or the last entry that lists it dies. Changes of other values, and moves of the entry, do not matter.
    const CoreString& get_string(const unsigned int& i) const;
    /// The bytes, which the entry owns; get_binary_data_size returns their number.
    void* get_binary_data(const unsigned int& i) const;
    /// The number of bytes that get_binary_data returns.
    unsigned int get_binary_data_size(const unsigned int& i) const;
    /// The text of value `i`, without quotes, whatever its type. Empty for a group. When memory runs out, it logs that and is empty.
    CoreString get_word(const unsigned int& i) const;
    /// The group of value `i`; null when that is not a group. The group stays at its address until that value is set or removed or the
    /// last entry that lists it dies. **An entry without values gets a new group**, whatever `i` is: that is an edit.
    ParserGroup* get_group(const unsigned int& i) const;
    /// The values from `i` on as components. Missing ones are 0.
    GMathVec2<double> get_vec2d(const unsigned int& i) const;
    /// The values from `i` on as two int components. Missing ones are 0.
    GMathVec2<int> get_vec2i(const unsigned int& i) const;
    /// The values from `i` on as three components. Missing ones are 0.
    GMathVec3<double> get_vec3d(const unsigned int& i) const;
    /// The values from `i` on as four components. Missing ones are 0.
    GMathVec4<double> get_vec4d(const unsigned int& i) const;

    /// Whether that value is a group.
    bool is_value_group(const unsigned int& i) const;
    /// Whether that value is of the type in the name.
    bool is_value_bool(const unsigned int& i) const;
    /// Whether that value is of the type in the name.
    bool is_value_char(const unsigned int& i) const;
    /// Whether that value is of the type in the name.
    bool is_value_int(const unsigned int& i) const;
    /// Whether that value is a double or an int.
    bool is_value_double(const unsigned int& i) const;
    /// Whether that value is of the type in the name.
    bool is_value_string(const unsigned int& i) const;
    /// The type of that value; 0xFFFFFFFF when the entry has no values.
    ParserValue::Type get_value_type(const unsigned int& i) const;

    /// Sets value `i` to a bool, whatever type it had.
    void set_bool(const bool& value, const unsigned int& i);
    /// Sets value `i` to an int.
    void set_int(const int& value, const unsigned int& i);
    /// Sets value `i` to a double.
    void set_double(const double& value, const unsigned int& i);
    /// Sets value `i` to a copy of the string.
    void set_string(const CoreString& value, const unsigned int& i);
    /// Sets value `i` to a copy of `size` bytes.
    void set_binary_data(void* data, const unsigned int& size, const unsigned int& i);

    /// Moves a value to position `to`. The values between shift by one position.
    void move_value(const unsigned int& from, const unsigned int& to);
    /// Removes the value at this position. An index past the end removes nothing.
    void remove_value(const unsigned int& i);
    /// Removes the values at these positions. The others keep their order. Indices may come in any order and repeat. Indices past the
    /// end are ignored.
    void remove_value(const CoreBasicArray<unsigned int>& indices);
    /// Removes the values at the positions in a list, by the same rules.
    void remove_value(const CoreList<unsigned int>& indices);

    /// Appends the entry as text. Pretty: an entry a line, indented by `level`. Compact: all on one line.
    void get_text(CoreString& out, const bool& pretty, const unsigned int& level) const;
    /// Appends the values alone, as get_text does.
    void get_value_text(CoreString& out, const bool& pretty, const unsigned int& level) const;

    /// **The cipher is not security**. Replaces `data` with the entry's text, encrypted with `key` (docs/formats.md). An empty text
    /// leaves `data` as it was.
    void get_encrypted_text(CoreArray<unsigned char>& data, const CoreString& key, const bool& pretty,
                            const unsigned int& level) const;
    /// Replaces `text` with the encrypted text as hexadecimal digits.
    void get_encrypted_text(CoreString& text, const CoreString& key, const bool& pretty,
                            const unsigned int& level) const;

    /// The binary form: name and values; kind, template, array count and place are not part of it.
    CoreVector<char> get_binary() const;
    /// Reads what follows the name in the binary form, and appends the values. Returns false when the data is bad, and keeps what it
    /// read before. Logs a chunk larger than the whole buffer at level 2:
    /// "ParserEntry.set_binary: ParserEntry '<name>', chunk size (<size>) is larger than the given buffer (<size>)\n".
    bool set_binary(const CoreVector<char>& data, core_uint64& position);

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
    friend class bk::EntryAccess;

    /// What only few entries have.
    struct Rare {
        CoreString template_name;
        unsigned int other_owners = 0;       // lists that hold the entry, besides the first
        unsigned long long former_names = 0; // a bit for each name since it was read
    };

    explicit ParserEntry(const bk::EntryFields& fields) noexcept;

    Rare& make_rare();
    void change_type(Type type) noexcept;
    void leave_values() noexcept;
    void copy_fields(const ParserEntry& other);
    void copy_former_names(const ParserEntry& other);
    void append(ParserValue&& value);

    CoreString name_;
    mutable ParserValueList values_; // reading the group of an empty entry makes it
    core_ulong line_;
    core_ulong column_;
    unsigned int array_count_ = not_an_array;
    Type type_;
    Rare* rare_ = nullptr;
};
