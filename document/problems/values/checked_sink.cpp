#include "document/problems/values/checked_sink_impl.h"

#include "document/problems/list/problem_codes_impl.h"
#include "document/problems/list/shown_word_impl.h"
#include "parser/files/parser_document_impl.h"
#include "parser/words/parser_characters_impl.h"

#include <algorithm>
#include <utility>

namespace bk_parser {

namespace {

constexpr std::string_view include_keyword = "#include";

char lowered(char character) noexcept {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A')) : character;
}

bool are_equal_but_for_case(std::string_view a, std::string_view b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowered(x) == lowered(y); });
}

/// The first character that can decide where an argument list ends, or the end.
const char* find_argument_stop(const char* p, const char* end) noexcept {
    return std::find_if(p, end, [](char character) {
        return character == '(' || character == ')' || character == '{' || character == '}' ||
               bk::is_char(character, bk::CHAR_LINE_BREAK | bk::CHAR_QUOTE);
    });
}

} // namespace

void CheckedSink::check_suffix(const bk::EntryHead& head) {
    if (!head_.ends_with("[]")) {
        problems_.add(
            codes::array_count,
            [&] {
                return shown(head_) + " declares " + counted(head.array_count, "value") +
                       ": what follows the number is ignored";
            },
            spot_of(head_));
    }
}

/// A misspelt directive is read as a keyword.
void CheckedSink::check_keyword(const bk::EntryHead& head, const bk::Token& token) {
    if (are_equal_but_for_case(head.name, include_keyword)) {
        faults_.add(FaultRecord::misspelled_include, token.start, token.length);
    } else if (are_equal_but_for_case(head.name, bk::version_keyword)) {
        const bool is_directive =
            text_.substr(token.start).starts_with(bk::version_directive); // of an enciphered file
        if (!is_directive) {
            faults_.add(FaultRecord::misspelled_version, token.start, token.length);
        }
    }
}

/// Called when the watched entry has ended.
void CheckedSink::tell_watched() {
    is_watched_ = false;
    if (std::exchange(is_call_open_, false)) {
        check_call();
    }
    const unsigned int declared = std::exchange(array_count_, bk::no_array);
    if (declared != bk::no_array && declared != value_count_ && !faults_.has_any_in_epoch()) {
        problems_.add(
            codes::array_count, [&] { return shown(head_) + " has " + counted(value_count_, "value"); },
            spot_of(head_));
    }
}

/// Looks for the parenthesis that closes the list of the entry begun last, which the grammar did not find: a name before it begins
/// another entry. A list that runs into another one, or into a brace, has none.
void CheckedSink::check_call() const {
    const std::string_view name = faults_.get_head();
    const char* p = find_argument_stop(name.data() + name.size(), end_);
    bool is_opened = false;
    bool in_string = false;
    for (; p != end_; p = find_argument_stop(p + 1, end_)) {
        if (in_string || *p == '"') {
            const bool is_end = *p == '\n' || *p == '\r' || (*p == '"' && p[-1] != '\\');
            in_string = in_string ? !is_end : p[-1] != '\\';
        } else if (*p == ')') {
            return;
        } else if (*p == '{' || *p == '}' || (*p == '(' && std::exchange(is_opened, true))) {
            break;
        }
    }
    problems_.add(
        codes::arguments_left_open, [&] { return "the argument list of " + shown(name) + " is not closed"; },
        spot_of(name));
}

void CheckedSink::check_number(std::string_view word, bool is_int) {
    tell(word, find_number_flaw(word, is_int));
}

void CheckedSink::check_string(std::string_view word) {
    for (std::size_t from = 1;;) {
        const ValueFlaw flaw = find_string_flaw(word, has_escapes_, from);
        if (flaw.code.empty()) {
            return;
        }
        if (flaw.code == codes::escape_without_version) {
            if (escape_count_++ == 0) {
                first_escape_ = word.substr(flaw.offset, flaw.length);
            }
            return;
        }
        const bool is_last = flaw.code != codes::unknown_escape; // the other flaws occur once a string
        from = flaw.offset + flaw.length;
        tell(word, flaw);
        if (is_last) {
            return;
        }
    }
}

/// Reports one problem, however many strings have escapes.
void CheckedSink::tell_escapes() {
    if (escape_count_ != 0) {
        const std::string others =
            escape_count_ == 1 ? "" : ", here and in " + counted(escape_count_ - 1, "other string");
        problems_.add(codes::escape_without_version,
                      "before version 1.1 a backslash stands for itself" + others +
                          ": begin the document with #Brellwick_Serial_Version 1.2",
                      spot_of(first_escape_));
    }
}

void CheckedSink::tell(std::string_view word, const ValueFlaw& flaw) {
    if (flaw.code.empty() ||
        joins_.is_inside(static_cast<std::size_t>(word.data() - text_.data()), word.size())) {
        return;
    }
    const Spot spot = spot_of(word.substr(flaw.offset, flaw.length));
    if (lines_.state_at(spot) != LineReader::State::comment) { // in one, an open quote is what is wrong
        problems_.add(
            flaw.code, [&] { return flaw.text(word, flaw); }, spot);
    }
}

} // namespace bk_parser
