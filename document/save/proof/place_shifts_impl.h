#pragma once

#include "parser/parser_group.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace bk_parser {

/// By how much the places of entries differ from what the entries say. The entries of one range of a group, with all below
/// them, come one by one, in the order of the document; neighbours that moved by as much are one run. What follows in the document moves all alike.
class PlaceShifts {
public:
    /// An entry of the range.
    void add(const ParserEntry& entry, core_ulong line, core_ulong column) {
        const Run shift{1, line - entry.get_line(), column - entry.get_column()};
        if (!runs_.empty() && runs_.back().lines == shift.lines && runs_.back().columns == shift.columns) {
            ++runs_.back().count;
        } else {
            runs_.push_back(shift);
        }
    }
    void set_range(const ParserGroup& group, unsigned int first, unsigned int end) noexcept {
        range_ = {&group, first, end};
    }
    /// What follows the range: in these groups the entries from these positions on. On line `first_line` columns move, too.
    void set_rest(std::vector<std::pair<const ParserGroup*, unsigned int>> rest, core_ulong first_line,
                  core_ulong lines, core_ulong columns) {
        rest_ = std::move(rest);
        first_line_ = first_line;
        rest_shift_ = {0, lines, columns};
    }

    /// Lets the entries say their new places. When memory runs out, some keep the old ones: a later save that keeps the layout then
    /// knows them as new.
    void apply() const noexcept;

private:
    struct Run {
        std::uint64_t count;
        core_ulong lines; // modulo 2^32, as columns
        core_ulong columns;
    };
    struct Range {
        const ParserGroup* group;
        unsigned int first;
        unsigned int end;
    };

    void apply_runs() const;
    void apply_rest() const;

    Range range_{nullptr, 0, 0};
    std::vector<Run> runs_;
    std::vector<std::pair<const ParserGroup*, unsigned int>> rest_;
    core_ulong first_line_ = 0;
    Run rest_shift_{0, 0, 0};
};

} // namespace bk_parser
