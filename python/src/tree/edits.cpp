#include "tree/edits.h"

#include "document/access/path_make_impl.h"
#include "document/access/value_write_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_group_impl.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace bk_python {

namespace {

/// Visits each entry and each group of a part of a tree, with the group that has the entry.
template <class OnEntry, class OnGroup>
void each_below(const ParserGroup& top, const OnEntry& on_entry, const OnGroup& on_group) {
    for (const bk_parser::Visit& visit : bk_parser::walk(top)) {
        on_entry(visit.entry());
        each_group(visit.entry(), on_group);
    }
}

template <class Action>
void each_target(const ParserEntry& top, const Action& act) {
    act(&top);
    each_group(top, [&](ParserGroup& group) {
        act(&group);
        each_below(
            group, [&](ParserEntry& entry) { act(&entry); }, [&](ParserGroup& held) { act(&held); });
    });
}

template <class Action>
void each_target(const ParserGroup& top, const Action& act) {
    act(&top);
    each_below(
        top, [&](ParserEntry& entry) { act(&entry); }, [&](ParserGroup& held) { act(&held); });
}

/// The handles in a part of a tree.
template <class Part>
std::vector<std::pair<const void*, Handle*>> handles_in(const Tree& tree, const Part& part) {
    std::vector<std::pair<const void*, Handle*>> found;
    if (tree.handles.size() != 0) {
        each_target(part, [&](const void* target) {
            if (void* const handle = tree.handles.find(target)) {
                found.emplace_back(target, static_cast<Handle*>(handle));
            }
        });
    }
    return found;
}

/// Moves handles to the new tree, which has room for them. May delete the old tree.
void rehome(const std::vector<std::pair<const void*, Handle*>>& moved, Tree& to) noexcept {
    for (const auto& [target, handle] : moved) {
        Tree* const from = handle->tree;
        from->handles.erase(target);
        to.handles.add(target, handle);
        to.retain();
        handle->tree = &to;
        from->release();
    }
}

EntryObject* handle_of(const Tree& tree, const ParserEntry& entry) noexcept {
    return static_cast<EntryObject*>(tree.handles.find(&entry));
}

/// Clears lines and columns: a save would take those of another document for places in this one.
void clear_places(ParserEntry& top) {
    bk::EntryAccess::set_place(top, 0, 0);
    each_group(top, [&](ParserGroup& group) {
        for (const bk_parser::Visit& visit : bk_parser::walk(group)) {
            bk::EntryAccess::set_place(visit.entry(), 0, 0);
        }
    });
}

/// Moves the content of a group that has a handle to a new group in a tree of its own.
void detach_group(Tree& tree, ParserGroup& group) {
    std::vector<std::pair<const void*, Handle*>> moved = handles_in(tree, group);
    if (moved.empty()) {
        return;
    }
    auto own = std::make_unique<ParserGroup>(group.get_name());
    ParserGroup& target = *own;
    const TreeRef to(new Tree(std::move(own), tree.origin()));
    to->handles.reserve(moved.size());
    group.move_entries(target, 0);
    rehome(moved, *to);
    for (const ParserEntry* const entry : target.get_entries()) {
        if (EntryObject* const handle = handle_of(*to, *entry)) {
            handle->parent = &target;
        }
    }
    if (void* const there = to->handles.find(&group)) {
        to->handles.erase(&group);
        to->handles.add(&target, there);
        static_cast<GroupObject*>(there)->group = &target;
    }
}

/// Moves an entry to a tree of its own.
void detach_entry(Tree& tree, ParserGroup& group, unsigned int position,
                  const std::vector<std::pair<const void*, Handle*>>& moved) {
    ParserEntry& entry = *group.get_entries()[position];
    const TreeRef to(new Tree(std::unique_ptr<ParserEntry>(), tree.origin()));
    to->handles.reserve(moved.size());
    to->take_entry(bk_parser::take(group, position));
    if (EntryObject* const handle = handle_of(tree, entry)) {
        handle->parent = nullptr;
    }
    rehome(moved, *to);
}

/// Entries to remove. Those with handles are taken out one by one. The others of a group are removed in one call, because each
/// removal is linear in the group.
class FoundEntries {
public:
    std::size_t count() const noexcept { return count_; }

    void add(const Tree& tree, const bk_parser::Visit& visit) {
        ++count_;
        if (auto handles = handles_in(tree, visit.entry()); !handles.empty()) {
            known_.push_back({visit, std::move(handles)});
        } else {
            unknown_[&visit.parent()].insert(&visit.entry());
        }
    }

    void remove(Tree& tree) {
        // From last to first, so that the positions of those before stay valid.
        for (auto one = known_.rbegin(); one != known_.rend(); ++one) {
            detach_entry(tree, one->visit.parent(), one->visit.position(), one->handles);
        }
        for (const auto& [group, entries] : unknown_) {
            const auto& all = group->get_entries();
            CoreBasicArray<unsigned int> positions(static_cast<unsigned int>(entries.size()));
            unsigned int filled = 0;
            for (unsigned int i = 0; i < all.get_count(); ++i) {
                if (entries.contains(all[i])) {
                    positions[filled++] = i;
                }
            }
            group->remove_entries(std::move(positions));
        }
    }

private:
    struct Known {
        bk_parser::Visit visit;
        std::vector<std::pair<const void*, Handle*>> handles;
    };
    std::vector<Known> known_;
    std::unordered_map<ParserGroup*, std::unordered_set<const ParserEntry*>> unknown_;
    std::size_t count_ = 0;
};

} // namespace

void begin_edit(Tree& tree) {
    tree.settle_searches();
    tree.forget_paths();
    tree.forget_places();
}

void refuse_exported(const Tree& tree, const ParserEntry& entry) {
    const EntryObject* const handle = handle_of(tree, entry);
    if (handle != nullptr && handle->export_count != 0) {
        fail(PyExc_BufferError, "the values may not change while a buffer shows them");
    }
}

void refuse_exported_way(const Tree& tree, ParserGroup& group, const bk_parser::Path& path) {
    if (types.export_count == 0) {
        return;
    }
    const bk_parser::PathArgument argument(path);
    const bk_parser::PathWay way = bk_parser::find_way(group, argument.get(), argument.steps().size());
    if (way.has_no_group) {
        refuse_exported(tree, *way.holder());
    }
}

void refuse_into_itself(const EntryObject& moved, const Container& to) {
    if (moved.head.tree != reinterpret_cast<Handle*>(to.self)->tree) {
        return;
    }
    const void* const place = is_entry(to.self)
                                  ? static_cast<const void*>(reinterpret_cast<EntryObject*>(to.self)->entry)
                                  : reinterpret_cast<GroupObject*>(to.self)->group;
    bool is_inside = false;
    each_target(*moved.entry, [&](const void* target) { is_inside = is_inside || target == place; });
    if (is_inside) {
        fail(PyExc_ValueError, "an entry cannot move into itself");
    }
}

void remove_entry(Tree& tree, ParserGroup& group, unsigned int position) {
    begin_edit(tree);
    const auto moved = handles_in(tree, *group.get_entries()[position]);
    if (moved.empty()) {
        bk_parser::take(group, position);
    } else {
        detach_entry(tree, group, position, moved);
    }
}

void insert_entry(Tree& tree, ParserGroup& group, unsigned int position, EntryObject& handle) {
    begin_edit(tree);
    if (handle.parent != nullptr) {
        remove_entry(*handle.head.tree, *handle.parent, position_of(handle));
    }
    ParserEntry& entry = *handle.entry;
    const TreeRef from(handle.head.tree);
    begin_edit(*from);
    const auto moved = handles_in(*from, entry);
    tree.handles.reserve(moved.size());
    bk::GroupAccess::insert(group, position, &entry);
    static_cast<void>(from->give_entry().release());
    if (from->origin() != tree.origin()) {
        clear_places(entry);
    }
    rehome(moved, tree);
    handle.parent = &group;
    handle.position = std::min(position, group.get_entries().get_count() - 1);
}

void remove_value(Tree& tree, ParserEntry& entry, unsigned int value) {
    refuse_exported(tree, entry);
    ParserGroup* group = nullptr;
    begin_edit(tree);
    if (bk_parser::access::read(entry, value, group)) {
        detach_group(tree, *group);
    }
    bk_parser::ArrayCount array_count(entry);
    entry.remove_value(value);
    array_count.follow();
}

void remove_values(Tree& tree, ParserEntry& entry, const CoreBasicArray<unsigned int>& values) {
    refuse_exported(tree, entry);
    begin_edit(tree);
    for (const unsigned int value : values) {
        ParserGroup* group = nullptr;
        if (bk_parser::access::read(entry, value, group)) {
            detach_group(tree, *group);
        }
    }
    bk_parser::ArrayCount array_count(entry);
    entry.remove_value(values);
    array_count.follow();
}

ParserGroup& add_group(EntryObject& handle) {
    Tree& tree = *handle.head.tree;
    refuse_exported(tree, *handle.entry);
    begin_edit(tree);
    return *handle.entry->add_group(nullptr);
}

std::size_t remove_all(Tree& tree, ParserGroup& group, const bk_parser::Path& path) {
    begin_edit(tree);
    FoundEntries found;
    bk_parser::PathSearch search(group, path);
    while (search.next()) {
        if (search.visit().value() != bk_parser::Visit::whole_entry) {
            fail(PyExc_ValueError, "the path names values; remove them from .values");
        }
        found.add(tree, search.visit());
        search.skip_groups();
    }
    found.remove(tree);
    return found.count();
}

void clear(Tree& tree, ParserGroup& group) {
    for (unsigned int i = group.get_entries().get_count(); i-- != 0;) {
        remove_entry(tree, group, i);
    }
}

std::unique_ptr<ParserEntry> copy_of(const ParserEntry& entry) {
    auto copy = std::make_unique<ParserEntry>(entry);
    clear_places(*copy);
    return copy;
}

} // namespace bk_python
