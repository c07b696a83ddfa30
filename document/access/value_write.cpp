#include "document/access/value_write_impl.h"

#include "document/access/value_plan_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"

#include <algorithm>
#include <vector>

namespace bk_parser {

namespace {

bool needs_memory(const PlannedValue& planned) noexcept {
    return planned.type == ParserValue::TYPE_STRING || planned.type == ParserValue::TYPE_BINARY_DATA;
}

void* bytes_of(const PlannedValue& planned) noexcept {
    return const_cast<char*>(planned.text.data());
}

/// Skips a value that is already equal, so that it keeps its spelling.
void set_value(ParserEntry& entry, unsigned int i, const PlannedValue& planned) {
    if (is_equal(bk::EntryAccess::value(entry, i), planned)) {
        return;
    }
    switch (planned.type) {
    case ParserValue::TYPE_BOOL:
        return entry.set_bool(planned.integer != 0, i);
    case ParserValue::TYPE_CHAR:
        return bk::EntryAccess::values(entry).change(i).set_char(static_cast<char>(planned.integer));
    case ParserValue::TYPE_INT:
        return entry.set_int(planned.integer, i);
    case ParserValue::TYPE_DOUBLE:
        return entry.set_double(planned.real, i);
    case ParserValue::TYPE_STRING:
        return entry.set_string(CoreString(planned.text), i);
    default:
        return entry.set_binary_data(bytes_of(planned), static_cast<unsigned int>(planned.text.size()), i);
    }
}

void add_value(ParserEntry& entry, const PlannedValue& planned) {
    switch (planned.type) {
    case ParserValue::TYPE_BOOL:
        return entry.add_bool(planned.integer != 0);
    case ParserValue::TYPE_CHAR:
        return entry.add_char(static_cast<char>(planned.integer));
    case ParserValue::TYPE_INT:
        return entry.add_int(planned.integer);
    case ParserValue::TYPE_DOUBLE:
        return entry.add_double(planned.real);
    case ParserValue::TYPE_STRING:
        return entry.add_string(CoreString(planned.text));
    default:
        return entry.add_binary_data(bytes_of(planned), static_cast<unsigned int>(planned.text.size()));
    }
}

/// Writes several values. First adds the new ones after the old ones: adding may throw, and then removing them again cannot
/// fail.
class ListWriter {
public:
    ListWriter(ParserEntry& entry, unsigned int first, unsigned int in_place, unsigned int removed,
               std::vector<PlannedValue>& planned)
        : entry_(entry), first_(first), in_place_(in_place), removed_(removed), planned_(planned),
          old_count_(entry.get_value_count()), marks_(std::size_t{old_count_} + planned.size()) {
        own_texts();
    }

    void write() {
        const bool replaces = std::any_of(planned_.begin(), planned_.begin() + in_place_, needs_memory);
        const unsigned int set_count = replaces ? 0 : in_place_;
        add_from(set_count);
        for (unsigned int i = 0; i < set_count; ++i) {
            set_value(entry_, first_ + i, planned_[i]);
        }
        remove(first_ + set_count, first_ + in_place_ + removed_);
        const unsigned int begin = first_ + set_count;
        const auto added = static_cast<unsigned int>(planned_.size()) - set_count;
        const unsigned int behind = entry_.get_value_count() - added;
        for (unsigned int i = 0; i < added && behind != begin; ++i) {
            entry_.move_value(behind + i, begin + i);
        }
    }

private:
    /// Copies given texts that alias the entry's own values, which move when the list grows.
    void own_texts() {
        texts_.reserve(planned_.size());
        for (PlannedValue& planned : planned_) {
            if (needs_memory(planned)) {
                planned.text = texts_.emplace_back(planned.text);
            }
        }
    }

    void add_from(unsigned int index) {
        try {
            for (std::size_t i = index; i < planned_.size(); ++i) {
                add_value(entry_, planned_[i]);
            }
        } catch (...) {
            remove(old_count_, entry_.get_value_count());
            throw;
        }
    }

    void remove(unsigned int begin, unsigned int end) noexcept {
        if (begin != end) {
            std::fill(marks_.begin() + begin, marks_.begin() + end, static_cast<unsigned char>(1));
            bk::EntryAccess::values(entry_).remove_marked(marks_.data(), entry_);
        }
    }

    ParserEntry& entry_;
    unsigned int first_;
    unsigned int in_place_;
    unsigned int removed_;
    std::vector<PlannedValue>& planned_;
    unsigned int old_count_;
    std::vector<std::string> texts_;
    std::vector<unsigned char> marks_;
};

} // namespace

bool write_values(ParserEntry& entry, unsigned int value, std::span<const GivenValue> given,
                  access::ListEnd end) {
    const unsigned int count = entry.get_value_count();
    if (value > count || given.size() > 0xFFFFFFFEu - value) {
        return false;
    }
    const unsigned int in_place = std::min(static_cast<unsigned int>(given.size()), count - value);
    const unsigned int removed = end == access::ListEnd::cut ? count - value - in_place : 0;
    for (unsigned int i = value; i < value + in_place + removed; ++i) {
        if (entry.is_value_group(i)) {
            return false;
        }
    }
    std::vector<PlannedValue> planned;
    planned.reserve(given.size());
    bool is_same = removed == 0 && in_place == given.size();
    for (unsigned int i = 0; i < given.size(); ++i) {
        const bk::StoredValue* const existing =
            i < in_place ? &bk::EntryAccess::value(entry, value + i) : nullptr;
        const std::optional<PlannedValue> plan = plan_value(given[i], existing);
        if (!plan) {
            return false;
        }
        is_same = is_same && is_equal(*existing, *plan);
        planned.push_back(*plan);
    }
    ArrayCount array_count(entry);
    if (!is_same && planned.size() == 1 && in_place == 1 && removed == 0) {
        set_value(entry, value, planned.front());
    } else if (!is_same) {
        ListWriter(entry, value, in_place, removed, planned).write();
    }
    array_count.follow();
    return true;
}

} // namespace bk_parser
