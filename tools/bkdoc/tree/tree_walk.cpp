#include "tree/tree_walk.h"

namespace bkdoc {

bool TreeWalk::is_last_at(std::size_t depth) const noexcept {
    const Level& level = levels_[depth - 1];
    return level.passed == (level.entry != nullptr ? level.count : level.group->get_entries().get_count());
}

bool TreeWalk::next() {
    descend();
    while (!levels_.empty()) {
        if (advance(levels_.back())) {
            return true;
        }
        group_lists_ -= levels_.back().entry != nullptr ? 1 : 0;
        levels_.pop_back();
    }
    return false;
}

void TreeWalk::descend() {
    if (several_ != 0) {
        levels_.push_back({levels_.back().group, entry_, 0, 0, several_});
        ++group_lists_;
    } else if (below_ != nullptr) {
        levels_.push_back({below_, nullptr, 0, 0});
    }
    skip();
}

bool TreeWalk::advance(Level& level) {
    if (level.entry != nullptr) {
        while (level.passed < level.count && !level.entry->is_value_group(level.next)) {
            ++level.next;
        }
        if (level.passed == level.count) {
            return false;
        }
        entry_ = level.entry;
        below_ = level.entry->get_group(level.next++);
    } else {
        const CoreVector<ParserEntry*>& entries = level.group->get_entries();
        if (level.next == entries.get_count()) {
            return false;
        }
        entry_ = entries[level.next++];
        look_below();
    }
    ++level.passed;
    return true;
}

void TreeWalk::look_below() {
    std::size_t count = 0;
    for (unsigned int i = 0; i < entry_->get_value_count(); ++i) {
        if (entry_->is_value_group(i)) {
            ++count;
            below_ = entry_->get_group(i);
        }
    }
    if (count > 1) {
        below_ = nullptr;
        several_ = count;
    }
}

} // namespace bkdoc
