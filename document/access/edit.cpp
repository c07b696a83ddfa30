#include "document/access.h"

#include "document/access/path_make_impl.h"
#include "document/access/value_write_impl.h"
#include "document/paths/path_search_impl.h"
#include "parser/model/parser_group_impl.h"

#include <algorithm>
#include <unordered_map>
#include <utility>
#include <vector>

namespace bk_parser {

namespace {

void remove_value(ParserEntry& entry, unsigned int value) {
    ArrayCount array_count(entry);
    entry.remove_value(value);
    array_count.follow();
}

/// Goes from the last to the first, so that an entry inside a group value is removed before that value.
std::size_t remove_values(PathMatcher& matcher, unsigned int value) {
    std::vector<ParserEntry*> found;
    while (matcher.next()) {
        found.push_back(matcher.cursor().entry());
    }
    const std::size_t count = found.size();
    for (; !found.empty(); found.pop_back()) {
        remove_value(*found.back(), value);
    }
    return count;
}

/// Removes all entries of a group in one call, because each removal is linear in the group.
std::size_t remove_found(PathMatcher& matcher) {
    std::unordered_map<ParserGroup*, std::vector<unsigned int>> found;
    std::size_t count = 0;
    for (; matcher.next(); ++count) {
        const Visit visit = matcher.visit();
        found[&visit.parent()].push_back(visit.position());
        matcher.skip_groups();
    }
    for (const auto& [group, positions] : found) {
        CoreBasicArray<unsigned int> removed(static_cast<unsigned int>(positions.size()));
        std::copy(positions.begin(), positions.end(), removed.begin());
        group->remove_entries(std::move(removed));
    }
    return count;
}

bool may_be_renamed(const ParserEntry& entry, std::string_view name) noexcept {
    bool is_keyword = false;
    return is_plain_name(name, is_keyword) && is_keyword == (entry.get_type() == ParserEntry::TYPE_KEYWORD);
}

bool move_to(const Visit& moved, const PathWay& way, MadeEntries made, std::string_view name) {
    const CoreString new_name(name);
    ParserGroup& source = moved.parent();
    Attachment attachment(way, std::move(made));
    ParserGroup& target = attachment.group();
    if (&target == &source) {
        moved.entry().rename(new_name);
        attachment.keep();
        return true;
    }
    bk::GroupAccess::transfer(source, moved.position(), target);
    try {
        moved.entry().rename(new_name);
    } catch (...) {
        bk::GroupAccess::transfer_back(target, target.get_entries().get_count() - 1, source,
                                       moved.position());
        throw;
    }
    attachment.keep();
    return true;
}

} // namespace

bool remove(ParserGroup& group, PathRef path) {
    const PathArgument argument(path);
    if (!argument.ok()) {
        return false;
    }
    PathMatcher matcher(group, argument.get(), argument.steps().size());
    if (!matcher.next()) {
        return false;
    }
    const Visit visit = matcher.visit();
    if (visit.value() == Visit::whole_entry) {
        visit.parent().remove_entry(visit.position());
    } else {
        remove_value(visit.entry(), visit.value());
    }
    return true;
}

std::size_t remove_all(ParserGroup& group, PathRef path) {
    const PathArgument argument(path);
    if (!argument.ok()) {
        return 0;
    }
    PathMatcher matcher(group, argument.get(), argument.steps().size());
    const unsigned int value = argument.last().value;
    return value == no_value ? remove_found(matcher) : remove_values(matcher, value);
}

bool rename(ParserEntry& entry, TextRef name) {
    if (!may_be_renamed(entry, name.view())) {
        return false;
    }
    entry.rename(CoreString(name.view()));
    return true;
}

bool rename(ParserGroup& group, PathRef path, TextRef name) {
    ParserEntry* const entry = find(group, path);
    return entry != nullptr && rename(*entry, name);
}

bool move(ParserGroup& group, PathRef from, PathRef to) {
    const PathArgument source(from);
    const PathArgument target(to);
    if (!source.ok() || !target.ok()) {
        return false;
    }
    const PathStep& last = target.last();
    if (last.is_any_name || last.template_name || !last.selectors.empty() || last.value != no_value) {
        return false;
    }
    PathMatcher matcher(group, source.get(), source.steps().size());
    if (!matcher.next() || !may_be_renamed(*matcher.cursor().entry(), last.name)) {
        return false;
    }
    const std::size_t step_count = target.steps().size() - 1;
    const PathWay way = find_way(group, target.get(), step_count);
    MadeEntries made;
    const bool is_inside =
        std::find(way.passed.begin(), way.passed.end(), matcher.cursor().entry()) != way.passed.end();
    if (is_inside || !make_steps(way, target.get(), step_count, made)) {
        return false;
    }
    if (made.innermost != nullptr) {
        made.innermost->add_group(nullptr);
    }
    return move_to(matcher.visit(), way, std::move(made), last.name);
}

std::unique_ptr<ParserEntry> take(ParserGroup& group, unsigned int position) {
    return bk::GroupAccess::take(group, position);
}

std::unique_ptr<ParserEntry> take(ParserGroup& group, PathRef path) {
    PathSearch search(group, path);
    return search.next() ? take(search.visit().parent(), search.visit().position()) : nullptr;
}

ParserEntry& insert(ParserGroup& group, unsigned int position, std::unique_ptr<ParserEntry> entry) {
    bk::GroupAccess::insert(group, position, entry.get());
    return *entry.release();
}

} // namespace bk_parser
