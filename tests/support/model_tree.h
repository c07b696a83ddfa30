#pragma once

#include "parser/parser_entry.h"
#include "parser/parser_group.h"
#include "tests/support/bytes.h"
#include "tests/support/plain_text.h"

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// Trees as plain lists, which describe what the library's trees should be. Objects of the library are identified by their addresses.
namespace model {

struct Group;

struct Value {
    ParserValue::Type type;
    std::string word;
    std::shared_ptr<Group> group = nullptr;
};

struct Entry {
    ParserEntry* real;
    std::string name;
    ParserEntry::Type type = ParserEntry::TYPE_ENTRY;
    core_ulong line = 0;
    core_ulong column = 0;
    std::string template_name = {};
    unsigned int array_count = ParserEntry::not_an_array;
    bool is_counted = false;
    std::vector<std::shared_ptr<Value>> values = {}; // entries share values after an assignment
};

/// One slot of a group: the entry, and whether it has an ordinal.
struct Slot {
    std::shared_ptr<Entry> entry;
    bool has_ordinal;
};

struct Group {
    ParserGroup* real;
    std::string name;
    const ParserEntry* source = nullptr;
    bool is_counted = false;
    std::vector<Slot> slots = {};

    unsigned int count() const { return static_cast<unsigned int>(slots.size()); }
    void append(const std::shared_ptr<Entry>& entry) {
        slots.push_back({entry, entry->type == ParserEntry::TYPE_ENTRY});
    }
    void rebuild() {
        for (Slot& slot : slots) {
            slot.has_ordinal = slot.entry->type == ParserEntry::TYPE_ENTRY;
        }
    }
    template <class Type>
    void erase(Type position) {
        slots.erase(slots.begin() + static_cast<std::ptrdiff_t>(position));
    }
};

using GroupPointer = std::shared_ptr<Group>;
using EntryPointer = std::shared_ptr<Entry>;

/// All objects that can be reached from some groups and entries, each once, in an order that does not depend on addresses.
class Walk {
public:
    std::vector<GroupPointer> groups;
    std::vector<EntryPointer> entries;

    void add(const GroupPointer& group) {
        if (seen_.insert(group.get()).second) {
            groups.push_back(group);
            for (const Slot& slot : group->slots) {
                add(slot.entry);
            }
        }
    }
    void add(const EntryPointer& entry) {
        if (seen_.insert(entry.get()).second) {
            entries.push_back(entry);
            for (const auto& value : entry->values) {
                if (value->group != nullptr) {
                    add(value->group);
                }
            }
        }
    }
    bool has(const void* object) const { return seen_.contains(object); }

private:
    std::set<const void*> seen_;
};

/// The number of groups, entries and values that a deep copy would have.
class ExpandedSize {
public:
    std::size_t of(const Group& group) {
        return remembered(&group, [&](std::size_t& size) {
            for (const Slot& slot : group.slots) {
                size += of(*slot.entry);
            }
        });
    }
    std::size_t of(const Entry& entry) {
        return remembered(&entry, [&](std::size_t& size) {
            for (const auto& value : entry.values) {
                size += 1 + (value->group == nullptr ? 0 : of(*value->group));
            }
        });
    }

private:
    template <class Count>
    std::size_t remembered(const void* object, Count count) {
        const auto known = sizes_.find(object);
        if (known != sizes_.end()) {
            return known->second;
        }
        std::size_t size = 1;
        count(size);
        return sizes_[object] = std::min(size, std::size_t{1000000});
    }

    std::map<const void*, std::size_t> sizes_;
};

/// Whether the second is the first, or is somewhere in it.
template <class Object>
bool reaches(const Object& from, const void* to) {
    Walk walk;
    walk.add(from);
    return walk.has(to);
}

/// Whether an entry that was read from text has an ordinal. A function call has one, because it gets its type only after its place in the group.
inline bool parsed_ordinal(const ParserEntry& entry) {
    return entry.get_type() != ParserEntry::TYPE_KEYWORD;
}

inline GroupPointer known(ParserGroup& real);

/// Describes an entry that was just read, from what the entry itself reports.
inline EntryPointer known(ParserEntry& real) {
    Entry entry{&real, plain(real.get_name()), real.get_type(), real.get_line(), real.get_column()};
    entry.template_name = plain(real.get_template());
    entry.array_count = real.get_array_count();
    for (unsigned int i = 0; i < real.get_value_count(); ++i) {
        Value value{real.get_value_type(i), plain(real.get_word(i))};
        value.group = real.is_value_group(i) ? known(*real.get_group(i)) : nullptr;
        entry.values.push_back(std::make_shared<Value>(value));
    }
    return std::make_shared<Entry>(entry);
}

inline GroupPointer known(ParserGroup& real) {
    Group group{&real, plain(real.get_name()), real.get_source_entry()};
    for (ParserEntry* entry : real.get_entries()) {
        group.slots.push_back({known(*entry), parsed_ordinal(*entry)});
    }
    return std::make_shared<Group>(group);
}

/// Describes a deep copy of a group. Does not go into parts in which the real copy has another shape: the comparison finds these.
inline EntryPointer copy_of(const Entry& from, ParserEntry& real);
inline std::vector<Slot> copied_slots(const Group& from, const ParserGroup& real) {
    Group copied{nullptr, {}};
    for (unsigned int i = 0; i < from.count() && i < real.get_entries().get_count(); ++i) {
        copied.append(copy_of(*from.slots[i].entry, *real.get_entries()[i]));
    }
    return copied.slots;
}

inline std::vector<std::shared_ptr<Value>> copied_values(const Entry& from, const ParserEntry& real) {
    std::vector<std::shared_ptr<Value>> values;
    for (unsigned int i = 0; i < from.values.size() && i < real.get_value_count(); ++i) {
        Value value = *from.values[i];
        ParserGroup* const group = real.get_group(i);
        if (value.group != nullptr && group != nullptr) {
            value.group = std::make_shared<Group>(
                Group{group, value.group->name, nullptr, false, copied_slots(*value.group, *group)});
        }
        values.push_back(std::make_shared<Value>(value));
    }
    return values;
}

inline EntryPointer copy_of(const Entry& from, ParserEntry& real) {
    Entry entry = from;
    entry.real = &real;
    entry.is_counted = false;
    entry.values = copied_values(from, real);
    return std::make_shared<Entry>(entry);
}

/// Compares each object of the library with its description. Objects inside it are compared on their own.
class Comparison {
public:
    /// The first difference; empty when there is none.
    std::string difference;

    void compare(const Group& group) {
        const ParserGroup& real = *group.real;
        same("group name", plain(real.get_name()) == group.name);
        same("source entry", real.get_source_entry() == group.source);
        same("number of entries", real.get_entries().get_count() == group.count());
        std::vector<ParserEntry*> ordinary;
        for (unsigned int i = 0; difference.empty() && i < group.count(); ++i) {
            ParserEntry* const entry = group.slots[i].entry->real;
            same("entry at a position", real.get_entries()[i] == entry);
            if (group.slots[i].has_ordinal) {
                ordinary.push_back(entry);
            }
        }
        same("number of ordinals", real.get_entry_count() == ordinary.size());
        for (unsigned int i = 0; difference.empty() && i < ordinary.size(); ++i) {
            same("entry with an ordinal", real.get_entry(i) == ordinary[i]);
        }
        compare_first_of_types(group);
    }

    void compare(const Entry& entry) {
        const ParserEntry& real = *entry.real;
        same("entry name", plain(real.get_name()) == entry.name);
        same("entry type", real.get_type() == entry.type);
        same("line", real.get_line() == entry.line);
        same("column", real.get_column() == entry.column);
        same("template", plain(real.get_template()) == entry.template_name);
        same("is a template", real.is_template() == !entry.template_name.empty());
        same("array count", real.get_array_count() == entry.array_count);
        same("is an array", real.is_array() == (entry.array_count != ParserEntry::not_an_array));
        same("number of values", real.get_value_count() == entry.values.size());
        for (unsigned int i = 0; difference.empty() && i < entry.values.size(); ++i) {
            const Value& value = *entry.values[i];
            same("value type", real.get_value_type(i) == value.type);
            same("value", plain(real.get_word(i)) == value.word);
            same("group", real.get_group(i) == (value.group == nullptr ? nullptr : value.group->real));
        }
        same("is a group", difference.empty() && real.is_group() == (entry.values.size() == 1 &&
                                                                     entry.values[0]->group != nullptr));
    }

    /// Compares what a group finds by a name.
    void compare_found(const Group& group, const std::string& name) {
        std::vector<ParserEntry*> ordinary;
        ParserEntry* keyword = nullptr;
        for (const Slot& slot : group.slots) {
            if (slot.entry->name == name && slot.has_ordinal) {
                ordinary.push_back(slot.entry->real);
            } else if (slot.entry->name == name && keyword == nullptr) {
                keyword = slot.entry->real;
            }
        }
        const CoreVector<ParserEntry*> found = group.real->get_entries(core(name), false);
        same("first of a name",
             group.real->get_entry(core(name)) == (ordinary.empty() ? nullptr : ordinary[0]));
        same("first keyword of a name", group.real->get_keyword(core(name)) == keyword);
        same("all of a name", std::vector<ParserEntry*>(found.begin(), found.end()) == ordinary);
    }

    void same(const char* what, bool is_same) {
        if (difference.empty() && !is_same) {
            difference = what;
        }
    }

private:
    void compare_first_of_types(const Group& group) {
        for (const auto type : {ParserEntry::TYPE_ENTRY, ParserEntry::TYPE_KEYWORD,
                                ParserEntry::TYPE_FUNCTION_CALL, ParserEntry::TYPE_RAW_TEXT}) {
            const auto first = std::find_if(group.slots.begin(), group.slots.end(),
                                            [=](const Slot& slot) { return slot.entry->type == type; });
            const auto position = first == group.slots.end()
                                      ? 0xFFFFFFFFu
                                      : static_cast<unsigned int>(first - group.slots.begin());
            same("first of a type",
                 !difference.empty() || group.real->get_first_entry_index(type) == position);
        }
    }
};

} // namespace model
