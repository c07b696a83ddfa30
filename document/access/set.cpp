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
    PathMatcher matcher(group, argument.get(), argument.steps().size(), true);
    if (matcher.next()) {
        return write_values(*matcher.cursor().entry(), value, given, end);
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
