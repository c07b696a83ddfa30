#pragma once

#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include <string_view>

/// An entry of a host's own class that counts its living objects.
class CountedEntry : public ParserEntry {
public:
    explicit CountedEntry(std::string_view name, Type type = TYPE_ENTRY, core_ulong line = 0)
        : ParserEntry(CoreString(name), type, line, 0) {
        ++alive;
    }
    CountedEntry(const CountedEntry&) = delete;
    CountedEntry& operator=(const CountedEntry&) = delete;
    ~CountedEntry() override { --alive; }

    static inline int alive = 0;
};

/// A group of a host's own class that counts its living objects.
class CountedGroup : public ParserGroup {
public:
    explicit CountedGroup(std::string_view name = "counted") : ParserGroup(CoreString(name)) { ++alive; }
    CountedGroup(const CountedGroup&) = delete;
    CountedGroup& operator=(const CountedGroup&) = delete;
    ~CountedGroup() override { --alive; }

    static inline int alive = 0;
};
