#pragma once

#include "parser/parser_group.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace bkdoc {

/// What one row of the statistics comes to. Bytes are those of the text on one line, as the library writes it.
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

/// Counts what takes the space of trees, in one way.
class SpaceCount {
public:
    explicit SpaceCount(SpaceBy by) : by_(by) { nodes_.push_back({}); }

    void add(const ParserGroup& root);

    const Space& total() const noexcept { return total_; }
    /// The largest first; of equal ones in the order of their names. A path has what is below it, too; a name has its entries
    /// without those in their groups.
    std::vector<SpaceRow> rows() const;

private:
    /// All entries of one name in all groups of one path.
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
    std::vector<Node> nodes_; // the first is the root; each behind its parent
    std::vector<std::size_t> open_;
    std::unordered_map<std::string, Space> rows_; // by name or type
};

} // namespace bkdoc
