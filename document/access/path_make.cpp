#include "document/access/path_make_impl.h"

#include "document/paths/path_match_impl.h"
#include "document/paths/path_search_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_group_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <algorithm>

namespace bk_parser {

namespace {

using SelectorKind = PathSelector::Kind;

/// Whether entries of the tree match this many steps. A "**" at the end always matches; the way then ends before it.
bool find_prefix(ParserGroup& root, const ParsedPath& path, std::size_t step_count, PathWay& way) {
    const std::size_t searched = step_count - (path.steps[step_count - 1].is_any_depth ? 1 : 0);
    if (searched == 0) {
        return true;
    }
    PathMatcher matcher(root, path, searched, true);
    if (!matcher.next()) {
        return false;
    }
    way.found = searched;
    way.passed.clear();
    for (const TreeCursor::Level& level : matcher.cursor().levels()) {
        way.passed.push_back(level.entry);
    }
    const unsigned int value = path.steps[searched - 1].value;
    way.group = held_group(*way.holder(), value);
    way.has_no_group =
        way.group == nullptr && (value == no_value || value == way.holder()->get_value_count());
    way.is_blocked = way.group == nullptr && !way.has_no_group;
    return true;
}

/// How many entries of the group fit a step without its number.
unsigned int count_like(const ParserGroup& group, PathStep step) {
    std::erase_if(step.selectors,
                  [](const PathSelector& selector) { return selector.kind == SelectorKind::index; });
    unsigned int count = 0;
    for (const ParserEntry* entry : group.get_entries()) {
        count += entry != nullptr && fits_step(step, *entry, {}) ? 1 : 0;
    }
    return count;
}

/// The number that the step's next entry has in the group that the way leads to.
unsigned int next_number(const PathWay& way, const PathStep& step) {
    if (way.like_count) {
        return *way.like_count;
    }
    return way.group == nullptr ? 0 : count_like(*way.group, step);
}

/// Whether an entry can have the name and template of a step. A keyword has no template in a text.
bool is_head_makeable(const PathStep& step) noexcept {
    bool is_keyword = false;
    if (step.is_any_depth || step.is_any_name || !is_plain_name(step.name, is_keyword)) {
        return false;
    }
    if (!step.template_name || step.template_name->empty()) {
        return true;
    }
    bool is_template_keyword = false;
    return !is_keyword && is_plain_name(*step.template_name, is_template_keyword) && !is_template_keyword;
}

/// Whether a step says how to make its entry: it is a name, with at most one key and then at most one number, which must be that of the
/// next entry. `way` is null in a new group.
bool is_makeable(const PathStep& step, const PathWay* way) {
    if (!is_head_makeable(step)) {
        return false;
    }
    bool has_key = false;
    bool has_number = false;
    for (const PathSelector& selector : step.selectors) {
        if (selector.kind == SelectorKind::key && !has_key && !has_number) {
            has_key = true;
        } else if (selector.kind == SelectorKind::index && !has_number) {
            has_number = true;
            if (selector.index != (way == nullptr ? 0 : next_number(*way, step))) {
                return false;
            }
        } else {
            return false;
        }
    }
    return true;
}

std::unique_ptr<ParserEntry> make_entry(const PathStep& step) {
    bool is_keyword = false;
    is_plain_name(step.name, is_keyword);
    auto entry =
        std::make_unique<ParserEntry>(CoreString(std::string_view(step.name)),
                                      is_keyword ? ParserEntry::TYPE_KEYWORD : ParserEntry::TYPE_ENTRY, 0, 0);
    if (step.template_name) {
        entry->set_template(CoreString(std::string_view(*step.template_name)));
    }
    for (const PathSelector& selector : step.selectors) {
        if (selector.kind == SelectorKind::key) {
            entry->add_string(CoreString(std::string_view(selector.key)));
        }
    }
    return entry;
}

} // namespace

bool is_plain_name(std::string_view name, bool& is_keyword) noexcept {
    bk::NameParts parts;
    return bk::is_entry_name(name, is_keyword) &&
           (is_keyword ||
            (bk::classify_name_level(name, parts) == bk::NameKind::identifier && parts.base == name));
}

/// Finds the longest way by binary search: whenever a way exists, every shorter one does.
PathWay find_way(ParserGroup& root, const ParsedPath& path, std::size_t step_count) {
    PathWay way;
    way.group = &root;
    std::size_t there = 0;
    std::size_t missing = step_count + 1;
    for (std::size_t tried = step_count; there + 1 < missing; tried = there + (missing - there) / 2) {
        if (find_prefix(root, path, tried, way)) {
            there = tried;
        } else {
            missing = tried;
        }
    }
    return way;
}

bool make_steps(const PathWay& way, const ParsedPath& path, std::size_t step_count, MadeEntries& made) {
    if (way.is_blocked) {
        return false;
    }
    for (std::size_t i = way.found; i < step_count; ++i) {
        const PathStep& step = path.steps[i];
        if (!is_makeable(step, i == way.found ? &way : nullptr)) {
            return false;
        }
        std::unique_ptr<ParserEntry> entry = make_entry(step);
        const bool is_last = i + 1 == path.steps.size();
        if (!is_last && step.value != no_value && step.value != entry->get_value_count()) {
            return false;
        }
        ParserEntry* const next = entry.get();
        if (made.innermost == nullptr) {
            made.outermost = std::move(entry);
        } else {
            made.innermost->add_group(nullptr)->add_entry(*next);
            static_cast<void>(entry.release());
        }
        made.innermost = next;
    }
    return true;
}

Attachment::Attachment(const PathWay& way, MadeEntries made) : group_(way.group) {
    if (way.has_no_group) {
        marks_.resize(std::size_t{way.holder()->get_value_count()} + 1);
        group_ = way.holder()->add_group(nullptr);
        holder_ = way.holder();
    }
    if (made.outermost == nullptr) {
        return;
    }
    try {
        group_->add_entry(*made.outermost);
    } catch (...) {
        undo();
        throw;
    }
    static_cast<void>(made.outermost.release());
    listed_in_ = group_;
    if (ParserGroup* const inside = held_group(*made.innermost, no_value)) {
        group_ = inside;
    }
}

Attachment::~Attachment() {
    if (!is_kept_) {
        undo();
    }
}

void Attachment::undo() noexcept {
    if (holder_ != nullptr) {
        marks_.back() = 1;
        bk::EntryAccess::values(*holder_).remove_marked(marks_.data(), *holder_);
    } else if (listed_in_ != nullptr) {
        bk::GroupAccess::drop_appended(*listed_in_);
    }
}

} // namespace bk_parser
