#pragma once

#include "parser/parser_group.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace bk_parser {

/// How far a save moved the entries in the text. The entries of one range of a group, with everything below them, are added one by one in
/// document order. Adjacent entries that moved equally far share a run. All entries after the range moved by one common distance.
class PlaceShifts {
public:
    /// Adds an entry of the range.
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
    /// Sets how far the rest moves: in these groups, the entries from these positions on. Columns change only on line
    /// `first_line`.
    void set_rest(std::vector<std::pair<const ParserGroup*, unsigned int>> rest, core_ulong first_line,
                  core_ulong lines, core_ulong columns) {
        rest_ = std::move(rest);
        first_line_ = first_line;
        rest_shift_ = {0, lines, columns};
    }

    /// Updates line and column of the entries. When memory runs out, some keep the old ones, and a later save that keeps the
    /// layout takes these for new entries.
    void apply() const noexcept;

private:
    struct Run {
        std::uint64_t count;
        core_ulong lines; // modulo 2^32, like columns
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
