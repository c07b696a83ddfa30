#include "document/save/record/entry_lookup_impl.h"

#include <algorithm>

namespace bk_parser {

namespace {

constexpr std::uint32_t none = 0xFFFFFFFFu;

} // namespace

void EntryLookup::reset(const ParserGroup* group) noexcept {
    group_ = group;
    next_ = 0;
    is_order_known_ = false;
    twins_.clear();
    if (has_index_) {
        has_index_ = false;
        has_twins_ = false;
        index_.clear();
        found_.clear();
    }
}

const ParserEntry* EntryLookup::expected(core_ulong line, core_ulong column,
                                         std::string_view name) const noexcept {
    if (group_ == nullptr || has_index_ || next_ >= group_->get_entries().get_count()) {
        return nullptr;
    }
    const ParserEntry* const entry = at(next_);
    const bool is_it = entry != nullptr && entry->get_line() == line && entry->get_column() == column &&
                       entry->get_name().get_view() == name;
    return is_it ? entry : nullptr;
}

std::uint32_t EntryLookup::find(core_ulong line, core_ulong column, std::string_view name) {
    if (group_ == nullptr) {
        return none;
    }
    if (!is_order_known_) {
        is_order_known_ = true;
        if (!is_ascending()) {
            make_index();
        }
    }
    twins_.clear();
    if (!has_twins_ && next_ < group_->get_entries().get_count() && !(has_index_ && found_[next_])) {
        const ParserEntry* const entry = at(next_);
        if (entry != nullptr && entry->get_line() == line && entry->get_column() == column &&
            entry->get_name().get_view() == name) {
            if (has_index_) {
                found_[next_] = true;
            }
            return next_++;
        }
    }
    const std::uint32_t position = find_in_index(key_of(line, column), name);
    if (position != none) {
        found_[position] = true;
        next_ = position + 1;
        last_ = position;
    }
    return position;
}

void EntryLookup::choose(std::uint32_t twin) {
    found_[last_] = false;
    found_[twin] = true;
    next_ = twin + 1;
    last_ = twin;
    twins_.clear();
}

bool EntryLookup::is_ascending() const noexcept {
    std::uint64_t last = 0;
    for (const ParserEntry* const entry : group_->get_entries()) {
        const std::uint64_t key =
            entry == nullptr ? last + 1 : key_of(entry->get_line(), entry->get_column());
        if (key <= last) {
            return false;
        }
        last = key;
    }
    return true;
}

void EntryLookup::make_index() {
    const CoreVector<ParserEntry*>& entries = group_->get_entries();
    found_.resize(entries.get_count());
    for (std::uint32_t i = next_; i < entries.get_count(); ++i) {
        if (entries[i] != nullptr) {
            index_.push_back({key_of(entries[i]->get_line(), entries[i]->get_column()), i});
        }
    }
    const auto by_key = [](const Place& a, const Place& b) { return a.key < b.key; };
    if (!std::is_sorted(index_.begin(), index_.end(), by_key)) {
        std::stable_sort(index_.begin(), index_.end(), by_key);
    }
    has_index_ = true;
    has_twins_ = std::adjacent_find(index_.begin(), index_.end(), [](const Place& a, const Place& b) {
                     return a.key == b.key && a.key != 0; // new entries have no place
                 }) != index_.end();
}

std::uint32_t EntryLookup::find_in_index(std::uint64_t key, std::string_view name) {
    if (!has_index_) {
        make_index();
    }
    std::uint32_t first = none;
    std::uint32_t other = none; // with another name
    auto place = std::lower_bound(index_.begin(), index_.end(), key,
                                  [](const Place& a, std::uint64_t wanted) { return a.key < wanted; });
    for (; place != index_.end() && place->key == key; ++place) {
        if (found_[place->position]) {
            continue;
        }
        if (at(place->position)->get_name().get_view() != name) {
            other = other == none ? place->position : other;
        } else if (first == none) {
            first = place->position;
        } else {
            twins_.push_back(place->position);
        }
    }
    return first == none ? other : first;
}

} // namespace bk_parser
