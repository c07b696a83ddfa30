#pragma once

#include "parser/parser_group.h"

#include <vector>

namespace bk {

/// Copies trees deeply with an explicit stack.
class TreeCopier {
public:
    /// A copy of the entry whose nested groups are still empty, until `finish`.
    ParserEntry* copy_entry(const ParserEntry& entry);
    /// The same for the values alone; `to` is empty.
    void copy_values(const ParserValueList& from, ParserValueList& to);
    /// Fills the nested groups of all that was copied.
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
