#include "document/problems/fault_story_impl.h"

#include "document/problems/problem_codes_impl.h"
#include "document/problems/shown_word_impl.h"

#include <algorithm>
#include <utility>

namespace bk_parser {

namespace {

using Observer = ParserReadObserver;

/// Whether it says that there is no entry, or that the word before it was none.
bool needs_entry(unsigned int kind) noexcept {
    switch (kind) {
    case Observer::FAULT_WRONGLY_PLACED:
    case Observer::FAULT_VALUE_WITHOUT_ENTRY:
    case Observer::FAULT_GROUP_WITHOUT_ENTRY:
    case Observer::FAULT_ARGUMENTS_WITHOUT_ENTRY:
    case Observer::FAULT_CLOSING_WITHOUT_ENTRY:
        return true;
    default:
        return false;
    }
}

bool is_mark(std::string_view word) noexcept {
    return word == "," || word == "=";
}

} // namespace

FaultStory::FaultStory(const FaultRecorder& faults, const SourceMap& sources, const Joins& joins,
                       const ParserLimits& limits, ProblemList& problems)
    : faults_(faults), records_(faults.get_records()), text_(faults.get_text()), sources_(sources),
      joins_(joins), limits_(limits), problems_(problems), lines_(sources),
      has_open_quote_(sources.get_files().size()) {}

void FaultStory::tell(bk::Pace& pace) {
    for (std::size_t i = 0; i < records_.size();) {
        const std::size_t next = tell_from(i);
        last_ = &records_[next - 1];
        i = next;
        pace.reach(i);
    }
}

/// Tells one mistake, and returns the first fault behind those that came of it.
std::size_t FaultStory::tell_from(std::size_t i) {
    const FaultRecord& record = records_[i];
    const Spot spot = sources_.find(record.start, record.length);
    if (record.kind == Observer::FAULT_GROUP_LEFT_OPEN) { // they are the last ones
        tell_groups_left_open(records_.subspan(i));
        return records_.size();
    }
    if (record.kind == Observer::FAULT_GROUP_WITHOUT_ENTRY && lost_brace_ == nullptr) {
        lost_brace_ = &record;
    }
    if (is_covered(spot) || tell_conflict(spot) || tell_comment_as_text(spot) || is_consequence(record)) {
        return i + 1;
    }
    if (record.kind == Observer::FAULT_NO_VALUE) {
        return tell_names(i);
    }
    if (record.kind == Observer::FAULT_UNKNOWN_WORD) {
        tell_word(record, spot);
    } else {
        tell_place(record, spot);
    }
    return i + 1;
}

bool FaultStory::is_consequence(const FaultRecord& record) const {
    if (record.kind != Observer::FAULT_NO_VALUE && joins_.is_inside(record.start, record.length)) {
        return true;
    }
    if (last_ == nullptr || last_->epoch != record.epoch || !needs_entry(record.kind)) {
        return false;
    }
    const std::string_view word = word_of(record);
    if (!is_mark(word) || !is_mark(word_of(*last_))) {
        return true;
    }
    // Two marks side by side are a mistake of their own, but "=======" is one.
    const std::size_t end = std::size_t{last_->start} + last_->length;
    const std::string_view between = text_.substr(end, record.start - end);
    return between.empty() ? word == word_of(*last_)
                           : between.find_first_not_of(" \t\r\n") != std::string_view::npos;
}

bool FaultStory::is_covered(const Spot& spot) const noexcept {
    return spot.inclusion == cover_.inclusion && spot.offset >= cover_.begin && spot.offset < cover_.end;
}

void FaultStory::cover(const Spot& spot, std::size_t begin, std::size_t end) noexcept {
    cover_ = {spot.inclusion, begin, end};
}

/// The rest of the line, the line's end left out.
void FaultStory::cover_line(const Spot& spot) noexcept {
    cover(spot, spot.offset, std::max(sources_.file_of(spot).text.line_end(spot.offset), spot.offset + 1));
}

std::string_view FaultStory::word_of(const FaultRecord& record) const noexcept {
    return text_.substr(record.start, record.length);
}

std::string_view FaultStory::text_of(const Spot& spot) const noexcept {
    return sources_.file_of(spot).text.get_text();
}

Spot FaultStory::spot_of(std::string_view word) const {
    return sources_.find(static_cast<std::size_t>(word.data() - text_.data()), word.size());
}

void FaultStory::add(std::string_view code, std::string message, const Spot& spot) {
    problems_.add(code, std::move(message), spot);
}

} // namespace bk_parser
