#pragma once

#include "parser/parser_group.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace bk_parser {

/// Finds the entries of a group by the place that they were read at. Entries that come in their order cost a look at each; where
/// they do not, an index is made.
class EntryLookup {
public:
    EntryLookup() = default;
    explicit EntryLookup(const ParserGroup* group) : group_(group) {
        if (group != nullptr && !is_ascending()) {
            make_index();
        }
    }

    const ParserGroup* group() const noexcept { return group_; }
    /// The position of an entry of this place that was not found before, of that name where there are several; 0xFFFFFFFF
    /// when there is none.
    std::uint32_t find(core_ulong line, core_ulong column, std::string_view name);
    /// The other entries that the last search could have found: copies say the place of what they were made from.
    const std::vector<std::uint32_t>& twins() const noexcept { return twins_; }
    /// The last search shall have found this twin instead.
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
    std::uint32_t next_ = 0; // where the next entry is when nothing has changed
    bool has_index_ = false;
    bool has_twins_ = false; // some entries say one place
    std::uint32_t last_ = 0; // that was found
    std::vector<std::uint32_t> twins_;
    std::vector<Place> index_; // of what was not found in its order
    std::vector<bool> found_;  // by position, once there is an index
};

} // namespace bk_parser
