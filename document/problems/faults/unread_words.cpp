#include "document/problems/faults/unread_words_impl.h"

#include "document/load/failure_text_impl.h"
#include "document/problems/list/shown_word_impl.h"

#include <set>
#include <utility>

namespace bk_parser {

namespace {

/// Whether the fault means that a word was not read. For every other fault, the problem itself says what was not read, or everything was read.
bool leaves_out_a_word(unsigned int kind) noexcept {
    switch (kind) {
    case ParserReadObserver::FAULT_TEXT_AFTER_END:
    case ParserReadObserver::FAULT_GROUP_LEFT_OPEN:
    case ParserReadObserver::FAULT_INCLUDE_LEFT_OPEN:
    case ParserReadObserver::FAULT_NESTED_TOO_DEEPLY:
    case FaultRecord::misspelled_include:
    case FaultRecord::misspelled_version:
        return false;
    default:
        return true;
    }
}

} // namespace

std::string unread_word(std::string_view word, const std::string& place) {
    return "the word " + shown(word) + " at " + place + " was not read";
}

std::string more_unread_words(std::size_t count) {
    return grouped_number(count) + (count == 1 ? " more word was" : " more words were") + " not read";
}

std::vector<std::string> unread_words(const FaultRecorder& faults, const SourceMap& sources) {
    std::vector<std::string> words;
    std::set<std::pair<std::size_t, std::size_t>> seen; // a file may be included more than once
    std::size_t others = 0;
    for (const FaultRecord& record : faults.get_records()) {
        if (!leaves_out_a_word(record.kind)) {
            continue;
        }
        if (words.size() == most_unread_words) {
            ++others;
            continue;
        }
        const Spot spot = sources.find(record.start, record.length);
        if (!seen.emplace(sources.file_of_inclusion(spot.inclusion), spot.offset).second) {
            continue;
        }
        const SourceFile& file = sources.file_of(spot);
        const std::string_view word = faults.get_text().substr(record.start, record.length);
        words.push_back(
            unread_word(word, file.name.shown + ":" + std::to_string(file.text.place_of(spot.offset).line)));
    }
    if (others != 0) {
        words.push_back(more_unread_words(others));
    }
    return words;
}

} // namespace bk_parser
