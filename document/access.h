#pragma once

#include "core/core_export.h"
#include "document/path.h"
#include "document/text_ref.h"
#include "document/values.h"
#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// @file
/// Reads and changes values of a tree by paths. A malformed path finds nothing and changes nothing; path_error says why. Nothing here
/// logs, except `to_text` when memory runs out. A null pointer to a text is an empty text; nullptr itself does not compile.
///
/// A path names one value of an entry. That is the value after `@`, if the path has one; otherwise, when the last step has a key, the value
/// after the key; otherwise value 0.
/// `get`, `set` and `add` agree on that: `shot["010"]` is value 1 of that shot, and `shot["010"]@0` its key.
///
/// Every call searches from the beginning of the group, and takes time in proportion to the entries before the one that it finds (see
/// PathSearch). To read or change one entry often, find it once and use the functions that take an entry.
///
/// A change is made whole or not at all: when memory runs out, a function throws std::bad_alloc or std::length_error and leaves the
/// tree as it was, unless its description says otherwise.

namespace bk_parser {

/// Reads value `value` of the entry as T. A list reads the values from there on. Returns nothing when a value is missing or is not a T.
///
/// T may be bool, an integer, float, double, std::string, CoreString, std::string_view, bytes as
/// std::span<const std::byte> or std::vector<std::byte>, GMathVec2, 3 or 4, std::array of these, and std::vector<T> or
/// Values<T> of single ones. A vector or Values takes all values to the last.
///
/// A value is a T when the conversion loses nothing. An int converts to every number type that can hold it. A double converts to an integer
/// type when it is whole. Every number converts to the nearest float. A bool is only a bool, and a string is only a string.
///
/// A std::string_view, a span and Values point into the tree. They are valid until the entry is changed or dies.
template <ReadableValue T>
[[nodiscard]] std::optional<T> get(const ParserEntry& entry, unsigned int value = 0) {
    return access::read_any<T>(entry, value);
}

/// Reads the first entry that the path finds, from the value that the path names on.
template <ReadableValue T>
[[nodiscard]] std::optional<T> get(const ParserGroup& group, PathRef path) {
    unsigned int value = 0;
    const ParserEntry* const entry = access::find_value(group, path, value);
    return entry == nullptr ? std::nullopt : access::read_any<T>(*entry, value);
}

/// Returns what `get` returns, or the fallback when `get` returns nothing. When the fallback is a text, the result is a std::string.
template <ReadableValue T>
[[nodiscard]] T get_or(const ParserGroup& group, PathRef path, T fallback) {
    std::optional<T> found = get<T>(group, path);
    return found ? std::move(*found) : std::move(fallback);
}
/// Reads value `value` of an entry, or returns the fallback.
template <ReadableValue T>
[[nodiscard]] T get_or(const ParserEntry& entry, unsigned int value, T fallback) {
    std::optional<T> found = get<T>(entry, value);
    return found ? std::move(*found) : std::move(fallback);
}
/// Reads a string, or returns a copy of the fallback.
[[nodiscard]] inline std::string get_or(const ParserGroup& group, PathRef path, const char* fallback) {
    return get_or<std::string>(group, path, std::string(TextRef(fallback).view()));
}
/// Reads value `value` of an entry as a string, or returns a copy of the fallback.
[[nodiscard]] inline std::string get_or(const ParserEntry& entry, unsigned int value, const char* fallback) {
    return get_or<std::string>(entry, value, std::string(TextRef(fallback).view()));
}
template <ReadableValue T, class Given>
requires WrongByAccident<T, Given> T get_or(const ParserGroup& group, PathRef path, const Given& fallback)
= delete;
template <ReadableValue T, class Given>
requires WrongByAccident<T, Given> T get_or(const ParserEntry& entry, unsigned int value,
                                            const Given& fallback)
= delete;
std::string get_or(const ParserGroup& group, PathRef path, std::nullptr_t fallback) = delete;
std::string get_or(const ParserEntry& entry, unsigned int value, std::nullptr_t fallback) = delete;

/// Sets value `value` of the entry, or appends one when `value` is the number of its values. GMathVec and std::array set as many
/// values as they have. A list (std::vector, std::span) replaces all values from there to the last. A declared array count that was
/// right stays right.
///
/// A number keeps the type of the old value when that can hold it: a double stays a double, an int that is set to 66.0
/// stays an int, and an int that is set to 66.5 becomes a double. A number set to an equal one keeps its spelling. A float is equal
/// to what `get<float>` reads. Any other float becomes the double nearest to the shortest digits that read back as that float:
/// 0.1f becomes 0.1. Where those digits would read back as another float, it becomes the double of the same value.
///
/// Returns false, and changes nothing, when the entry has no such value, when it would overwrite a group, and for content that no value
/// can hold: not-a-number, infinities, an integer that neither an int nor a double holds. Linear in what is given, and in the values
/// of the entry when their number changes.
template <WritableValue T>
bool set(ParserEntry& entry, unsigned int value, const T& content) {
    return access::with_given(content, [&](std::span<const GivenValue> given, access::ListEnd end) {
        return access::set_values(entry, value, given, end);
    });
}

/// Sets the first entry that the path finds, from the value that the path names on. When there is none, makes the entry and the
/// groups on the way, each at the end of its group. For that, each missing step must be a name of the text syntax, with a template
/// or key where you want one, or with the number of the next entry of that name; otherwise returns false.
///
/// When the path finds nothing, this has searched the whole group. It then searches for the part of the path that exists, as many times
/// as the logarithm of the number of steps. So n calls that make n entries of one group, such as `set(group, "k[i]", i)`, take time in
/// proportion to n * n. `add(group, "k", i)` does not search that group: n calls take time in proportion to n.
template <WritableValue T>
bool set(ParserGroup& group, PathRef path, const T& content) {
    return access::with_given(content, [&](std::span<const GivenValue> given, access::ListEnd end) {
        return access::set_values(group, path, given, end);
    });
}

/// Replaces the values of the entry from `value` on by a list of values of one type.
template <class T>
requires WritableValue<std::span<const T>>
bool set(ParserEntry& entry, unsigned int value, std::initializer_list<T> list) {
    return set(entry, value, std::span<const T>(list.begin(), list.size()));
}
/// Replaces the values from the one that the path names on by a list: `set(group, "color", {0.5, 0.5, 1.0})`.
template <class T>
requires WritableValue<std::span<const T>>
bool set(ParserGroup& group, PathRef path, std::initializer_list<T> list) {
    return set(group, path, std::span<const T>(list.begin(), list.size()));
}

/// `set<bool>(group, path, "no")` does not compile: a pointer converts to yes.
template <WritableValue T, class Given>
requires WrongByAccident<T, Given>
bool set(ParserEntry& entry, unsigned int value, const Given& content) = delete;
template <WritableValue T, class Given>
requires WrongByAccident<T, Given>
bool set(ParserGroup& group, PathRef path, const Given& content) = delete;

/// Adds an entry for the last step of the path, even where such an entry exists, and the missing groups on the way. Returns null where
/// `set` could not make the entry. Searches only for the groups on the way. When the last step has a number, the call takes time in
/// proportion to the group that gets the entry.
BK_PARSER_API ParserEntry* add(ParserGroup& group, PathRef path);
/// Adds such an entry with values. They come after the key when the last step has one.
template <WritableValue T>
ParserEntry* add(ParserGroup& group, PathRef path, const T& content) {
    return access::with_given(content, [&](std::span<const GivenValue> given, access::ListEnd) {
        return access::add_values(group, path, given);
    });
}

/// Adds such an entry with a list of values of one type: `add(group, "color", {0.5, 0.5, 1.0})`.
template <class T>
requires WritableValue<std::span<const T>> ParserEntry* add(ParserGroup& group, PathRef path,
                                                            std::initializer_list<T> list) {
    return add(group, path, std::span<const T>(list.begin(), list.size()));
}

template <WritableValue T, class Given>
requires WrongByAccident<T, Given> ParserEntry* add(ParserGroup& group, PathRef path,
                                                    const Given& content) = delete;

/// Removes the first entry that the path finds, or one value of it when the path ends in `@` and a number. Returns false when there
/// is none.
BK_PARSER_API bool remove(ParserGroup& group, PathRef path);
/// Removes all entries or values that the path finds, and returns their number. Entries inside a removed entry do not count. **When it
/// throws because memory runs out, some may be removed already**.
BK_PARSER_API std::size_t remove_all(ParserGroup& group, PathRef path);

/// Gives the first entry that the path finds another name. Returns false when there is no entry, when the text syntax
/// does not allow the name, when it has a template or array suffix, and when only one of the two names is a keyword.
BK_PARSER_API bool rename(ParserGroup& group, PathRef path, TextRef name);
/// Gives an entry another name, by the same rules. When it returns false, the entry keeps its name.
BK_PARSER_API bool rename(ParserEntry& entry, TextRef name);

/// Moves the first entry that `from` finds to `to`, and renames it to the last step of `to`, a plain name. The entry goes to the
/// end of the group that the steps before lead to, which is made when it is missing; in its own group it keeps its place. Returns
/// false, and changes nothing, when there is no such entry, when it would move into itself, and when `rename` would refuse the name.
BK_PARSER_API bool move(ParserGroup& group, PathRef from, PathRef to);

/// Takes an entry of any kind out of a group. The caller owns it. Null past the end and for an empty slot. When other groups list the
/// entry too, after a shallow assignment, it stays with them, and the caller gets a copy. Linear in the group.
BK_PARSER_API std::unique_ptr<ParserEntry> take(ParserGroup& group, unsigned int position);
/// Takes the entry that the path finds first.
BK_PARSER_API std::unique_ptr<ParserEntry> take(ParserGroup& group, PathRef path);
/// Inserts an entry at a position of a group, which then owns it. A position past the end means the end. `entry` must not be null
/// and must not hold `group`. When memory runs out, throws, deletes the entry, and leaves the group as it was. Linear in the group.
BK_PARSER_API ParserEntry& insert(ParserGroup& group, unsigned int position,
                                  std::unique_ptr<ParserEntry> entry);

/// Converts every number of a tree that is still only text. After that, any number of threads may read the tree at once, until it is
/// changed. After a change, call it again before the threads go on: new entries may have numbers that are only text.
///
/// **Do not call ParserEntry::get_group from several threads**, even now: it makes a group in an entry without values. Linear in the
/// tree.
BK_PARSER_API void freeze(const ParserGroup& root);

/// The entries of a group as text, one a line. Every line ends in a line feed. A group without entries gives an empty text. Throws
/// std::bad_alloc when memory runs out.
[[nodiscard]] BK_PARSER_API std::string to_text(const ParserGroup& group);

} // namespace bk_parser
