#pragma once

#include "document/paths/path_steps_impl.h"
#include "tests/support/plain_text.h"

#include <string>
#include <utility>
#include <vector>

/// Finds what a path finds, in a slow and simple way: for each entry, tries every way to match the steps with the entries on the way to it.
class PathReference {
public:
    PathReference(const ParserGroup& root, const bk_parser::ParsedPath& path) : path_(path) { walk(root); }

    const std::vector<const ParserEntry*>& found() const { return found_; }

private:
    using Selector = bk_parser::PathSelector;
    struct Place {
        const ParserGroup* group;
        const ParserEntry* entry;
        unsigned int value; // the position of the group value on the way
    };

    static const ParserGroup* group_of(const ParserEntry& entry, unsigned int value) {
        return entry.is_value_group(value) ? entry.get_group(value) : nullptr;
    }

    void walk(const ParserGroup& group) {
        for (const ParserEntry* entry : group.get_entries()) {
            way_.push_back({&group, entry, 0});
            if (fits(0, 0)) {
                found_.push_back(entry);
            }
            for (unsigned int i = 0; i < entry->get_value_count(); ++i) {
                if (const ParserGroup* below = group_of(*entry, i)) {
                    way_.back().value = i;
                    walk(*below);
                }
            }
            way_.pop_back();
        }
    }

    /// Whether the entries from `depth` on match the steps from `number` on.
    bool fits(std::size_t depth, std::size_t number) const {
        if (depth == way_.size()) {
            return false;
        }
        const bk_parser::PathStep& step = path_.steps[number];
        if (step.is_any_depth) {
            return fits(depth, number + 1) || fits(depth + 1, number);
        }
        if (!passes(way_[depth], step, step.selectors.size())) {
            return false;
        }
        const Place& place = way_[depth];
        if (number + 1 == path_.steps.size()) {
            return depth + 1 == way_.size() &&
                   (step.value == bk_parser::no_value || step.value < place.entry->get_value_count());
        }
        return (step.value == bk_parser::no_value || step.value == place.value) &&
               fits(depth + 1, number + 1);
    }

    /// Matches the name, the template and the first `selectors` selectors.
    static bool passes(const Place& place, const bk_parser::PathStep& step, std::size_t selectors) {
        if (selectors == 0) {
            return (step.is_any_name || plain(place.entry->get_name()) == step.name) &&
                   (!step.template_name || plain(place.entry->get_template()) == *step.template_name);
        }
        if (!passes(place, step, selectors - 1)) {
            return false;
        }
        const Selector& last = step.selectors[selectors - 1];
        if (last.kind == Selector::Kind::key) {
            return place.entry->get_value_count() > 0 && place.entry->is_value_string(0) &&
                   plain(place.entry->get_string(0)) == last.key;
        }
        if (last.kind == Selector::Kind::condition) {
            return holds(*place.entry, last, 0);
        }
        unsigned int before = 0;
        for (const ParserEntry* entry : place.group->get_entries()) {
            if (entry == place.entry) {
                break;
            }
            before += passes({place.group, entry, 0}, step, selectors - 1) ? 1 : 0;
        }
        return before == last.index;
    }

    static bool holds(const ParserEntry& entry, const Selector& condition, std::size_t field) {
        if (field == condition.fields.size()) {
            return is_fulfilled(entry, condition);
        }
        for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
            const ParserGroup* const group = group_of(entry, i);
            for (unsigned int k = 0; group != nullptr && k < group->get_entries().get_count(); ++k) {
                const ParserEntry& below = *group->get_entries()[k];
                if (plain(below.get_name()) == condition.fields[field] &&
                    holds(below, condition, field + 1)) {
                    return true;
                }
            }
        }
        return false;
    }

    static bool is_fulfilled(const ParserEntry& entry, const Selector& condition) {
        using Kind = bk_parser::PathLiteral::Kind;
        const bool exists = condition.comparison == Selector::Operator::exists;
        const bool has_value = condition.value != bk_parser::no_value;
        const unsigned int i = has_value ? condition.value : 0;
        if (i >= entry.get_value_count()) {
            return exists && !has_value;
        }
        if (exists) {
            return true;
        }
        switch (condition.literal.kind) {
        case Kind::boolean:
            return entry.is_value_bool(i) && agrees(condition, static_cast<int>(entry.get_bool(i)),
                                                    static_cast<int>(condition.literal.boolean));
        case Kind::number:
            return (entry.is_value_double(i) || entry.is_value_char(i)) &&
                   agrees(condition, entry.get_double(i), condition.literal.number);
        default:
            return entry.is_value_string(i) &&
                   agrees(condition, plain(entry.get_string(i)), condition.literal.string);
        }
    }

    template <class T>
    static bool agrees(const Selector& condition, const T& left, const T& right) {
        switch (condition.comparison) {
        case Selector::Operator::equal:
            return left == right;
        case Selector::Operator::not_equal:
            return left != right;
        case Selector::Operator::less:
            return left < right;
        case Selector::Operator::at_most:
            return left <= right;
        case Selector::Operator::greater:
            return left > right;
        default:
            return left >= right;
        }
    }

    const bk_parser::ParsedPath& path_;
    std::vector<Place> way_;
    std::vector<const ParserEntry*> found_;
};
