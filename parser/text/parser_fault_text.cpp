#include "parser/text/parser_fault_text_impl.h"

#include <iterator>

namespace bk {

namespace {

struct FaultText {
    const char* before;
    const char* after;
    bool shows_word;
    bool is_logged;
};

/// In the order of ParserReadObserver::Fault.
constexpr FaultText texts[] = {
    {"Entry '", "' wrongly placed.", true, true},
    {"Entry '", "' has no value.", true, true},
    {"Entry '", "' has template inside template declaration.", true, true},
    {"Value without entry: ", "", true, true},
    {"Group without entry", "", false, true},
    {"Argument list without entry", "", false, true},
    {"Cannot mix argument list with entry values", "", false, true},
    {"Argument list inside an argument list", "", false, true},
    {"Function call on keyword", "", false, true},
    {"Closing an argument list without entry", "", false, true},
    {"Closing an argument list in a non function call", "", false, true},
    {"Unknown word type: '", "'", true, true},
    {"'", "' is not a valid entry name", true, true},
    {"Closing brace without a group: the text after it is not read", "", false, false},
    {"Group is not closed", "", false, false},
    {"Include directive without a closing quote", "", false, false},
    {"Group is nested too deeply: the text from here on is not read", "", false, true},
};
static_assert(std::size(texts) == ParserReadObserver::FAULT_NESTED_TOO_DEEPLY + 1);

} // namespace

bool is_logged_fault(ParserReadObserver::Fault fault) noexcept {
    return texts[fault].is_logged;
}

CoreString fault_text(ParserReadObserver::Fault fault, const CoreString& word) {
    const FaultText& text = texts[fault];
    CoreString composed(text.before);
    if (text.shows_word) {
        composed += word;
    }
    composed += text.after;
    return composed;
}

} // namespace bk
