#pragma once

#include "parser/parser_group.h"

#include <vector>

namespace bk {

/// Makes deep copies of trees with a stack of its own instead of recursion.
class TreeCopier {
public:
    /// Returns a copy of the entry. Its nested groups are empty until `finish`.
    ParserEntry* copy_entry(const ParserEntry& entry);
    /// Copies the values alone, to a list that is empty. Their nested groups are empty until `finish`.
    void copy_values(const ParserValueList& from, ParserValueList& to);
    /// Fills the nested groups of everything that was copied.
    void finish();

private:
    void fill_values(const ParserValueList& from, ParserValueList& to);

    struct Nested {
        const ParserGroup* from;
        ParserGroup* to;
    };
    std::vector<Nested> nested_;
};

} // namespace bk
