#include "tree/tree.h"

#include "python.h"
#include "types/search.h"

#include <condition_variable>
#include <mutex>

namespace bk_python {

namespace {

std::uint64_t next_origin() noexcept {
    static std::atomic<std::uint64_t> last = 0;
    return ++last;
}

struct Waiting {
    std::mutex mutex;
    std::condition_variable is_free;
};

/// Never destroyed, because threads of the interpreter may still wait when the process ends.
Waiting*& waiting() {
    static auto* shared = new Waiting;
    return shared;
}

// Counts for all trees. They are increased with the interpreter's lock held, and decreased with the lock of `waiting` held, too.
std::atomic<std::size_t> occupation_count = 0;
std::atomic<std::size_t> fork_count = 0; // forks that wait for saves

template <class Condition>
void wait_until(const Condition& holds) {
    const py::gil_scoped_release unlocked;
    Waiting& shared = *waiting();
    std::unique_lock lock(shared.mutex);
    shared.is_free.wait(lock, holds);
}

} // namespace

Tree::Tree(bk_parser::LoadResult loaded) : origin_(next_origin()), loaded_(std::move(loaded)) {}

const std::vector<bk_parser::Problem>& Tree::problems() const noexcept {
    static const std::vector<bk_parser::Problem> none;
    return loaded_ ? loaded_->problems : none;
}

void Tree::settle_searches() {
    while (searches != nullptr) {
        searches->settle();
    }
}

std::string Tree::path_of(const ParserEntry& entry) {
    if (ParserGroup* const group = root()) {
        if (!paths_) {
            paths_.emplace(*group);
        }
        return paths_->path_of(entry);
    }
    std::string path = bk_parser::path_name(entry_->get_name().get_view());
    std::string rest;
    each_group(*entry_,
               [&](ParserGroup& group) { rest = rest.empty() ? bk_parser::path_of(group, entry) : rest; });
    return rest.empty() ? path : path + "/" + rest;
}

GroupPlace Tree::place_of(ParserGroup& group) {
    if (!places_) {
        std::unordered_map<const ParserGroup*, GroupPlace> places;
        const auto add = [&](ParserEntry& holder, ParserGroup* outer) {
            each_group(holder, [&](ParserGroup& held) { places.emplace(&held, GroupPlace{&holder, outer}); });
        };
        const auto add_below = [&](const ParserGroup& top) {
            for (const bk_parser::Visit& visit : bk_parser::walk(top)) {
                add(visit.entry(), &visit.parent());
            }
        };
        if (ParserGroup* const top = root()) {
            add_below(*top);
        } else {
            add(*entry_, nullptr);
            each_group(*entry_, add_below);
        }
        places_ = std::move(places);
    }
    const auto found = places_->find(&group);
    return found == places_->end() ? GroupPlace() : found->second;
}

void wait_until_free(Tree& tree) {
    const TreeRef kept(&tree);
    wait_until([&] { return !tree.is_busy; });
}

void wait_for_saves() {
    ++fork_count;
    while (occupation_count != 0) {
        wait_until([] { return occupation_count == 0; });
    }
    const std::lock_guard lock(waiting()->mutex);
    --fork_count;
    waiting()->is_free.notify_all();
}

void wait_for_forks() {
    while (fork_count != 0) {
        wait_until([] { return fork_count == 0; });
    }
}

/// Other threads of the parent may have held the lock.
void begin_forked() {
    waiting() = new Waiting;
}

Occupation::Occupation(Tree& tree) : tree_(tree) {
    tree_.is_busy = true;
    ++occupation_count;
}

Occupation::~Occupation() {
    const std::lock_guard lock(waiting()->mutex);
    tree_.is_busy = false;
    --occupation_count;
    waiting()->is_free.notify_all();
}

} // namespace bk_python
