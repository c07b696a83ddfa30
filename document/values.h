#pragma once

#include "core/core_export.h"
#include "core/core_string.h"
#include "core/gmath_vec.h"
#include "document/path.h"
#include "document/text_ref.h"
#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include <array>
#include <concepts>
#include <cstddef>
#include <iterator>
#include <limits>
#include <optional>
#include <ranges>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

/// The types that values are read as and set from. document/access.h has the functions.
namespace bk_parser {

/// Whether T is one of the wide character types.
template <class T>
inline constexpr bool is_wide_character = std::same_as<T, wchar_t> || std::same_as<T, char8_t> ||
                                          std::same_as<T, char16_t> || std::same_as<T, char32_t>;

/// Every integer type, char included; bool and the wide character types do not count.
template <class T>
concept IntegerValue = std::integral<T> && !std::same_as<T, bool> && !is_wide_character<T>;
/// Every integer type, float and double.
template <class T>
concept NumberValue = IntegerValue<T> || std::same_as<T, float> || std::same_as<T, double>;
/// The types that texts are read as.
template <class T>
concept StringValue =
    std::same_as<T, std::string> || std::same_as<T, CoreString> || std::same_as<T, std::string_view>;
/// The types that binary data is read as. A span refers to the bytes of the entry.
template <class T>
concept BytesValue = std::same_as<T, std::span<const std::byte>> || std::same_as<T, std::vector<std::byte>>;
/// What one value of an entry is read as.
template <class T>
concept SingleValue = std::same_as<T, bool> || NumberValue<T> || StringValue<T> || BytesValue<T> ||
    std::same_as<T, ParserGroup*>;

template <SingleValue T>
class Values;

/// How many values of which type make up a T.
template <class T>
struct ListTraits {
    /// How many values there are; 0 for a type that is not a list of fixed length.
    static constexpr std::size_t size = 0;
};
/// A list of a fixed number of values.
template <class T>
struct ListTraits<GMathVec2<T>> {
    /// The type of the values.
    using Element = T;
    /// How many values there are.
    static constexpr std::size_t size = 2;
};
/// A list of a fixed number of values.
template <class T>
struct ListTraits<GMathVec3<T>> {
    /// The type of the values.
    using Element = T;
    /// How many values there are.
    static constexpr std::size_t size = 3;
};
/// A list of a fixed number of values.
template <class T>
struct ListTraits<GMathVec4<T>> {
    /// The type of the values.
    using Element = T;
    /// How many values there are.
    static constexpr std::size_t size = 4;
};
/// A list of a fixed number of values.
template <class T, std::size_t Size>
struct ListTraits<std::array<T, Size>> {
    /// The type of the values.
    using Element = T;
    /// How many values there are.
    static constexpr std::size_t size = Size;
};

/// A fixed number of values.
template <class T>
concept FixedListValue = ListTraits<T>::size != 0 && SingleValue<typename ListTraits<T>::Element>;

/// Whether T is a std::vector of values.
template <class T>
inline constexpr bool is_vector = false;
template <SingleValue T>
inline constexpr bool is_vector<std::vector<T>> = true;
/// Whether T is a Values.
template <class T>
inline constexpr bool is_values = false;
/// Whether T is a Values.
template <SingleValue T>
inline constexpr bool is_values<Values<T>> = true;

/// A list that takes all values up to the last.
template <class T>
concept OpenListValue = (is_vector<T> || is_values<T>)&&!BytesValue<T>;

/// The types that `get` can read.
template <class T>
concept ReadableValue = SingleValue<T> || FixedListValue<T> || OpenListValue<T>;

/// A text, such as a string or a literal. A null pointer to a text is an empty text.
template <class T>
concept TextValue = StringValue<T> || TextLike<T>;
/// What one value may be set to. Not a char: the text form has none and would write 'A' as 65. Set "A" or int('A').
template <class T>
concept WritableSingleValue =
    std::same_as<T, bool> ||(NumberValue<T> && !std::same_as<T, char>) || TextValue<T> || BytesValue<T>;

/// Whether T is a list that values can be set from.
template <class T>
inline constexpr bool is_writable_list = false;
template <WritableSingleValue T>
inline constexpr bool is_writable_list<std::vector<T>> = !BytesValue<std::vector<T>>;
template <class T, std::size_t Extent>
inline constexpr bool is_writable_list<std::span<T, Extent>> =
    WritableSingleValue<std::remove_const_t<T>> && !BytesValue<std::span<T, Extent>>;

/// What a value may be set to.
template <class T>
concept WritableValue = WritableSingleValue<T> || is_writable_list<T> ||
    (ListTraits<T>::size != 0 && WritableSingleValue<typename ListTraits<T>::Element>);

/// Arguments that would convert to T and change their meaning: a text to a bool, a double to an integer, nullptr to a text.
template <class T, class Given>
concept WrongByAccident =
    (std::same_as<T, bool> && (std::is_pointer_v<std::decay_t<Given>> || std::is_floating_point_v<Given>)) ||
    (IntegerValue<T> && std::is_floating_point_v<Given>) || std::is_null_pointer_v<Given>;

/// A value to store. Does not own texts and bytes.
class GivenValue {
public:
    /// What kind of value is to be stored.
    enum class Kind { boolean, integer, real, single, text, bytes, impossible };

    /// Refers to the value, and copies nothing but numbers.
    template <WritableSingleValue T>
    explicit GivenValue(const T& value) noexcept {
        if constexpr (std::same_as<T, bool>) {
            kind = Kind::boolean;
            integer = value ? 1 : 0;
        } else if constexpr (std::unsigned_integral<T>) {
            take_unsigned(value);
        } else if constexpr (std::integral<T>) {
            kind = Kind::integer;
            integer = static_cast<long long>(value); // NOLINT(bugprone-signed-char-misuse)
        } else if constexpr (std::floating_point<T>) {
            kind = std::same_as<T, float> ? Kind::single : Kind::real;
            real = static_cast<double>(value);
        } else if constexpr (BytesValue<T>) {
            kind = Kind::bytes;
            text = {reinterpret_cast<const char*>(value.data()), value.size()};
        } else if constexpr (std::derived_from<T, CoreBasicString>) {
            take_text(value.get_view());
        } else {
            take_text(TextRef(value).view());
        }
    }

    /// Which of the members holds the value.
    Kind kind = Kind::impossible;
    /// For bools and integers.
    long long integer = 0;
    /// For floats and doubles.
    double real = 0.0;
    /// For texts and bytes; not owned.
    std::string_view text;

private:
    void take_text(std::string_view given) noexcept {
        kind = Kind::text;
        text = given;
    }
    void take_unsigned(unsigned long long value) noexcept {
        if (value <= static_cast<unsigned long long>(std::numeric_limits<long long>::max())) {
            kind = Kind::integer;
            integer = static_cast<long long>(value);
        } else if (value % 2048 == 0) { // the doubles from 2^63 to 2^64
            kind = Kind::real;
            real = static_cast<double>(value);
        }
    }
};

/// Internal: the functions that the templates above call.
namespace access {

/// What happens to the values after those that are set.
enum class ListEnd {
    keep, ///< they stay
    cut   ///< they are removed
};

/// Reads a value. Returns false, and leaves `out` as it was, when the entry has no such value or it is not of that type.
BK_PARSER_API bool read(const ParserEntry& entry, unsigned int value, bool& out);
/// Reads an integer.
BK_PARSER_API bool read(const ParserEntry& entry, unsigned int value, long long& out);
/// Reads an integer that is not negative.
BK_PARSER_API bool read(const ParserEntry& entry, unsigned int value, unsigned long long& out);
/// Reads a number as a float. Returns false also when the number is larger than any float.
BK_PARSER_API bool read(const ParserEntry& entry, unsigned int value, float& out);
/// Reads a number as a double.
BK_PARSER_API bool read(const ParserEntry& entry, unsigned int value, double& out);
/// Reads a string. The view is valid until the entry is changed or dies.
BK_PARSER_API bool read(const ParserEntry& entry, unsigned int value, std::string_view& out);
/// Reads binary data. The span is valid until the entry is changed or dies.
BK_PARSER_API bool read(const ParserEntry& entry, unsigned int value, std::span<const std::byte>& out);
/// Reads a group.
BK_PARSER_API bool read(const ParserEntry& entry, unsigned int value, ParserGroup*& out);

/// The entry that a path finds first; null when there is none. Stores the value that the path names in `value`.
BK_PARSER_API const ParserEntry* find_value(const ParserGroup& group, PathRef path, unsigned int& value);

/// Sets values of an entry, as bk_parser::set describes.
BK_PARSER_API bool set_values(ParserEntry& entry, unsigned int value, std::span<const GivenValue> given,
                              ListEnd end);
/// Sets values at the place that a path names, as bk_parser::set describes.
BK_PARSER_API bool set_values(ParserGroup& group, PathRef path, std::span<const GivenValue> given,
                              ListEnd end);
/// Adds an entry with values, as bk_parser::add describes.
BK_PARSER_API ParserEntry* add_values(ParserGroup& group, PathRef path, std::span<const GivenValue> given);

/// A char of a document is signed on every platform.
inline std::optional<char> read_char(const ParserEntry& entry, unsigned int value) {
    long long wide = 0;
    return read(entry, value, wide) && wide >= -128 && wide <= 127
               ? std::optional<char>(static_cast<char>(wide))
               : std::nullopt;
}

/// Reads an integer that the type can hold.
template <IntegerValue T>
std::optional<T> read_integer(const ParserEntry& entry, unsigned int value) {
    using Wide = std::conditional_t<std::signed_integral<T>, long long, unsigned long long>;
    Wide wide = 0;
    constexpr Wide least = static_cast<Wide>(std::numeric_limits<T>::min());
    constexpr Wide most = static_cast<Wide>(std::numeric_limits<T>::max());
    if (!read(entry, value, wide) || wide < least || wide > most) {
        return std::nullopt;
    }
    return static_cast<T>(wide);
}

/// Reads one value of any type.
template <SingleValue T>
std::optional<T> read_single(const ParserEntry& entry, unsigned int value) {
    if constexpr (std::same_as<T, char>) {
        return read_char(entry, value);
    } else if constexpr (IntegerValue<T>) {
        return read_integer<T>(entry, value);
    } else if constexpr (std::same_as<T, std::string> || std::same_as<T, CoreString>) {
        std::string_view text;
        return read(entry, value, text) ? std::optional<T>(T(text)) : std::nullopt;
    } else if constexpr (std::same_as<T, std::vector<std::byte>>) {
        std::span<const std::byte> bytes;
        return read(entry, value, bytes) ? std::optional<T>(T(bytes.begin(), bytes.end())) : std::nullopt;
    } else {
        T read_value{};
        return read(entry, value, read_value) ? std::optional<T>(read_value) : std::nullopt;
    }
}

/// Reads a list of fixed length.
template <FixedListValue T>
std::optional<T> read_fixed_list(const ParserEntry& entry, unsigned int value) {
    T list{};
    for (unsigned int i = 0; i < ListTraits<T>::size; ++i) {
        auto element = read_single<typename ListTraits<T>::Element>(entry, value + i);
        if (!element) {
            return std::nullopt;
        }
        list[i] = std::move(*element);
    }
    return list;
}

/// Reads all values from this one on.
template <class T>
std::optional<std::vector<T>> read_vector(const ParserEntry& entry, unsigned int value) {
    if (value > entry.get_value_count()) {
        return std::nullopt;
    }
    std::vector<T> list;
    for (unsigned int i = value; i < entry.get_value_count(); ++i) {
        auto element = read_single<T>(entry, i);
        if (!element) {
            return std::nullopt;
        }
        list.push_back(std::move(*element));
    }
    return list;
}

/// Reads what `get` can read.
template <ReadableValue T>
std::optional<T> read_any(const ParserEntry& entry, unsigned int value) {
    if constexpr (SingleValue<T>) {
        return read_single<T>(entry, value);
    } else if constexpr (FixedListValue<T>) {
        return read_fixed_list<T>(entry, value);
    } else if constexpr (is_values<T>) {
        return T::of_all(entry, value);
    } else {
        return read_vector<typename T::value_type>(entry, value);
    }
}

/// Calls `act` with the given values as a list.
template <WritableValue T, class Action>
auto with_given(const T& content, const Action& act) {
    if constexpr (WritableSingleValue<T>) {
        const GivenValue given(content);
        return act(std::span<const GivenValue>(&given, 1), ListEnd::keep);
    } else if constexpr (ListTraits<T>::size != 0) {
        std::vector<GivenValue> given;
        for (unsigned int i = 0; i < ListTraits<T>::size; ++i) {
            given.emplace_back(content[i]);
        }
        return act(std::span<const GivenValue>(given), ListEnd::keep);
    } else {
        std::vector<GivenValue> given;
        for (const typename T::value_type& element : content) {
            given.emplace_back(element);
        }
        return act(std::span<const GivenValue>(given), ListEnd::cut);
    }
}

} // namespace access

/// The values of an entry that can be read as T, in order; skips the others. Also visits values that are added during the walk. Refers
/// to the entry.
template <SingleValue T>
class Values : public std::ranges::view_base {
public:
    /// An iterator, as the standard library defines them.
    class Iterator {
    public:
        /// The category, for the standard library.
        using iterator_concept = std::forward_iterator_tag;
        /// The category, for the standard library.
        using iterator_category = std::input_iterator_tag;
        /// The type of an item.
        using value_type = T;
        /// The type of distances.
        using difference_type = std::ptrdiff_t;
        /// What `*` returns.
        using reference = T;
        /// What `->` returns.
        using pointer = void;

        Iterator() = default;
        /// At the first value from `index` on that can be read as T.
        Iterator(const ParserEntry& entry, unsigned int index) : entry_(&entry), index_(index) { find(); }

        /// The current value.
        T operator*() const { return *value_; }
        /// Goes to the next value.
        Iterator& operator++() {
            ++index_;
            find();
            return *this;
        }
        /// Goes to the next value.
        Iterator operator++(int) {
            Iterator before = *this;
            ++*this;
            return before;
        }
        /// Whether both are at the same value.
        bool operator==(const Iterator& other) const noexcept { return index_ == other.index_; }
        /// Whether the range has ended.
        bool operator==(std::default_sentinel_t) const noexcept { return !value_; }
        /// Which value of the entry this is.
        unsigned int index() const noexcept { return index_; }

    private:
        void find() {
            value_.reset();
            while (index_ < entry_->get_value_count() && !value_) {
                value_ = access::read_single<T>(*entry_, index_);
                index_ += value_ ? 0 : 1;
            }
        }

        const ParserEntry* entry_ = nullptr;
        unsigned int index_ = 0;
        std::optional<T> value_;
    };

    /// The values from `first` on. The entry must outlive the range.
    explicit Values(const ParserEntry& entry, unsigned int first = 0) noexcept
        : entry_(&entry), first_(first) {}

    /// An iterator, for range-based loops.
    Iterator begin() const { return Iterator(*entry_, first_); }
    /// An iterator, for range-based loops.
    std::default_sentinel_t end() const noexcept { return std::default_sentinel; }

    /// Returns nothing when a value from `first` on is not a T.
    static std::optional<Values> of_all(const ParserEntry& entry, unsigned int first) {
        if (first > entry.get_value_count()) {
            return std::nullopt;
        }
        for (unsigned int i = first; i < entry.get_value_count(); ++i) {
            if (!access::read_single<T>(entry, i)) {
                return std::nullopt;
            }
        }
        return Values(entry, first);
    }

private:
    const ParserEntry* entry_;
    unsigned int first_;
};

/// `for (double number : values<double>(entry))`; with ParserGroup* the groups that an entry holds.
template <SingleValue T>
Values<T> values(const ParserEntry& entry) {
    return Values<T>(entry);
}

} // namespace bk_parser
