#include "document/paths/plain_search_impl.h"

#include "document/paths/path_match_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"

#include <algorithm>
#include <array>

namespace bk_parser {

namespace {

constexpr std::size_t most_steps = 16;

/// A group that is searched for a step, and how far.
struct PlainLevel {
    const ParserGroup* group = nullptr;
    unsigned int position = 0;
    unsigned int value = 0; // of the entry at `position`, when it fits and its groups are being searched
    bool is_inside = false;
};

/// The next entry that fits the step; null after the last.
ParserEntry* next_fitting(PlainLevel& level, const PathStep& step) {
    const auto& entries = level.group->get_entries();
    for (; level.position < entries.get_count(); ++level.position) {
        ParserEntry* const entry = entries[level.position];
        if (entry != nullptr && fits_step(step, *entry, {})) {
            return entry;
        }
    }
    return nullptr;
}

const ParserGroup* next_group(PlainLevel& level, const PathStep& step) noexcept {
    const ParserEntry& entry = *level.group->get_entries()[level.position];
    while (level.value < entry.get_value_count()) {
        const unsigned int value = level.value++;
        const ParserGroup* const group = bk::EntryAccess::value(entry, value).group();
        if (group != nullptr && (step.value == no_value || step.value == value)) {
            return group;
        }
    }
    return nullptr;
}

} // namespace

bool is_plain(const ParsedPath& path) noexcept {
    return path.steps.size() <= most_steps &&
           std::none_of(path.steps.begin(), path.steps.end(),
                        [](const PathStep& step) { return step.is_any_depth || step.index_count != 0; });
}

ParserEntry* find_plain(const ParserGroup& group, const ParsedPath& path) {
    std::array<PlainLevel, most_steps> levels;
    levels[0].group = &group;
    for (std::size_t depth = 0;;) {
        PlainLevel& level = levels[depth];
        const PathStep& step = path.steps[depth];
        const bool is_last = depth + 1 == path.steps.size();
        ParserEntry* const entry = level.is_inside ? nullptr : next_fitting(level, step);
        if (entry != nullptr && is_last &&
            (step.value == no_value || step.value < entry->get_value_count())) {
            return entry;
        }
        level.is_inside = level.is_inside || entry != nullptr;
        const ParserGroup* const below = level.is_inside && !is_last ? next_group(level, step) : nullptr;
        if (below != nullptr) {
            levels[++depth] = {below, 0, 0, false};
        } else if (level.is_inside) {
            level = {level.group, level.position + 1, 0, false};
        } else if (depth-- == 0) {
            return nullptr;
        }
    }
}

} // namespace bk_parser
