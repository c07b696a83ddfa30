#include "bench/peers/document.h"

#include <unordered_map>

namespace bench {

Document::Document() {
    open_.emplace_back().is_group = true;
}

void Document::begin_group(std::string_view name, std::string_view template_name) {
    Entry& group = open_.emplace_back();
    group.is_group = true;
    group.name = name;
    group.template_name = template_name;
}

void Document::end_group() {
    Entry group = std::move(open_.back());
    open_.pop_back();
    open_.back().children.push_back(std::move(group));
}

void Document::entry(SceneShape shape, std::string_view name, std::span<const SceneValue> values) {
    Entry& entry = open_.back().children.emplace_back();
    entry.shape = shape;
    entry.name = name;
    for (const SceneValue& value : values) {
        entry.values.push_back({value.kind, std::string(value.text)});
        decimal_count_ += value.kind == SceneValue::Kind::decimal ? 1 : 0;
    }
    value_count_ += values.size();
}

std::vector<std::vector<const Entry*>> grouped_by_name(const Entry& group) {
    std::vector<std::vector<const Entry*>> lists;
    std::unordered_map<std::string_view, std::size_t> places;
    for (const Entry& entry : group.children) {
        const auto [place, is_new] = places.try_emplace(entry.plain_name(), lists.size());
        if (is_new) {
            lists.emplace_back();
        }
        lists[place->second].push_back(&entry);
    }
    return lists;
}

} // namespace bench
