#pragma once

#include "tree/handle_map.h"

#include "document/document.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace bk_python {

struct Search;

/// The place of a group: the entry that holds it, and the group that has this entry.
struct GroupPlace {
    ParserEntry* holder = nullptr;
    ParserGroup* outer = nullptr;
};

/// An owner of entries: a document, or an entry or group that was taken out of one. It lives while a Python object refers to it
/// or to something in it. It knows these objects (handles), and edits update them. So no handle ever dangles: a removed entry
/// with a handle lives on in a tree of its own.
///
/// All members require the interpreter's lock. While a save works without the lock, `is_busy` is set, and other users of the
/// tree wait (wait_until_free).
class Tree {
public:
    explicit Tree(bk_parser::LoadResult loaded);
    Tree(std::unique_ptr<ParserEntry> entry, std::uint64_t origin) noexcept
        : origin_(origin), entry_(std::move(entry)) {}
    Tree(std::unique_ptr<ParserGroup> group, std::uint64_t origin) noexcept
        : origin_(origin), group_(std::move(group)) {}

    void retain() noexcept { ++references_; }
    void release() noexcept {
        if (--references_ == 0) {
            delete this;
        }
    }

    /// Null for a part that was taken out.
    bk_parser::Document* document() noexcept { return loaded_ ? &loaded_->document : nullptr; }
    const std::vector<bk_parser::Problem>& problems() const noexcept;
    /// The outermost group; null in the tree of an entry.
    ParserGroup* root() noexcept { return loaded_ ? &loaded_->document.root() : group_.get(); }
    /// The entry of a tree that was taken out as an entry; null for a document or a group.
    ParserEntry* entry() noexcept { return entry_.get(); }
    std::unique_ptr<ParserEntry> give_entry() noexcept { return std::move(entry_); }
    void take_entry(std::unique_ptr<ParserEntry> entry) noexcept { entry_ = std::move(entry); }
    /// The document to which lines and columns of these entries refer; 0 for none.
    std::uint64_t origin() const noexcept { return origin_; }

    /// Call it before entries are added, removed or moved: running searches first find their remaining results.
    void settle_searches();
    /// Call it after such an edit, and after a change of a value that a path may show.
    void forget_paths() noexcept { paths_.reset(); }
    void forget_places() noexcept { places_.reset(); }

    /// The path of an entry from the document's root. The first call after an edit is linear in the tree.
    std::string path_of(const ParserEntry& entry);
    /// The place of a group; nothing for a root. The first call after groups changed is linear in the tree.
    GroupPlace place_of(ParserGroup& group);

    HandleMap handles;
    Search* searches = nullptr; // list of unfinished searches
    std::atomic<bool> is_busy = false;

private:
    ~Tree() = default;

    std::size_t references_ = 0;
    std::uint64_t origin_;
    std::optional<bk_parser::LoadResult> loaded_;
    std::unique_ptr<ParserEntry> entry_;
    std::unique_ptr<ParserGroup> group_;
    std::optional<bk_parser::PathIndex> paths_;
    std::optional<std::unordered_map<const ParserGroup*, GroupPlace>> places_;
};

/// Waits until no save works on the tree. Releases the interpreter's lock meanwhile.
void wait_until_free(Tree& tree);

/// Called before a fork. Waits until no save is running, because a save that is running during the fork never ends in the child. Releases
/// the interpreter's lock meanwhile.
void wait_for_saves();
/// Called at the beginning of a save. Waits while forks wait for saves, so that new saves do not delay them for ever.
void wait_for_forks();
/// Called in the child of a fork.
void begin_forked();

/// Marks the tree as busy while the interpreter's lock is released. Construct and destroy it with the lock held.
class Occupation {
public:
    explicit Occupation(Tree& tree);
    ~Occupation();
    Occupation(const Occupation&) = delete;
    Occupation& operator=(const Occupation&) = delete;

private:
    Tree& tree_;
};

/// An owned reference to a tree.
class TreeRef {
public:
    explicit TreeRef(Tree* tree) noexcept : tree_(tree) { tree_->retain(); }
    ~TreeRef() { tree_->release(); }
    TreeRef(const TreeRef&) = delete;
    TreeRef& operator=(const TreeRef&) = delete;
    Tree& operator*() const noexcept { return *tree_; }
    Tree* operator->() const noexcept { return tree_; }
    Tree* get() const noexcept { return tree_; }

private:
    Tree* tree_;
};

/// Visits every group among the values of the entry.
template <class Action>
void each_group(const ParserEntry& entry, const Action& act) {
    for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
        ParserGroup* group = nullptr;
        if (bk_parser::access::read(entry, i, group)) {
            act(*group);
        }
    }
}

/// The first group among the values; null when there is none.
inline ParserGroup* first_group(const ParserEntry& entry) {
    for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
        ParserGroup* group = nullptr;
        if (bk_parser::access::read(entry, i, group)) {
            return group;
        }
    }
    return nullptr;
}

} // namespace bk_python
