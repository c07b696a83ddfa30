#include "parser/model/parser_group_impl.h"

#include <algorithm>
#include <new>

// The index of a group has the positions of the entries that have no ordinal. When a host changes the type of an entry, the change takes
// effect at the next edit of the group, so each edit would have to look at every entry. A long group therefore stores with its index how
// often types had changed in the process when the index was built. While that count stays the same, the index is exact, and an edit that
// moves or removes one entry only shifts it.

namespace {

/// A group with at most this many entries looks at each of them. The list of a longer group is stored outside a document's pages, so its
/// index may be, too.
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

/// Call it before an edit that adds `extra` entries without an ordinal. It allocates what the index needs after the edit, even when it must
/// be rebuilt. Returns whether the index is exact.
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
            return is_exact; // the index works without a count, too
        }
    }
    return is_exact;
}

/// Allocates nothing, after `prepare_index`.
void ParserGroup::rebuild_index() noexcept {
    keyword_index_.set_era(bk::type_era.load(std::memory_order_relaxed));
    keyword_index_.truncate(0);
    for (unsigned int position = 0; position < entries_.get_count(); ++position) {
        if (has_no_ordinal(entries_[position])) {
            keyword_index_.add(position);
        }
    }
}
