#include "document/access.h"

#include "document/access/path_make_impl.h"
#include "document/access/value_write_impl.h"
#include "document/paths/path_search_impl.h"

namespace bk_parser {

namespace {

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

/// "name[3]" and no more: what is looked for is the entry of that number, in one walk over the names.
bool is_numbered_name(const ParsedPath& path) noexcept {
    const PathStep& step = path.steps.front();
    return path.steps.size() == 1 && !step.is_any_depth && !step.is_any_name && !step.template_name &&
           step.selectors.size() == 1 && step.index_count == 1;
}

ParserEntry* find_numbered(const ParserGroup& group, const PathStep& step) noexcept {
    unsigned int passed = 0;
    for (ParserEntry* const entry : group.get_entries()) {
        if (entry != nullptr && entry->get_name().get_view() == step.name &&
            passed++ == step.selectors.front().index) {
            return entry;
        }
    }
    return nullptr;
}

/// The entry whose value is set, whether it has that value or not; null when there is none.
ParserEntry* find_holder(const ParserGroup& group, const ParsedPath& path) {
    if (is_numbered_name(path)) {
        return find_numbered(group, path.steps.front());
    }
    PathMatcher matcher(group, path, path.steps.size(), true);
    return matcher.next() ? matcher.cursor().entry() : nullptr;
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
    if (ParserEntry* const holder = find_holder(group, argument.get())) {
        return write_values(*holder, value, given, end);
    }
    const PathWay way = find_way(group, argument.get(), argument.steps().size() - 1);
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
