#pragma once

#include "parser/parser_group.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace bkdoc {

/// The sums of one row of the statistics. Bytes count the text as the library writes it on one line.
struct Space {
    unsigned long long bytes = 0;
    unsigned long long entries = 0;
    unsigned long long values = 0;

    void add(const Space& other) noexcept {
        bytes += other.bytes;
        entries += other.entries;
        values += other.values;
    }
};

struct SpaceRow {
    std::string name;
    Space space;
};

enum class SpaceBy { path, name, type };

/// Sums up the space of trees by path, name or type.
class SpaceCount {
public:
    explicit SpaceCount(SpaceBy by) : by_(by) { nodes_.push_back({}); }

    void add(const ParserGroup& root);

    const Space& total() const noexcept { return total_; }
    /// Rows by descending size; equal ones by name. A path includes everything below it. A name counts its own entries, without
    /// the entries in their groups.
    std::vector<SpaceRow> rows() const;

private:
    /// All entries that share a path.
    struct Node {
        std::size_t parent = 0;
        std::string name;
        Space space;
        std::unordered_map<std::string, std::size_t> below;
    };

    void add_entry(const ParserEntry& entry, std::size_t nesting);
    void add_types(const ParserEntry& entry, std::size_t name_bytes);
    std::size_t node_below(std::size_t parent, std::string_view name);
    std::string path_of(std::size_t node) const;
    std::vector<SpaceRow> path_rows() const;

    SpaceBy by_;
    Space total_;
    std::vector<Node> nodes_; // the root first; parents before children
    std::vector<std::size_t> open_;
    std::unordered_map<std::string, Space> rows_; // by name or by type
};

} // namespace bkdoc
