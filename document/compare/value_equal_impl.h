#pragma once

#include "document/compare.h"

#include <cstdint>

namespace bk_parser {

/// How values are compared. Groups are equal here whatever they hold.
class ValueEquality {
public:
    explicit ValueEquality(const CompareOptions& options) noexcept : options_(options) {}

    bool are_equal(const ParserEntry& left, unsigned int i, const ParserEntry& right, unsigned int j) const;

private:
    bool has_tolerance() const noexcept { return options_.tolerance >= 0; }

    CompareOptions options_;
};

/// The hash of a value. Values that are equal without a tolerance have equal hashes.
std::uint64_t hash_of_value(const ParserEntry& entry, unsigned int i);

/// Mixes two hashes into one that depends on their order.
constexpr std::uint64_t mixed(std::uint64_t hash, std::uint64_t other) noexcept {
    hash = (hash ^ (other + 0x9E3779B97F4A7C15u + (hash << 6) + (hash >> 2))) * 0xA4093822299F31D1u;
    return hash ^ (hash >> 32);
}

/// Whether two entries have the same kind, template and array count.
bool have_same_heads(const ParserEntry& left, const ParserEntry& right) noexcept;

} // namespace bk_parser
