#include "document/problems/faults/fault_story_impl.h"

#include "document/problems/list/problem_codes_impl.h"
#include "document/problems/list/shown_word_impl.h"

#include <algorithm>
#include <utility>

namespace bk_parser {

namespace {

using Observer = ParserReadObserver;

/// Whether the fault only says that no entry is there for the word, or that the word before it was no value.
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

bool is_misspelled(unsigned int kind) noexcept {
    return kind == FaultRecord::misspelled_include || kind == FaultRecord::misspelled_version;
}

bool is_mark(std::string_view word) noexcept {
    return word == "," || word == "=";
}

} // namespace

FaultStory::FaultStory(const FaultRecorder& faults, const SourceMap& sources, const Joins& joins,
                       const ParserLimits& limits, Losses& losses, ProblemList& problems)
    : records_(faults.get_records()), text_(faults.get_text()), sources_(sources), joins_(joins),
      limits_(limits), losses_(losses), problems_(problems), lines_(sources),
      has_open_quote_(sources.get_files().size()) {}

void FaultStory::explain(bk::Pace& pace) {
    for (std::size_t i = 0; i < records_.size();) {
        const std::size_t next = tell_from(i);
        last_ = &records_[next - 1];
        i = next;
        pace.reach(i);
    }
    tell_more();
}

void FaultStory::tell() {
    for (const Misspelled& directive : misspelled_) {
        tell_misspelled(directive);
    }
}

/// Reports one mistake, and returns the first fault after those that it caused.
std::size_t FaultStory::tell_from(std::size_t i) {
    const FaultRecord& record = records_[i];
    const Spot spot = sources_.find(record.start, record.length);
    if (record.kind == Observer::FAULT_GROUP_LEFT_OPEN) { // only such faults follow
        tell_groups_left_open(records_.subspan(i));
        return records_.size();
    }
    if (record.kind == Observer::FAULT_GROUP_WITHOUT_ENTRY && lost_brace_ == nullptr) {
        lost_brace_ = &record;
    }
    if (is_explained(record, spot)) {
        return i + 1;
    }
    if (record.kind == Observer::FAULT_NO_VALUE) {
        return tell_names(i);
    }
    last_reason_.reset();
    if (record.kind == Observer::FAULT_UNKNOWN_WORD) {
        tell_word(record, spot);
    } else {
        tell_place(record, spot);
    }
    return i + 1;
}

/// Whether an earlier problem, or one that is reported here for the line, explains the fault.
bool FaultStory::is_explained(const FaultRecord& record, const Spot& spot) {
    const bool ends_text = record.kind == Observer::FAULT_TEXT_AFTER_END; // more than a line is lost
    if (is_covered(spot) && !(ends_text && cover_.reason)) {
        last_reason_ = cover_.reason;
    } else if (tell_conflict(spot) || tell_comment_as_text(spot)) {
        last_reason_.reset();
    } else if (is_joined(record)) {
        last_reason_ = *joins_.find_inside(record.start, record.length);
    } else if (!is_consequence(record)) {
        return false;
    } else if (!is_mark(word_of(record))) {
        skip_too(word_of(record));
    }
    lose(record, last_reason_);
    return true;
}

/// A problem that explains a fault is an error, whatever its code is: something was left out of the tree.
void FaultStory::lose(const FaultRecord& record, const Reason& reason) {
    if (is_misspelled(record.kind)) {
        return;
    }
    joins_.lose(record.start, record.length, losses_);
    if (reason) {
        losses_.add(*reason);
    }
}

/// Whether it was joined from several words. A name in place of a value may also be a mistake of its own.
bool FaultStory::is_joined(const FaultRecord& record) const noexcept {
    return record.kind != Observer::FAULT_NO_VALUE && joins_.is_inside(record.start, record.length);
}

bool FaultStory::is_consequence(const FaultRecord& record) const {
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

void FaultStory::cover(const Spot& spot, std::size_t begin, std::size_t end, const Reason& reason) noexcept {
    cover_ = {spot.inclusion, begin, end, reason};
}

/// The rest of the line, without its line end.
void FaultStory::cover_line(const Spot& spot, const Reason& reason) {
    cover(spot, spot.offset, std::max(sources_.file_of(spot).text.line_end(spot.offset), spot.offset + 1),
          reason);
}

std::string_view FaultStory::word_of(const FaultRecord& record) const noexcept {
    return text_.substr(record.start, record.length);
}

std::string_view FaultStory::text_of(const Spot& spot) const {
    return sources_.file_of(spot).text.get_text();
}

Spot FaultStory::spot_of(std::string_view word) const {
    return sources_.find(static_cast<std::size_t>(word.data() - text_.data()), word.size());
}

} // namespace bk_parser
