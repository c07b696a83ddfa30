#include "document/paths/path_search_impl.h"

#include "document/paths/path_match_impl.h"
#include "document/paths/plain_search_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"

namespace bk_parser {

PathMatcher::PathMatcher(const ParserGroup& group, const ParsedPath& path, std::size_t step_count,
                         bool takes_any_value)
    : cursor_(group), path_(path), step_count_(step_count), takes_any_value_(takes_any_value) {
    levels_.push_back({0, 0, 0});
    if (step_count_ != 0) {
        add_state(0);
    }
}

bool PathMatcher::next() {
    for (;;) {
        enter_next_group();
        if (!cursor_.next_entry()) {
            if (!cursor_.leave()) {
                return false;
            }
            leave();
            continue;
        }
        if (evaluate()) {
            return true;
        }
    }
}

/// The next group of the current entry in which some step may match.
void PathMatcher::enter_next_group() {
    if (successors_.size() == levels_.back().successors) {
        return;
    }
    while (ParserGroup* const group = cursor_.next_group()) {
        levels_.push_back({states_.size(), counters_.size(), successors_.size()});
        if (add_states(cursor_.group_value())) {
            cursor_.enter(*group);
            return;
        }
        levels_.pop_back();
    }
}

void PathMatcher::leave() noexcept {
    states_.resize(levels_.back().states);
    counters_.resize(levels_.back().counters);
    successors_.resize(levels_.back().successors);
    levels_.pop_back();
}

/// Returns false when no step may match below that value.
bool PathMatcher::add_states(unsigned int value) {
    const std::size_t begin = levels_[levels_.size() - 2].successors;
    const std::size_t end = levels_.back().successors;
    for (std::size_t i = begin; i < end; ++i) {
        if (successors_[i].value == no_value || successors_[i].value == value) {
            add_state(successors_[i].step);
        }
    }
    return states_.size() != levels_.back().states;
}

/// Steps come in ascending order, so a duplicate is among the last ones.
void PathMatcher::add_state(unsigned int step) {
    const auto add = [this](unsigned int added) {
        if (states_.size() == levels_.back().states || states_.back() < added) {
            states_.push_back(added);
            counters_.resize(counters_.size() + path_.steps[added].index_count);
        }
    };
    add(step);
    if (path_.steps[step].is_any_depth && step + 1 < step_count_) {
        add(step + 1);
    }
}

/// Whether the path finds the current entry. Also notes which steps go on below it.
bool PathMatcher::evaluate() {
    const Level level = levels_.back();
    successors_.resize(level.successors);
    const ParserEntry& entry = *cursor_.entry();
    bool is_found = false;
    std::size_t counter = level.counters;
    for (std::size_t i = level.states; i < states_.size(); ++i) {
        const unsigned int number = states_[i];
        const PathStep& step = path_.steps[number];
        if (step.is_any_depth) {
            successors_.push_back({number, no_value});
            continue;
        }
        if (fits_step(step, entry, {counters_.data() + counter, step.index_count})) {
            if (number + 1 == step_count_) {
                is_found = finds(step);
            } else {
                successors_.push_back({number + 1, step.value});
            }
        }
        counter += step.index_count;
    }
    return is_found;
}

bool PathMatcher::finds(const PathStep& last) const noexcept {
    return takes_any_value_ || last.value == no_value || last.value < cursor_.entry()->get_value_count();
}

Visit PathMatcher::visit() const noexcept {
    return cursor_.visit(path_.steps[step_count_ - 1].value);
}

struct PathSearch::State {
    State(const ParserGroup& group, PathRef searched)
        : path(searched.path() != nullptr ? *searched.path() : Path(searched.text())),
          matcher(group, ParsedPath::of(path), ParsedPath::of(path).steps.size()) {}

    Path path;
    PathMatcher matcher;
    Visit visit;
};

PathSearch::PathSearch(const ParserGroup& group, PathRef path)
    : state_(std::make_unique<State>(group, path)) {}
PathSearch::PathSearch(PathSearch&& other) noexcept = default;
PathSearch& PathSearch::operator=(PathSearch&& other) noexcept = default;
PathSearch::~PathSearch() = default;

bool PathSearch::next() {
    if (state_ == nullptr || !state_->path.ok() || !state_->matcher.next()) {
        return false;
    }
    state_->visit = state_->matcher.visit();
    return true;
}

void PathSearch::skip_groups() noexcept {
    if (state_ != nullptr) {
        state_->matcher.skip_groups();
    }
}

const Visit& PathSearch::visit() const noexcept {
    return state_ == nullptr ? no_visit : state_->visit;
}

ParserEntry* find_first(const ParserGroup& group, const PathArgument& path) {
    if (!path.ok()) {
        return nullptr;
    }
    if (is_plain(path.get())) {
        return find_plain(group, path.get());
    }
    PathMatcher matcher(group, path.get(), path.steps().size());
    return matcher.next() ? matcher.cursor().entry() : nullptr;
}

ParserEntry* find(const ParserGroup& group, PathRef path) {
    return find_first(group, PathArgument(path));
}

ParserGroup* find_group(const ParserGroup& group, PathRef path) {
    const PathArgument argument(path);
    const ParserEntry* const entry = find_first(group, argument);
    return entry == nullptr ? nullptr : held_group(*entry, argument.last().value);
}

ParserGroup* held_group(const ParserEntry& entry, unsigned int value) noexcept {
    for (unsigned int i = 0; i < entry.get_value_count(); ++i) {
        ParserGroup* const held = bk::EntryAccess::value(entry, i).group();
        if (i == value || (value == no_value && held != nullptr)) {
            return held;
        }
    }
    return nullptr;
}

} // namespace bk_parser
