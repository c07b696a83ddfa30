#include "parser/archive/parser_word_lookup_impl.h"

#include "core/core_hash.h"
#include "core/memory/core_count_impl.h"
#include "parser/archive/parser_word_hash_impl.h"

#include <algorithm>

namespace bk {

namespace {

constexpr unsigned int first_slot_count = 32;
constexpr unsigned int most_slots = 1u << 30;
/// How many slots are searched from the one that the Jenkins hash selects.
constexpr unsigned int near_slots = 16;
constexpr unsigned int vacant = 0xFFFFFFFFu;

unsigned int hash_of(std::string_view word) noexcept {
    return CoreHash::generate_jenkins(word.data(), word.size());
}

} // namespace

void WordLookup::catch_up() {
    if (covered_ > words_.get_count()) {
        table_.clear();
        covered_ = 0;
    }
    while (covered_ < words_.get_count()) {
        const unsigned int next = covered_;
        find_or_cover(words_[next].get_view());
        covered_ = next + 1; // a word that is there twice is found by its first index
    }
}

unsigned int WordLookup::find_or_cover(std::string_view word) {
    if (covered_ >= slot_count() / 2) {
        grow();
    }
    const unsigned int hash = hash_of(word);
    const unsigned int slot = find_slot(hash, word);
    if (index_at(slot) == vacant) {
        hash_at(slot) = hash;
        index_at(slot) = covered_++;
    }
    return index_at(slot);
}

/// The slot of the word, or the vacant slot where it belongs. Slots are never vacated, so a vacant slot ends the search.
unsigned int WordLookup::find_slot(unsigned int hash, std::string_view word) const noexcept {
    const unsigned int mask = slot_count() - 1;
    for (unsigned int i = 0; i < near_slots; ++i) {
        const unsigned int slot = (hash + i) & mask;
        if (ends_search(slot, hash, word)) {
            return slot;
        }
    }
    auto slot = static_cast<unsigned int>(WordHash::of(word)) & mask;
    while (!ends_search(slot, hash, word)) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

bool WordLookup::ends_search(unsigned int slot, unsigned int hash, std::string_view word) const noexcept {
    const unsigned int index = index_at(slot);
    return index == vacant || (hash_at(slot) == hash && words_[index].get_view() == word);
}

void WordLookup::grow() {
    if (slot_count() == most_slots) {
        throw CountRefused("ParserArchive: too many words");
    }
    const unsigned int size = 2 * std::max(first_slot_count, table_.get_count());
    CoreVector<unsigned int> fresh; // when this allocation throws, the old table is still valid
    std::fill_n(fresh.extend(size), size, vacant);
    table_.swap(fresh);
    const CoreVector<unsigned int>& old = fresh;
    for (unsigned int i = 0; i < old.get_count(); i += 2) {
        if (old[i + 1] != vacant) {
            enter(old[i], old[i + 1]);
        }
    }
}

void WordLookup::enter(unsigned int hash, unsigned int index) noexcept {
    const unsigned int slot = find_slot(hash, words_[index].get_view());
    if (index_at(slot) == vacant) {
        hash_at(slot) = hash;
        index_at(slot) = index;
    }
}

} // namespace bk
