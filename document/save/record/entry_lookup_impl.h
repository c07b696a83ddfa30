#pragma once

#include "parser/parser_group.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace bk_parser {

/// Finds the entries of a group by the line and column where they were read. Entries that come in order cost one comparison
/// each; otherwise an index is made.
///
/// Tests the order of the whole group only when an entry is searched that `expected` did not find unchanged: a copy of an
/// unchanged entry is never more like the old entry than that entry is.
class EntryLookup {
public:
    /// Begins anew with another group, or with none.
    void reset(const ParserGroup* group) noexcept;
    const ParserGroup* group() const noexcept { return group_; }
    /// The next entry in order, if it has this place and name. Null when there is none, or an index was made.
    const ParserEntry* expected(core_ulong line, core_ulong column, std::string_view name) const noexcept;
    /// Takes the expected entry as found, and returns its position.
    std::uint32_t take_expected() noexcept { return next_++; }
    /// The position of the entry with this place that was not found before; of several, the one with this name. 0xFFFFFFFF when
    /// there is none.
    std::uint32_t find(core_ulong line, core_ulong column, std::string_view name);
    /// The other candidates of the last search. Copies have the line and column of their original.
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
    std::vector<Place> index_; // of entries that did not come in order
    std::vector<bool> found_;  // by position, once there is an index
};

} // namespace bk_parser
