#include "verbs/stats/space.h"

#include "output/display/value_display.h"
#include "tree/tree_walk.h"

#include <algorithm>
#include <array>

namespace bkdoc {

namespace {

constexpr std::size_t brace_bytes = 3; // "{" and " }"
constexpr std::size_t empty_bytes = 8; // " <empty>"
constexpr std::string_view names_row = "(names)";

/// The bytes of a value, without the blank before it. Of a group, those of its braces.
std::size_t text_size(const ParserEntry& entry, unsigned int i) {
    CoreString text;
    switch (entry.get_value_type(i)) {
    case ParserValue::TYPE_GROUP:
        return brace_bytes;
    case ParserValue::TYPE_STRING:
        ParserValue(entry.get_string(i)).get_text(text, false, 1);
        break;
    case ParserValue::TYPE_BINARY_DATA:
        ParserValue(entry.get_binary_data(i), entry.get_binary_data_size(i)).get_text(text, false, 1);
        break;
    default:
        text = entry.get_word(i);
        break;
    }
    return text.get_length();
}

/// The number of bytes that an entry takes besides its values: its name with template and array suffix, one blank, and the
/// parentheses and commas of a call.
std::size_t name_size(const ParserEntry& entry) {
    const std::size_t name = shown_name(entry).size() + 1;
    const std::size_t count = entry.get_value_count();
    if (entry.get_type() == ParserEntry::TYPE_FUNCTION_CALL) {
        return name + (count == 0 ? 2 : count); // "()", or one sign more for each value
    }
    return name + (count == 0 ? empty_bytes : 0);
}

} // namespace

void SpaceCount::add(const ParserGroup& root) {
    open_.assign(1, 0);
    for (TreeWalk walk(root); walk.next();) {
        if (!walk.is_at_group()) {
            add_entry(walk.entry(), walk.nesting());
        }
    }
}

void SpaceCount::add_entry(const ParserEntry& entry, std::size_t nesting) {
    const std::size_t name_bytes = name_size(entry);
    Space space{name_bytes, 1, entry.get_value_count()};
    for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
        space.bytes += text_size(entry, i) + 1;
    }
    total_.add(space);
    switch (by_) {
    case SpaceBy::path:
        open_.resize(nesting);
        open_.push_back(node_below(open_.back(), entry.get_name().get_view()));
        nodes_[open_.back()].space.add(space);
        break;
    case SpaceBy::name:
        rows_[std::string(entry.get_name().get_view())].add(space);
        break;
    case SpaceBy::type:
        add_types(entry, name_bytes);
        break;
    }
}

void SpaceCount::add_types(const ParserEntry& entry, std::size_t name_bytes) {
    constexpr std::size_t types = 8;
    std::array<Space, types> by_type{};
    for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
        by_type[entry.get_value_type(i)].add({text_size(entry, i) + 1, 0, 1});
    }
    rows_[std::string(names_row)].add({name_bytes, 1, 0});
    for (std::size_t i = 0; i < types; ++i) {
        if (by_type[i].values != 0) {
            by_type[i].entries = 1;
            rows_[std::string(type_word(static_cast<ParserValue::Type>(i)))].add(by_type[i]);
        }
    }
}

std::size_t SpaceCount::node_below(std::size_t parent, std::string_view name) {
    const auto [found, is_new] = nodes_[parent].below.try_emplace(std::string(name), nodes_.size());
    const std::size_t node = found->second;
    if (is_new) {
        nodes_.push_back({parent, std::string(name), {}, {}});
    }
    return node;
}

/// The names that lead to a node.
std::string SpaceCount::path_of(std::size_t node) const {
    constexpr std::size_t most_levels = 64;
    std::string path = nodes_[node].name;
    std::size_t levels = 1;
    for (node = nodes_[node].parent; node != 0; node = nodes_[node].parent) {
        if (++levels > most_levels) {
            return ".../" + path;
        }
        path.insert(0, "/").insert(0, nodes_[node].name);
    }
    return path;
}

std::vector<SpaceRow> SpaceCount::path_rows() const {
    std::vector<Space> sums;
    for (const Node& node : nodes_) {
        sums.push_back(node.space);
    }
    for (std::size_t i = sums.size() - 1; i > 0; --i) {
        sums[nodes_[i].parent].add(sums[i]);
    }
    std::vector<SpaceRow> rows;
    for (std::size_t i = 1; i < sums.size(); ++i) {
        rows.push_back({path_of(i), sums[i]});
    }
    return rows;
}

std::vector<SpaceRow> SpaceCount::rows() const {
    std::vector<SpaceRow> rows;
    if (by_ == SpaceBy::path) {
        rows = path_rows();
    } else {
        for (const auto& [name, space] : rows_) {
            rows.push_back({name, space});
        }
    }
    std::sort(rows.begin(), rows.end(), [](const SpaceRow& first, const SpaceRow& second) {
        return first.space.bytes != second.space.bytes ? first.space.bytes > second.space.bytes
                                                       : first.name < second.name;
    });
    return rows;
}

} // namespace bkdoc
