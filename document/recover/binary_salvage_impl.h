#pragma once

#include "document/load/meter_impl.h"
#include "document/recover/lost_parts_impl.h"
#include "parser/parser_group.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

inline constexpr std::size_t size_width = 8; // of a size in bytes

/// Reads what can be read of a binary document that may be damaged anywhere.
///
/// Trusts a size when the part that it measures ends there, or when an entry begins there. Otherwise the values themselves show
/// where an entry ends: the name of the next one begins with a byte that is no tag of a value. When all sizes fit each other
/// (`is_sound`), it trusts every size and mends names alone.
class BinarySalvage {
public:
    BinarySalvage(std::string_view data, bool is_sound, unsigned int nesting_depth, LostParts& lost,
                  Meter& meter) noexcept
        : data_(data), is_sound_(is_sound), nesting_depth_(nesting_depth), lost_(lost), meter_(meter),
          announced_end_(data.size()), work_left_(data.size() * 8 + 1000) {}

    void run(ParserGroup& root);

private:
    /// The head of an entry: its name and its size.
    struct Head {
        std::size_t begin = 0;
        std::size_t name_size = 0;
        std::size_t values = 0; // where they begin
        std::uint64_t size = 0; // as stored: of the values and the reserved byte
    };

    /// An open group, and its open entry.
    struct Level {
        ParserGroup* group = nullptr;
        std::size_t group_end = 0;
        ParserEntry* entry = nullptr; // null between entries
        Head head;
        std::size_t entry_end = 0; // by its size; 0 when the size cannot be right
        bool is_sure = false;      // the bytes at `entry_end` can follow an entry
    };

    enum class Taken { value, group, nothing };

    static bool is_tag(char character) noexcept;
    std::uint64_t number_at(std::size_t place) const noexcept;
    bool read_head(std::size_t place, std::size_t end, Head& head) const noexcept;
    bool is_likely_head(std::size_t place, std::size_t end) const noexcept;
    bool chain_ends_at(std::size_t begin, std::size_t end) noexcept;
    std::size_t group_end(std::size_t size_at, std::size_t parent_end, bool is_root);
    std::size_t end_of_values(const Level& level) const noexcept;
    bool ends_well(const Level& level, std::size_t place) const noexcept;

    void step();
    void begin_entry();
    void take_head(Level& level, const Head& head) const noexcept;
    std::string name_of(const Head& head) const;
    bool has_good_name(const Head& head) const;
    Head head_with_lost_nul(const Head& head, std::size_t end) const;
    std::string mended_name(const Head& head);
    void search_entry(std::size_t from, std::string what);
    void stop_values();
    void finish_entry();
    void drop_entry();
    Taken take_value(std::size_t end);
    Taken take_group(std::size_t end);
    Taken take_cut_group(std::size_t end);
    bool value_fits(char tag, std::size_t end) const noexcept;
    void add_value(char tag, std::size_t end);
    std::string path() const;

    std::string_view data_;
    bool is_sound_;
    unsigned int nesting_depth_;
    LostParts& lost_;
    Meter& meter_;
    std::size_t position_ = 0;
    std::uint64_t announced_end_; // where the document ended before it was cut off
    std::size_t work_left_; // bytes that may still be looked at; bounds the time that hostile sizes cost
    std::vector<Level> levels_;
};

} // namespace bk_parser
