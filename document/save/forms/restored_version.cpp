#include "document/save/forms/restored_version_impl.h"

#include "parser/model/parser_group_impl.h"

#include <algorithm>

namespace bk_parser {

RestoredVersion::RestoredVersion(DocumentState& state, Form form) : state_(state) {
    if (state.kept_version == nullptr || form != state.form) {
        return;
    }
    position_ = std::min(state.version_entry.value_or(0), state.root->get_entries().get_count());
    bk::GroupAccess::insert(*state.root, position_, state.kept_version.get());
    static_cast<void>(state.kept_version.release());
    is_there_ = true;
}

/// Putting back what was taken out needs no memory.
RestoredVersion::~RestoredVersion() {
    if (is_there_) {
        state_.kept_version = bk::GroupAccess::take(*state_.root, position_);
    }
}

} // namespace bk_parser
