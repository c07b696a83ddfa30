#include "document/json/write/json_names_impl.h"

#include "document/sources/byte_hash_impl.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace bk_parser {

namespace {

// Names that repeat usually do so among the first entries.
constexpr unsigned int compared_count = 8;

bool have_distinct_names(ParserEntry* const* entries, unsigned int count) noexcept {
    for (unsigned int i = 1; i < count; ++i) {
        for (unsigned int k = 0; k < i; ++k) {
            if (entries[i] != nullptr && entries[k] != nullptr &&
                entries[i]->get_name() == entries[k]->get_name()) {
                return false;
            }
        }
    }
    return true;
}

} // namespace

bool has_distinct_names(const ParserGroup& group) {
    const CoreVector<ParserEntry*>& entries = group.get_entries();
    const unsigned int count = entries.get_count();
    if (!have_distinct_names(entries.get_data(), std::min(count, compared_count))) {
        return false;
    }
    if (count <= compared_count) {
        return true;
    }
    std::vector<std::uint64_t> hashes;
    hashes.reserve(count);
    for (const ParserEntry* const entry : entries) {
        if (entry != nullptr) {
            hashes.push_back(ByteHash::of(entry->get_name().get_view()));
        }
    }
    std::sort(hashes.begin(), hashes.end());
    return std::adjacent_find(hashes.begin(), hashes.end()) == hashes.end();
}

} // namespace bk_parser
