#pragma once

#include "core/core_containers.h"

#include <string_view>

namespace bk {

/// Finds words in a growing list. The table, and the number of words that it covers, are the caller's; a slot of the
/// table is two numbers, the Jenkins hash of a word and its index.
///
/// A search first looks at a few slots, beginning at the one that the Jenkins hash selects. Then it follows a sequence of slots
/// that a stronger hash selects, so that words made to share a Jenkins hash do not slow each other down.
class WordLookup {
public:
    WordLookup(CoreVector<unsigned int>& table, unsigned int& covered,
               const CoreVector<CoreString>& words) noexcept
        : table_(table), covered_(covered), words_(words) {}

    /// Enters the words that were added to the list since the last call, or all words again when some were removed.
    void catch_up();

    /// The index of the word. For a new word this is the number of words so far, and the caller must add it with that index.
    unsigned int find_or_cover(std::string_view word);

private:
    unsigned int find_slot(unsigned int hash, std::string_view word) const noexcept;
    bool ends_search(unsigned int slot, unsigned int hash, std::string_view word) const noexcept;
    void grow();
    void enter(unsigned int hash, unsigned int index) noexcept;

    unsigned int slot_count() const noexcept { return table_.get_count() / 2; }
    unsigned int& hash_at(unsigned int slot) const noexcept { return table_[2 * slot]; }
    unsigned int& index_at(unsigned int slot) const noexcept { return table_[2 * slot + 1]; }

    CoreVector<unsigned int>& table_; // at most half full
    unsigned int& covered_;
    const CoreVector<CoreString>& words_;
};

} // namespace bk
