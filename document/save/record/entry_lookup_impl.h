#pragma once

#include "parser/parser_group.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace bk_parser {

/// Finds the entries of a group by the line and column where they were read. As long as the entries are asked for in their order, each
/// costs one comparison. Otherwise the lookup makes an index.
///
/// Copies have the line and column of their original. `find` therefore first tests once whether the whole group is in order. `expected`
/// does not: the caller takes the expected entry only when it is unchanged, and no copy can be more like the old entry than an unchanged
/// one.
class EntryLookup {
public:
    /// Forgets everything and starts with another group. With null, nothing is found.
    void reset(const ParserGroup* group) noexcept;
    const ParserGroup* group() const noexcept { return group_; }
    /// The next entry in order, if it has this place and name. Null when it has not, when the group has no further entry, and after an
    /// index was made.
    const ParserEntry* expected(core_ulong line, core_ulong column, std::string_view name) const noexcept;
    /// Marks the entry that `expected` returned as found, and returns its position.
    std::uint32_t take_expected() noexcept { return next_++; }
    /// Finds the entry with this place among those that were not found before, and returns its position. If there are several, prefers one
    /// with this name. Returns 0xFFFFFFFF when there is none.
    std::uint32_t find(core_ulong line, core_ulong column, std::string_view name);
    /// The other entries with the place and name of the last search: copies of each other.
    const std::vector<std::uint32_t>& twins() const noexcept { return twins_; }
    /// Makes this twin the result of the last search.
    void choose(std::uint32_t twin);

private:
    struct Place {
        std::uint64_t key;
        std::uint32_t position;
    };

    static std::uint64_t key_of(core_ulong line, core_ulong column) noexcept {
        return std::uint64_t{line} << 32 | column;
    }
    const ParserEntry* at(std::uint32_t position) const noexcept { return group_->get_entries()[position]; }
    bool is_ascending() const noexcept;
    void make_index();
    std::uint32_t find_in_index(std::uint64_t key, std::string_view name);

    const ParserGroup* group_ = nullptr;
    std::uint32_t next_ = 0; // expected position of the next entry
    bool is_order_known_ = false;
    bool has_index_ = false;
    bool has_twins_ = false; // some entries have the same place
    std::uint32_t last_ = 0; // position found last
    std::vector<std::uint32_t> twins_;
    std::vector<Place> index_; // sorted by place, of the entries that were not found before it was made
    std::vector<bool> found_;  // by position; used once there is an index
};

} // namespace bk_parser
