#include "document/recover/lost_parts_impl.h"

#include <algorithm>
#include <utility>

namespace bk_parser {

void LostParts::add(std::uint64_t offset, std::uint64_t length, std::string what) {
    if (parts_.size() == most_told) {
        ++left_out_;
        return;
    }
    parts_.push_back({offset, length, std::move(what)});
}

void LostParts::cut_off(std::uint64_t offset, std::uint64_t length) {
    is_cut_off_ = true;
    add(offset, length, "cut off");
}

std::vector<LostPart> LostParts::take() {
    std::stable_sort(parts_.begin(), parts_.end(), [](const LostPart& first, const LostPart& second) {
        return first.offset < second.offset;
    });
    if (left_out_ != 0) {
        parts_.back().what += ", and " + std::to_string(left_out_) + " more parts";
    }
    return std::move(parts_);
}

} // namespace bk_parser
