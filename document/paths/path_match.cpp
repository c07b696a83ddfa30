#include "document/paths/path_match_impl.h"

#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"

#include <compare>

namespace bk_parser {

namespace {

using Operator = PathSelector::Operator;

bool holds(Operator comparison, std::partial_ordering order) noexcept {
    switch (comparison) {
    case Operator::equal:
        return std::is_eq(order);
    case Operator::not_equal:
        return std::is_neq(order);
    case Operator::less:
        return std::is_lt(order);
    case Operator::at_most:
        return std::is_lteq(order);
    case Operator::greater:
        return std::is_gt(order);
    case Operator::at_least:
        return std::is_gteq(order);
    default:
        return true;
    }
}

/// Every comparison is false for a value of another type than the literal's.
bool compare(const bk::StoredValue& value, Operator comparison, const PathLiteral& literal) {
    using Kind = PathLiteral::Kind;
    switch (value.type()) {
    case ParserValue::TYPE_BOOL:
        return literal.kind == Kind::boolean && holds(comparison, value.get_as_bool() <=> literal.boolean);
    case ParserValue::TYPE_CHAR:
    case ParserValue::TYPE_INT:
    case ParserValue::TYPE_DOUBLE:
        return literal.kind == Kind::number && holds(comparison, value.get_as_double() <=> literal.number);
    case ParserValue::TYPE_STRING:
        return literal.kind == Kind::string &&
               holds(comparison, value.string() <=> std::string_view(literal.string));
    default:
        return false;
    }
}

bool fulfils(const PathSelector& condition, const ParserEntry& entry) {
    if (condition.comparison == Operator::exists && condition.value == no_value) {
        return true;
    }
    const unsigned int index = condition.value == no_value ? 0 : condition.value;
    return index < entry.get_value_count() &&
           (condition.comparison == Operator::exists ||
            compare(bk::EntryAccess::value(entry, index), condition.comparison, condition.literal));
}

/// Calls `act` for the entries of that name in the groups that an entry holds, until it returns true.
template <class Action>
bool any_below(const ParserEntry& entry, std::string_view name, const Action& act) {
    for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
        const ParserGroup* const group = bk::EntryAccess::value(entry, i).group();
        if (group == nullptr) {
            continue;
        }
        for (const ParserEntry* below : group->get_entries()) {
            if (below != nullptr && below->get_name().get_view() == name && act(*below)) {
                return true;
            }
        }
    }
    return false;
}

/// Goes level by level: gathers the entries that each field except the last names.
bool fits_condition(const PathSelector& condition, const ParserEntry& entry) {
    if (condition.fields.empty()) {
        return fulfils(condition, entry);
    }
    std::vector<const ParserEntry*> level{&entry};
    for (std::size_t i = 0; i + 1 < condition.fields.size(); ++i) {
        std::vector<const ParserEntry*> next;
        for (const ParserEntry* above : level) {
            any_below(*above, condition.fields[i], [&](const ParserEntry& below) {
                next.push_back(&below);
                return false;
            });
        }
        level.swap(next);
    }
    for (const ParserEntry* above : level) {
        if (any_below(*above, condition.fields.back(),
                      [&](const ParserEntry& below) { return fulfils(condition, below); })) {
            return true;
        }
    }
    return false;
}

bool has_key(const ParserEntry& entry, std::string_view key) {
    return entry.get_value_count() != 0 && entry.is_value_string(0) &&
           bk::EntryAccess::value(entry, 0).string() == key;
}

} // namespace

bool fits_step(const PathStep& step, const ParserEntry& entry, std::span<unsigned int> counters) {
    if (!step.is_any_name && entry.get_name().get_view() != step.name) {
        return false;
    }
    if (step.template_name && entry.get_template().get_view() != *step.template_name) {
        return false;
    }
    std::size_t index = 0;
    for (const PathSelector& selector : step.selectors) {
        switch (selector.kind) {
        case PathSelector::Kind::index:
            if (counters[index++]++ != selector.index) {
                return false;
            }
            break;
        case PathSelector::Kind::key:
            if (!has_key(entry, selector.key)) {
                return false;
            }
            break;
        case PathSelector::Kind::condition:
            if (!fits_condition(selector, entry)) {
                return false;
            }
            break;
        }
    }
    return true;
}

} // namespace bk_parser
