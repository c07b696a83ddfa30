#pragma once

#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include <string>
#include <string_view>

namespace bk_parser {

/// How many entries of a group are like one of them, itself included.
struct Likeness {
    unsigned int name_count = 0;     // with its name
    unsigned int key_count = 0;      // with its name and its first string
    unsigned int template_count = 0; // with its name and its template
    unsigned int number = 0;         // with its name, and before it in the group

    static Likeness of(const ParserGroup& group, const ParserEntry& entry);
};

/// The string that an entry may be named by; none when it has no first string, or a long or unreadable one.
bool find_key(const ParserEntry& entry, std::string_view& key) noexcept;

/// How many values of the entry are groups.
unsigned int count_groups(const ParserEntry& entry) noexcept;

/// Appends the step that finds this entry in its group, and no other.
void append_step(std::string& path, const ParserEntry& entry, const Likeness& likeness);
/// Appends the `@` and number that lead from an entry into the group that is this value, where they are needed.
void append_descent(std::string& path, const ParserEntry& entry, unsigned int value);

} // namespace bk_parser
