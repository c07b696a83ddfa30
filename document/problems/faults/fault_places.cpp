#include "document/problems/faults/fault_story_impl.h"
#include "document/problems/list/problem_codes_impl.h"
#include "document/problems/list/shown_word_impl.h"

#include <algorithm>

/// Words in wrong places, and groups that do not end where they should.
namespace bk_parser {

namespace {

constexpr std::size_t most_lines = 5; // that a message lists

struct PlaceText {
    unsigned int kind;
    std::string_view code;
    std::string_view message; // after the word
};

using Observer = ParserReadObserver;

constexpr PlaceText place_texts[] = {
    {Observer::FAULT_TEMPLATE_INSIDE_TEMPLATE, codes::bad_template,
     " is not a name: a template cannot have a template"},
    {Observer::FAULT_VALUE_WITHOUT_ENTRY, codes::value_without_entry, " belongs to no entry, and is skipped"},
    {Observer::FAULT_GROUP_WITHOUT_ENTRY, codes::group_without_entry,
     " has no name before it: what it holds goes to the group around it"},
    {Observer::FAULT_ARGUMENTS_WITHOUT_ENTRY, codes::bad_arguments, " has no name before it"},
    {Observer::FAULT_ARGUMENTS_AFTER_VALUES, codes::bad_arguments,
     " follows a value: an argument list must follow the name directly, and nothing may follow it"},
    {Observer::FAULT_ARGUMENTS_INSIDE_ARGUMENTS, codes::bad_arguments,
     " is inside an argument list, which cannot hold another"},
    {Observer::FAULT_ARGUMENTS_ON_KEYWORD, codes::bad_arguments,
     " follows a keyword, which takes no arguments"},
    {Observer::FAULT_CLOSING_WITHOUT_ENTRY, codes::bad_arguments, " closes no argument list"},
    {Observer::FAULT_CLOSING_NO_ARGUMENTS, codes::bad_arguments, " closes no argument list"},
    {Observer::FAULT_INVALID_NAME, codes::bad_name, " is not a name: yes and no are values"},
};

} // namespace

void FaultStory::tell_place(const FaultRecord& record, const Spot& spot) {
    const std::string_view word = word_of(record);
    switch (record.kind) {
    case Observer::FAULT_WRONGLY_PLACED:
        add(codes::wrongly_placed,
            word == "="
                ? "unexpected '=': it may only stand between a name and its first value; everything up to "
                  "the next name is skipped"
                : "unexpected ',': it may only stand between two values; everything up to the next name is "
                  "skipped",
            spot);
        more_ = {}; // the message says it
        return;
    case Observer::FAULT_TEXT_AFTER_END:
        tell_text_after_end(record, spot);
        return;
    case Observer::FAULT_NESTED_TOO_DEEPLY:
        add(
            codes::nested_too_deeply,
            [&] {
                return "groups nest deeper than " + std::to_string(limits_.nesting_depth) +
                       ": ParserLimits::nesting_depth; the text from here on is not read";
            },
            spot);
        return;
    case FaultRecord::misspelled_include:
    case FaultRecord::misspelled_version:
        misspelled_.push_back({&record, spot});
        last_reason_ = spot;
        cover_line(spot, spot);
        return;
    default:
        break;
    }
    const auto* const text =
        std::find_if(std::begin(place_texts), std::end(place_texts),
                     [&record](const PlaceText& row) { return row.kind == record.kind; });
    if (text == std::end(place_texts)) {
        return;
    }
    add(
        text->code, [&] { return shown(word) + std::string(text->message); }, spot);
}

void FaultStory::tell_misspelled(const Misspelled& directive) {
    const bool is_include = directive.record->kind == FaultRecord::misspelled_include;
    const std::string_view code = is_include ? codes::include_misspelled : codes::version_misspelled;
    const auto compose = [&] {
        return shown(word_of(*directive.record)) +
               (is_include
                    ? " is read as a keyword and includes nothing: write #include \"name\", with one blank"
                    : " is read as a keyword and states no version: write #Brellwick_Serial_Version 1.2, "
                      "with one blank");
    };
    problems_.add(losses_.severity(code, directive.spot), code, compose, directive.spot);
}

/// A missing brace leaves one group open. A text that is cut off leaves all of them open.
void FaultStory::tell_groups_left_open(Records records) {
    const FaultRecord& outermost = records.front();
    const Spot spot = sources_.find(outermost.start, outermost.length);
    if (records.size() == 1) {
        add(codes::group_left_open, "this group is not closed: the document ends inside it", spot);
        return;
    }
    std::string lines;
    for (std::size_t i = 0; i < std::min(records.size(), most_lines); ++i) {
        const Spot place = sources_.find(records[i].start, records[i].length);
        lines +=
            (i == 0 ? "" : ", ") + std::to_string(sources_.file_of(place).text.place_of(place.offset).line);
    }
    add(
        codes::group_left_open,
        [&] {
            return "this group is not closed: the document ends inside " + std::to_string(records.size()) +
                   " groups, which begin at lines " + lines + (records.size() > most_lines ? ", ..." : "");
        },
        spot);
}

void FaultStory::tell_text_after_end(const FaultRecord& record, const Spot& spot) {
    const bool is_last = text_.find_first_not_of(" \t\r\n", record.start + 1) == std::string_view::npos;
    std::string message =
        is_last ? "'}' closes nothing" : "'}' closes nothing, and the text after it is not read";
    if (lost_brace_ != nullptr) {
        const Spot brace = sources_.find(lost_brace_->start, lost_brace_->length);
        message += ": the '{' of line " +
                   std::to_string(sources_.file_of(brace).text.place_of(brace.offset).line) +
                   " opened no group";
    }
    problems_.add(Severity::error, codes::text_after_end, std::move(message), spot);
}

} // namespace bk_parser
