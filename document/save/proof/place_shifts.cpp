#include "document/save/proof/place_shifts_impl.h"

#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"

#include <new>

namespace bk_parser {

namespace {

struct Level {
    ParserEntry* const* entries;
    unsigned int count;
};

/// The last value of an entry if it is a group: a text has no other group values.
const ParserGroup* group_of(const ParserEntry& entry) noexcept {
    const ParserValueList& values = bk::EntryAccess::values(entry);
    return values.may_hold_groups() ? values[values.get_count() - 1].group() : nullptr;
}

/// Calls `visit` with each entry, parents first, until it returns false.
template <class Visit>
void walk(const ParserGroup& group, unsigned int first, unsigned int end, Visit visit) {
    std::vector<Level> levels{{group.get_entries().get_data() + first, end - first}};
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.count == 0) {
            levels.pop_back();
            continue;
        }
        --level.count;
        ParserEntry* const entry = *level.entries++;
        if (entry == nullptr) {
            continue;
        }
        if (!visit(*entry)) {
            return;
        }
        if (const ParserGroup* const inner = group_of(*entry)) {
            levels.push_back({inner->get_entries().get_data(), inner->get_entries().get_count()});
        }
    }
}

void shift(ParserEntry& entry, core_ulong lines, core_ulong columns) noexcept {
    bk::EntryAccess::set_place(entry, entry.get_line() + lines, entry.get_column() + columns);
}

} // namespace

void PlaceShifts::apply() const noexcept {
    try {
        apply_runs();
        apply_rest();
    } catch (const std::bad_alloc&) {
        return;
    }
}

void PlaceShifts::apply_runs() const {
    std::size_t end = runs_.size(); // end of the runs that move anything
    while (end != 0 && runs_[end - 1].lines == 0 && runs_[end - 1].columns == 0) {
        --end;
    }
    if (range_.group == nullptr || end == 0) {
        return;
    }
    std::size_t run = 0;
    std::uint64_t done = 0;
    walk(*range_.group, range_.first, range_.end, [&](ParserEntry& entry) {
        if (done == runs_[run].count) {
            ++run;
            done = 0;
        }
        if (run == end) {
            return false;
        }
        shift(entry, runs_[run].lines, runs_[run].columns);
        ++done;
        return true;
    });
}

void PlaceShifts::apply_rest() const {
    if (rest_shift_.lines == 0 && rest_shift_.columns == 0) {
        return;
    }
    for (const auto& [group, first] : rest_) {
        walk(*group, first, group->get_entries().get_count(), [this](ParserEntry& entry) {
            const bool is_on_first = entry.get_line() == first_line_;
            if (!is_on_first && rest_shift_.lines == 0) {
                return false; // lines ascend, so no later entry is concerned
            }
            shift(entry, rest_shift_.lines, is_on_first ? rest_shift_.columns : 0);
            return true;
        });
    }
}

} // namespace bk_parser
