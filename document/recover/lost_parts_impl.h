#pragma once

#include "document/recover.h"

#include <cstddef>
#include <string>
#include <vector>

namespace bk_parser {

/// Collects what is lost, in any order.
class LostParts {
public:
    static constexpr std::size_t most_told = 10'000;

    void add(std::uint64_t offset, std::uint64_t length, std::string what);
    /// The file ends before what it announces.
    void cut_off(std::uint64_t offset, std::uint64_t length);

    bool is_empty() const noexcept { return parts_.empty(); }
    bool is_cut_off() const noexcept { return is_cut_off_; }
    bool is_only_cut_off() const noexcept { return is_cut_off_ && parts_.size() == 1; }
    std::uint64_t count() const noexcept { return parts_.size() + left_out_; }
    /// By ascending place.
    std::vector<LostPart> take();

private:
    std::vector<LostPart> parts_;
    std::uint64_t left_out_ = 0;
    bool is_cut_off_ = false;
};

} // namespace bk_parser
