#pragma once

#include "core/core_containers.h"

#include <string_view>

namespace bk {

/// Finds words in a growing list. The table, and the number of words that it covers, are the caller's; a slot of the
/// table is two numbers, the Jenkins hash of a word and its index.
///
/// A word is looked for in a few slots from the place that its Jenkins hash names on, and then along a way that a
/// stronger hash names: words that were made to share a Jenkins hash do not slow each other down.
class WordLookup {
public:
    WordLookup(CoreVector<unsigned int>& table, unsigned int& covered,
               const CoreVector<CoreString>& words) noexcept
        : table_(table), covered_(covered), words_(words) {}

    /// Covers the words that were added since, or all of them anew when some were taken away.
    void catch_up();

    /// The index of a word that is covered, else the number of words that are: the caller gives it that index.
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
