#pragma once

#include "core/core_export.h"
#include "document/path.h"
#include "document/text_ref.h"
#include "document/values.h"
#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Asks for values of a tree, and changes it, by paths. A path that is malformed finds nothing and changes nothing:
/// path_error says why. Nothing here logs, but `to_text` when memory ends. A pointer to a text that is null is an empty
/// text everywhere; nullptr itself does not compile.
///
/// A path names a value: the one that `@` names; else, when the last step has a key, the one behind the key; else value 0.
/// `get`, `set` and `add` agree on that: `shot["010"]` is value 1 of that shot, and `shot["010"]@0` its key.
///
/// A path is searched for from the beginning of the group on, whatever is done with what it finds: in time in
/// proportion to the entries that come before it, as PathSearch says. To ask or change one entry often, find it once and
/// use the functions that take an entry.
///
/// What changes a tree does it whole or not at all: when memory ends, std::bad_alloc or std::length_error comes out and
/// the tree is as it was, unless it says otherwise.
namespace bk_parser {

/// What may be asked for: bool, integers, float and double, std::string, CoreString, std::string_view, bytes as
/// std::span<const std::byte> or std::vector<std::byte>, GMathVec2, 3 and 4 and std::array of these, std::vector<T> and
/// Values<T> of single ones.
///
/// A value is read as T when nothing is lost: an int as any type that can hold it, a double as an integer when it is whole,
/// any number as the nearest float, a bool only as a bool, a string only as a string.
/// Value `value` of the entry on. A list is all values from there to the last. Nothing when a value is missing or is no T.
///
/// A std::string_view, a span or Values points into the tree: until the value is changed or removed.
template <ReadableValue T>
std::optional<T> get(const ParserEntry& entry, unsigned int value = 0) {
    return access::read_any<T>(entry, value);
}

/// The same of the first entry that the path finds, from the value on that the path names.
template <ReadableValue T>
std::optional<T> get(const ParserGroup& group, PathRef path) {
    unsigned int value = 0;
    const ParserEntry* const entry = access::find_value(group, path, value);
    return entry == nullptr ? std::nullopt : access::read_any<T>(*entry, value);
}

/// The fallback where `get` gives nothing. A text gives a std::string.
template <ReadableValue T>
T get_or(const ParserGroup& group, PathRef path, T fallback) {
    std::optional<T> found = get<T>(group, path);
    return found ? std::move(*found) : std::move(fallback);
}
/// The same with another fallback or place.
template <ReadableValue T>
T get_or(const ParserEntry& entry, unsigned int value, T fallback) {
    std::optional<T> found = get<T>(entry, value);
    return found ? std::move(*found) : std::move(fallback);
}
/// The same with another fallback or place.
inline std::string get_or(const ParserGroup& group, PathRef path, const char* fallback) {
    return get_or<std::string>(group, path, std::string(TextRef(fallback).view()));
}
/// The same with another fallback or place.
inline std::string get_or(const ParserEntry& entry, unsigned int value, const char* fallback) {
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

/// Gives value `value` of the entry, or the one behind its last, a new content; GMathVec and std::array so many values, and
/// lists (std::vector, std::span) all values from there to the last. A declared array count that was right stays right.
///
/// A number keeps the type that the value has when that can hold it: a double stays a double, an int that is set to 66.0
/// stays an int, and becomes a double when it is set to 66.5. What is equal already keeps its spelling. A float is equal to
/// what `get<float>` reads; another float becomes the double nearest to the shortest digits that read back as that float:
/// 0.1f becomes 0.1. Where those digits would read back as another float, it becomes the double of the same value.
///
/// False, and nothing changed, when there is no such place, when a group would be overwritten, and for what no value can
/// hold: not-a-number, infinities, an integer that is no int and has no double. Linear in what is given, and in the values
/// of the entry where their number changes.
template <WritableValue T>
bool set(ParserEntry& entry, unsigned int value, const T& content) {
    return access::with_given(content, [&](std::span<const GivenValue> given, access::ListEnd end) {
        return access::set_values(entry, value, given, end);
    });
}

/// The same of the first entry that the path finds, at the value that the path names. Where there is none, it is made with the groups on the way: for that
/// the steps that are missing have to be names, with a template or key if need be, or with the number of the
/// next entry of that name. False also when they are not, or are no names of the text syntax. What was made stands at the end
/// of its group.
///
/// A path that finds nothing is searched for in the whole group, and then its beginnings are, a number of times that is
/// in proportion to the logarithm of the number of steps. n calls that make n entries of one group, as `set(group, "k[i]", i)`
/// does, take time in proportion to n * n: an entry may be renamed without its group, which therefore keeps no numbers of names.
/// `add(group, "k", i)` does not search that group, and n calls take time in proportion to n.
template <WritableValue T>
bool set(ParserGroup& group, PathRef path, const T& content) {
    return access::with_given(content, [&](std::span<const GivenValue> given, access::ListEnd end) {
        return access::set_values(group, path, given, end);
    });
}

/// `set<bool>(group, path, "no")` does not compile: a pointer converts to yes.
template <WritableValue T, class Given>
requires WrongByAccident<T, Given>
bool set(ParserEntry& entry, unsigned int value, const Given& content) = delete;
template <WritableValue T, class Given>
requires WrongByAccident<T, Given>
bool set(ParserGroup& group, PathRef path, const Given& content) = delete;

/// Adds an entry for the last step of the path, whether there is one or not, and the groups on the way where they are
/// missing. Null when `set` would not make it. Only the groups on the way are searched for; a step with a number takes
/// time in proportion to the group that the entry comes to.
BK_PARSER_API ParserEntry* add(ParserGroup& group, PathRef path);
/// The same with values, behind the key if the step has one.
template <WritableValue T>
ParserEntry* add(ParserGroup& group, PathRef path, const T& content) {
    return access::with_given(content, [&](std::span<const GivenValue> given, access::ListEnd) {
        return access::add_values(group, path, given);
    });
}

template <WritableValue T, class Given>
requires WrongByAccident<T, Given> ParserEntry* add(ParserGroup& group, PathRef path,
                                                    const Given& content) = delete;

/// Removes the first entry that the path finds, or its value when the path ends in `@` and a number. False when there is
/// none.
BK_PARSER_API bool remove(ParserGroup& group, PathRef path);
/// Removes all of them, and gives how many there were; what stands in an entry that is removed does not count. When
/// memory ends, some may be removed already.
BK_PARSER_API std::size_t remove_all(ParserGroup& group, PathRef path);

/// Gives the first entry that the path finds another name. False when there is none, when it is no name of the text syntax,
/// or one with a template or array suffix, and when one of the two names is a keyword and the other is not.
BK_PARSER_API bool rename(ParserGroup& group, PathRef path, TextRef name);
/// The same for an entry. False when the name is no entry name; the entry then keeps its own.
BK_PARSER_API bool rename(ParserEntry& entry, TextRef name);

/// Moves the first entry that `from` finds to where `to` says: to the end of the group that its steps but the last lead to,
/// which is made if need be, and renamed to its last step, a plain name. In its own group the entry keeps its place. False, and
/// nothing changed, when there is no such entry, when it would come into itself, and when `rename` would refuse the name.
BK_PARSER_API bool move(ParserGroup& group, PathRef from, PathRef to);

/// Takes an entry of any kind out of a group; the caller owns it. Null past the end and for an empty slot. An entry that
/// other groups list too, after a shallow assignment, stays theirs: then this is a copy. Linear in the group.
BK_PARSER_API std::unique_ptr<ParserEntry> take(ParserGroup& group, unsigned int position);
/// Takes the entry that the path finds first.
BK_PARSER_API std::unique_ptr<ParserEntry> take(ParserGroup& group, PathRef path);
/// Lists an entry at a position of a group, which owns it from then on; a position past the end is the end. `entry` is
/// not null, and does not hold `group`. When memory ends the entry is deleted, and the group is as it was. Linear in the group.
BK_PARSER_API ParserEntry& insert(ParserGroup& group, unsigned int position,
                                  std::unique_ptr<ParserEntry> entry);

/// Converts every number of a tree that so far is only text, so that any number of threads may read the tree at once until
/// it is changed. ParserEntry::get_group still makes a group in an entry without values.
BK_PARSER_API void freeze(const ParserGroup& root);

/// The entries of a group as the text syntax writes them, one a line. Every line ends in a line feed; a group without entries
/// is an empty text. Throws std::bad_alloc when memory ends.
BK_PARSER_API std::string to_text(const ParserGroup& group);

} // namespace bk_parser
