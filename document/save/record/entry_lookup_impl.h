#pragma once

#include "parser/parser_group.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace bk_parser {

/// Finds the entries of a group by the place that they were read at. Entries that come in their order cost nothing; the
/// first that does not makes an index.
class EntryLookup {
public:
    EntryLookup() = default;
    explicit EntryLookup(const ParserGroup* group) noexcept : group_(group) {}

    const ParserGroup* group() const noexcept { return group_; }
    /// The position of an entry of this place that was not found before, of that name where there are several; 0xFFFFFFFF
    /// when there is none.
    std::uint32_t find(core_ulong line, core_ulong column, std::string_view name);

private:
    struct Place {
        std::uint64_t key;
        std::uint32_t position;
    };

    static std::uint64_t key_of(core_ulong line, core_ulong column) noexcept {
        return std::uint64_t{line} << 32 | column;
    }
    const ParserEntry* at(std::uint32_t position) const noexcept { return group_->get_entries()[position]; }
    void make_index();
    std::uint32_t find_in_index(std::uint64_t key, std::string_view name);

    const ParserGroup* group_ = nullptr;
    std::uint32_t next_ = 0; // where the next entry is when nothing has changed
    bool has_index_ = false;
    std::vector<Place> index_; // of what was not found in its order
    std::vector<bool> found_;  // by position, once there is an index
};

} // namespace bk_parser
