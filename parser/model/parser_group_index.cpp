#include "parser/model/parser_group_impl.h"

#include <algorithm>
#include <new>

// The index of a group has the positions of the entries that have no ordinal. A type that a host changes counts from the next edit on,
// so each edit would look at every entry. A long group therefore notes with its index how often types had changed in the process
// when it was found. As long as none has changed since, the index is exact, and an edit that moves or removes one entry shifts it.

namespace {

/// A group with fewer entries looks at each. The entries of a longer one take more memory than a small document has in its pages, so
/// that the index may take some, too.
constexpr unsigned int many = 128;

bool has_no_ordinal(const ParserEntry* entry) noexcept {
    return entry != nullptr && entry->get_type() != ParserEntry::TYPE_ENTRY;
}

} // namespace

unsigned int ParserGroup::count_without_ordinal() const noexcept {
    return static_cast<unsigned int>(std::count_if(entries_.begin(), entries_.end(), has_no_ordinal));
}

bool ParserGroup::is_index_exact() const noexcept {
    return keyword_index_.get_era() == bk::type_era.load(std::memory_order_relaxed);
}

/// Before an edit that adds `extra` entries without an ordinal: takes the memory that the index needs after it, also when it is found
/// anew. Returns whether the index is exact.
bool ParserGroup::prepare_index(unsigned int extra) {
    const bool is_exact = is_index_exact();
    const unsigned int needed = (is_exact ? keyword_index_.get_count() : count_without_ordinal()) + extra;
    if (needed > keyword_index_.get_capacity()) {
        bk::GroupAccess::list_outside(*this);
        keyword_index_.reserve(needed);
    }
    if (keyword_index_.get_capacity() == 0 && entries_.get_count() > many) {
        try {
            keyword_index_.reserve(1);
        } catch (const std::bad_alloc&) {
            return is_exact; // the index goes on without an era
        }
    }
    return is_exact;
}

/// There is room: see `prepare_index`.
void ParserGroup::rebuild_index() noexcept {
    keyword_index_.set_era(bk::type_era.load(std::memory_order_relaxed));
    keyword_index_.truncate(0);
    for (unsigned int position = 0; position < entries_.get_count(); ++position) {
        if (has_no_ordinal(entries_[position])) {
            keyword_index_.add(position);
        }
    }
}
