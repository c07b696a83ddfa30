#pragma once

#include "core/core_string.h"
#include "document/places.h"
#include "document/sources/source_map_impl.h"

#include <cstdint>
#include <vector>

namespace bk_parser {

/// Finds the place of an entry from the line and the column that it got when the expanded text was parsed.
class EntryPlaces {
public:
    EntryPlaces(SourceMap&& sources, CoreString&& text);

    EntryPlace find(const ParserEntry& entry) const;

private:
    SourceMap sources_;
    CoreString text_;                       // expanded
    std::vector<std::uint32_t> line_begin_; // of its lines, as the parser counts them
};

} // namespace bk_parser
