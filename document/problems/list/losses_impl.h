#pragma once

#include "document/problems/list/problem_codes_impl.h"
#include "document/sources/source_map_impl.h"

#include <cstddef>
#include <set>
#include <string_view>
#include <utility>

namespace bk_parser {

/// The places where a mistake whose code is a warning made the grammar leave something out.
class Losses {
public:
    explicit Losses(const SourceMap& sources) noexcept : sources_(sources) {}

    void add(const Spot& spot) { places_.insert(place_of(spot)); }
    /// The severity of a problem there: an error when something was lost, otherwise that of its code.
    Severity severity(std::string_view code, const Spot& spot) const {
        return places_.contains(place_of(spot)) ? Severity::error : severity_of(code);
    }

private:
    /// The place in the file, not in the inclusion: a mistake in a file that is included twice is reported once.
    std::pair<std::size_t, std::size_t> place_of(const Spot& spot) const {
        return {sources_.file_of_inclusion(spot.inclusion), spot.offset};
    }

    const SourceMap& sources_;
    std::set<std::pair<std::size_t, std::size_t>> places_;
};

} // namespace bk_parser
