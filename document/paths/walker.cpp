#include "document/paths/tree_cursor_impl.h"

namespace bk_parser {

struct Walker::State {
    explicit State(const ParserGroup& group) : cursor(group) {}

    TreeCursor cursor;
    Visit visit;
};

Walker::Walker(const ParserGroup& group) : state_(std::make_unique<State>(group)) {}
Walker::Walker(Walker&& other) noexcept = default;
Walker& Walker::operator=(Walker&& other) noexcept = default;
Walker::~Walker() = default;

bool Walker::next() {
    if (state_ == nullptr || !state_->cursor.next()) {
        return false;
    }
    state_->visit = state_->cursor.visit(Visit::whole_entry);
    return true;
}

void Walker::skip_groups() noexcept {
    if (state_ != nullptr) {
        state_->cursor.skip_groups();
    }
}

const Visit& Walker::visit() const noexcept {
    return state_ == nullptr ? no_visit : state_->visit;
}

} // namespace bk_parser
