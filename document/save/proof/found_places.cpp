#include "document/save/proof/found_places_impl.h"

#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"

#include <algorithm>

namespace bk_parser {

namespace {

constexpr unsigned int furthest = 16; // entries compared for each name

const ParserGroup* last_group(const ParserEntry* entry) noexcept {
    const unsigned int count = entry == nullptr ? 0 : entry->get_value_count();
    return count == 0 ? nullptr : bk::EntryAccess::value(*entry, count - 1).group();
}

} // namespace

FoundPlaces::FoundPlaces(std::string_view text, const ParserGroup& root) {
    list(root);
    levels_.push_back({root.get_entries().get_data(), root.get_entries().get_count(), 0, nullptr});
    bk::Grammar<FoundPlaces> grammar(text, *this);
    grammar.run([](const auto&...) {});
    index_.clear();
    levels_.clear();
}

void FoundPlaces::list(const ParserGroup& root) {
    std::vector<const ParserGroup*> pending{&root};
    while (!pending.empty()) {
        const ParserGroup* const group = pending.back();
        pending.pop_back();
        for (ParserEntry* const entry : group->get_entries()) {
            if (entry == nullptr) {
                continue;
            }
            index_.emplace(entry, places_.size());
            places_.push_back({entry, 0, 0});
            for (unsigned int i = 0; i < entry->get_value_count(); ++i) {
                if (const ParserGroup* const inner = bk::EntryAccess::value(*entry, i).group()) {
                    pending.push_back(inner);
                }
            }
        }
    }
}

void FoundPlaces::apply() const noexcept {
    for (const Place& place : places_) {
        bk::EntryAccess::set_place(*place.entry, place.line, place.column);
    }
}

bool FoundPlaces::begin_entry(const bk::EntryHead& head, const bk::Token& token) {
    if (head.had_suffix && !bk::is_name_by_itself(head.name)) {
        return false;
    }
    Level& level = levels_.back();
    level.match = nullptr;
    const unsigned int end = level.next + std::min(furthest, level.count - level.next);
    for (unsigned int i = level.next; i < end; ++i) {
        const ParserEntry* const entry = level.entries[i];
        if (entry != nullptr && entry->get_type() != ParserEntry::TYPE_RAW_TEXT &&
            entry->get_name().get_view() == head.name) {
            Place& place = places_[index_.at(entry)];
            place.line = token.line;
            place.column = token.column;
            level.match = entry;
            level.next = i + 1;
            break;
        }
    }
    return true;
}

bool FoundPlaces::open_group(const bk::Token&) {
    const ParserGroup* const group = last_group(levels_.back().match);
    levels_.push_back(group == nullptr ? Level()
                                       : Level{group->get_entries().get_data(),
                                               group->get_entries().get_count(), 0, nullptr});
    return true;
}

} // namespace bk_parser
