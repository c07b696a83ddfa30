#include "output/fault_notes.h"

namespace bkdoc {

namespace {

// The byte that ends a word is read with it: a name that only such a byte follows has nothing behind it
// either.
bool ends_the_document(const DocumentFault& fault, const SourceMap& sources) {
    return fault.expanded + fault.spot.length + 1 >= sources.get_expanded_size();
}

bool is_open_string(std::string_view word) {
    return word.starts_with('"') && (word.size() == 1 || !word.ends_with('"'));
}

std::string_view word_of(const DocumentFault& fault, const SourceMap& sources) {
    return sources.file_of(fault.spot).text.get_text().substr(fault.spot.offset, fault.spot.length);
}

std::string_view note_for_word(std::string_view word) {
    if (is_open_string(word)) {
        return word.find("\\\"") != std::string_view::npos
                   ? "a string ends with its line; a quote behind a backslash does not close it"
                   : "a string ends with its line; its closing quote is missing";
    }
    if (word.starts_with("\xEF\xBB\xBF")) {
        return "an invisible byte order mark stands before this word; the file is to be stored without it";
    }
    return {};
}

} // namespace

std::string_view note_for(const DocumentFault& fault, const SourceMap& sources) {
    switch (fault.kind) {
    case ParserReadObserver::FAULT_NO_VALUE:
        return ends_the_document(fault, sources)
                   ? "the document ends behind this name"
                   : "it is the entry before this one that has no value; this name is left out";
    case ParserReadObserver::FAULT_UNKNOWN_WORD:
        return note_for_word(word_of(fault, sources));
    default:
        return {};
    }
}

} // namespace bkdoc
