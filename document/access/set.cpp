#include "document/access.h"

#include "document/access/path_make_impl.h"
#include "document/access/value_write_impl.h"
#include "document/paths/path_search_impl.h"
#include "parser/model/parser_entry_impl.h"

#include <optional>
#include <string_view>

namespace bk_parser {

namespace {

constexpr unsigned int entries_ahead = 8; // prefetched

/// Makes the entry of the last step and writes its values from `value` on.
ParserEntry* make_with_values(const PathWay& way, const ParsedPath& path, unsigned int value,
                              std::span<const GivenValue> given) {
    MadeEntries made;
    if (!make_steps(way, path, path.steps.size(), made)) {
        return nullptr;
    }
    ParserEntry* const entry = made.innermost;
    if (value != entry->get_value_count() || !write_values(*entry, value, given, access::ListEnd::keep)) {
        return nullptr;
    }
    Attachment attachment(way, std::move(made));
    attachment.keep();
    return entry;
}

/// Finds the entry for a path of one step such as "name[3]", in one walk over the names.
bool is_numbered_name(const ParsedPath& path) noexcept {
    const PathStep& step = path.steps.front();
    return path.steps.size() == 1 && !step.is_any_depth && !step.is_any_name && !step.template_name &&
           step.selectors.size() == 1 && step.index_count == 1;
}

/// The entry whose value is to be set, even if it does not have that value yet; null when there is no entry.
struct Holder {
    ParserEntry* entry = nullptr;
    std::optional<unsigned int> like_count; // of the name, in one search for a number that is not there
};

Holder find_numbered(const ParserGroup& group, const PathStep& step) noexcept {
    const CoreVector<ParserEntry*>& entries = group.get_entries();
    const unsigned int count = entries.get_count();
    const std::string_view name = step.name;
    const unsigned int wanted = step.selectors.front().index;
    unsigned int passed = 0;
    for (unsigned int i = 0; i < count; ++i) {
        if (i + entries_ahead < count) {
            bk::prefetch_entry(entries[i + entries_ahead]);
        }
        ParserEntry* const entry = entries[i];
        if (entry != nullptr && entry->get_name().get_view() == name && passed++ == wanted) {
            return {entry, {}};
        }
    }
    return {nullptr, passed};
}

Holder find_holder(const ParserGroup& group, const ParsedPath& path) {
    if (is_numbered_name(path)) {
        return find_numbered(group, path.steps.front());
    }
    PathMatcher matcher(group, path, path.steps.size(), true);
    return {matcher.next() ? matcher.cursor().entry() : nullptr, {}};
}

} // namespace

namespace access {

bool set_values(ParserEntry& entry, unsigned int value, std::span<const GivenValue> given, ListEnd end) {
    return write_values(entry, value, given, end);
}

bool set_values(ParserGroup& group, PathRef path, std::span<const GivenValue> given, ListEnd end) {
    const PathArgument argument(path);
    if (!argument.ok()) {
        return false;
    }
    const unsigned int value = argument.last().named_value();
    const Holder holder = find_holder(group, argument.get());
    if (holder.entry != nullptr) {
        return write_values(*holder.entry, value, given, end);
    }
    PathWay way = find_way(group, argument.get(), argument.steps().size() - 1);
    way.like_count = holder.like_count;
    return make_with_values(way, argument.get(), value, given) != nullptr;
}

ParserEntry* add_values(ParserGroup& group, PathRef path, std::span<const GivenValue> given) {
    const PathArgument argument(path);
    if (!argument.ok()) {
        return nullptr;
    }
    const PathWay way = find_way(group, argument.get(), argument.steps().size() - 1);
    return make_with_values(way, argument.get(), argument.last().named_value(), given);
}

} // namespace access

ParserEntry* add(ParserGroup& group, PathRef path) {
    return access::add_values(group, path, {});
}

} // namespace bk_parser
