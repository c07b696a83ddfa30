#pragma once

#include "core/core_export.h"
#include "core/core_string.h"
#include "document/text_ref.h"
#include "parser/parser_entry.h"
#include "parser/parser_group.h"

#include <concepts>
#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <ranges>
#include <string>
#include <string_view>
#include <utility>

/// Ranges over trees, for range-for and for std::views. All of them are lazy, and none of them recurses.
///
/// **Do not remove or move the entries above the current one**, which hold the groups that are being walked. Otherwise you may edit
/// during a walk: change, move, take or remove the current entry, change what is below it, and add, move or remove entries of the
/// same group. The walk follows the current entry when that moves; an entry moved to the end ends the walk of its group. When the
/// current entry is gone, the walk goes on at its old position number. If you then also add or remove entries before that position,
/// the walk repeats or skips some. Add before you remove: a new entry may get the address of a deleted one, and the walk then takes
/// it for that one.
namespace bk_parser {

/// The current entry of a walk or a search, and its place. Valid until the tree is edited there.
class Visit {
public:
    /// What `value` returns for the entry as a whole.
    static constexpr unsigned int whole_entry = 0xFFFFFFFFu;

    /// No entry: do not call `entry` and `parent`.
    Visit() = default;
    /// Names an entry and its place.
    Visit(ParserEntry& entry, ParserGroup& parent, unsigned int position, unsigned int depth,
          unsigned int value) noexcept
        : entry_(&entry), parent_(&parent), position_(position), depth_(depth), value_(value) {}

    /// The entry.
    ParserEntry& entry() const noexcept { return *entry_; }
    /// The group that lists the entry.
    ParserGroup& parent() const noexcept { return *parent_; }
    /// The entry's position in that group, among entries of every kind.
    unsigned int position() const noexcept { return position_; }
    /// 0 for entries of the group that is walked, 1 for those of groups in them, and so on.
    unsigned int depth() const noexcept { return depth_; }
    /// The value that the path names with `@`, or whole_entry.
    unsigned int value() const noexcept { return value_; }

private:
    ParserEntry* entry_ = nullptr;
    ParserGroup* parent_ = nullptr;
    unsigned int position_ = 0;
    unsigned int depth_ = 0;
    unsigned int value_ = whole_entry;
};

/// Visits every entry of a group and of the groups in it, depth first, an entry before what it holds. Takes memory
/// in proportion to the depth. A moved-from walker visits nothing and may be assigned to.
class BK_PARSER_API Walker {
public:
    /// Starts before the first entry; call `next` to go there. Does not own the group.
    explicit Walker(const ParserGroup& group);
    /// Takes what the other holds.
    Walker(Walker&& other) noexcept;
    /// Takes what the other holds.
    Walker& operator=(Walker&& other) noexcept;
    Walker(const Walker&) = delete;
    Walker& operator=(const Walker&) = delete;
    ~Walker();

    /// Goes to the next entry; false when there is none.
    bool next();
    /// Skips the groups that the current entry holds.
    void skip_groups() noexcept;
    /// The current entry; Visit() before the first `next`, and for a moved-from walker.
    const Visit& visit() const noexcept;

private:
    struct State;
    std::unique_ptr<State> state_;
};

/// A range over what a cursor (Walker, PathSearch) visits, which can be walked once. Movable, not copyable; a moved-from range is
/// empty. `Item` is Visit or ParserEntry: the range gives references to it.
template <class Cursor, class Item>
class CursorRange : public std::ranges::view_base {
public:
    /// An iterator, as the standard library defines them.
    class Iterator {
    public:
        /// The category, for the standard library.
        using iterator_concept = std::input_iterator_tag;
        /// The type of an item.
        using value_type = Item;
        /// The type of distances.
        using difference_type = std::ptrdiff_t;

        Iterator() = default;
        /// Starts at the first item.
        explicit Iterator(CursorRange& range) noexcept : range_(&range) {}

        /// The current item.
        Item& operator*() const noexcept {
            if constexpr (std::same_as<Item, ParserEntry>) {
                return range_->cursor_.visit().entry();
            } else {
                return range_->cursor_.visit();
            }
        }
        /// A member of the current item.
        Item* operator->() const noexcept { return &**this; }
        /// Where the entry is, and which of its values the path names.
        const Visit& visit() const noexcept { return range_->cursor_.visit(); }
        /// Goes to the next item.
        Iterator& operator++() {
            range_->is_over_ = !range_->cursor_.next();
            return *this;
        }
        /// Goes to the next item.
        void operator++(int) { ++*this; }
        /// Whether the range has ended.
        bool operator==(std::default_sentinel_t) const noexcept { return range_->is_over_; }

    private:
        CursorRange* range_ = nullptr;
    };

    /// Walks what the cursor visits.
    explicit CursorRange(Cursor cursor) noexcept : cursor_(std::move(cursor)) {}

    /// Call it once. The range must outlive its iterators.
    Iterator begin() & {
        is_over_ = !cursor_.next();
        return Iterator(*this);
    }
    /// An iterator, for range-based loops.
    std::default_sentinel_t end() const noexcept { return std::default_sentinel; }
    /// The cursor that the range walks with.
    Cursor& cursor() & noexcept { return cursor_; }

private:
    Cursor cursor_;
    bool is_over_ = false;
};

/// Every entry below a group: `for (const Visit& visit : walk(group))`.
[[nodiscard]] inline CursorRange<Walker, const Visit> walk(const ParserGroup& group) {
    return CursorRange<Walker, const Visit>(Walker(group));
}

/// The entries of one group, of every kind, in document order; with a name only those of that name.
class Entries : public std::ranges::view_base {
public:
    /// An iterator, as the standard library defines them.
    class Iterator {
    public:
        /// The category, for the standard library.
        using iterator_concept = std::forward_iterator_tag;
        /// The category, for the standard library.
        using iterator_category = std::forward_iterator_tag;
        /// The type of an item.
        using value_type = ParserEntry;
        /// The type of distances.
        using difference_type = std::ptrdiff_t;
        /// What `*` returns.
        using reference = ParserEntry&;
        /// What `->` returns.
        using pointer = ParserEntry*;

        Iterator() = default;
        /// Starts at the first item.
        explicit Iterator(const Entries& range) noexcept : range_(&range) { find_from(0); }

        /// The current item.
        ParserEntry& operator*() const noexcept { return *entry_; }
        /// A member of the current item.
        ParserEntry* operator->() const noexcept { return entry_; }
        /// Goes to the next item.
        Iterator& operator++() noexcept {
            find_from(following());
            return *this;
        }
        /// Goes to the next item.
        Iterator operator++(int) noexcept {
            const Iterator before = *this;
            ++*this;
            return before;
        }
        /// Whether both are at the same item.
        bool operator==(const Iterator& other) const noexcept { return entry_ == other.entry_; }
        /// Whether the range has ended.
        bool operator==(std::default_sentinel_t) const noexcept { return entry_ == nullptr; }
        /// The position of the entry in its group.
        unsigned int position() const noexcept { return position_; }

    private:
        /// The position after the entry, or the entry's old position when it is gone.
        unsigned int following() const noexcept {
            const auto& entries = range_->group_->get_entries();
            if (position_ < entries.get_count() && entries[position_] == entry_) {
                return position_ + 1;
            }
            for (unsigned int i = 0; i < entries.get_count(); ++i) {
                if (entries[i] == entry_) {
                    return i + 1;
                }
            }
            return position_;
        }
        void find_from(unsigned int position) noexcept {
            const auto& entries = range_->group_->get_entries();
            entry_ = nullptr;
            for (position_ = position; position_ < entries.get_count(); ++position_) {
                ParserEntry* const entry = entries[position_];
                if (entry != nullptr && range_->takes(*entry)) {
                    entry_ = entry;
                    return;
                }
            }
        }

        const Entries* range_ = nullptr;
        ParserEntry* entry_ = nullptr;
        unsigned int position_ = 0;
    };

    /// The range does not own the group.
    explicit Entries(const ParserGroup& group) noexcept : group_(&group) {}
    /// The range does not own the group.
    Entries(const ParserGroup& group, TextRef name) : group_(&group), name_(name.view()) {}

    /// The range must outlive its iterators.
    Iterator begin() const& noexcept { return Iterator(*this); }
    /// Does not compile on a temporary range: the iterator would dangle.
    Iterator begin() const&& = delete;
    /// An iterator, for range-based loops.
    std::default_sentinel_t end() const noexcept { return std::default_sentinel; }

private:
    bool takes(const ParserEntry& entry) const noexcept {
        return !name_ || entry.get_name().get_view() == *name_;
    }

    const ParserGroup* group_;
    std::optional<std::string> name_;
};

/// Every entry of the group, of every kind, in document order.
[[nodiscard]] inline Entries entries(const ParserGroup& group) {
    return Entries(group);
}
/// The entries of that name, of every kind, in document order.
[[nodiscard]] inline Entries entries(const ParserGroup& group, TextRef name) {
    return {group, name};
}

} // namespace bk_parser
