#include "document/json/read/json_reader_impl.h"

#include "document/json/json_words_impl.h"
#include "document/problems/list/shown_word_impl.h"

namespace bk_parser {

namespace {

constexpr std::string_view line_ends_early = "the line ends inside its value: each value must be on one line";
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

bool is_word_character(char character) noexcept {
    const char small = static_cast<char>(character | 0x20);
    return (small >= 'a' && small <= 'z') || (character >= '0' && character <= '9') || character == '_' ||
           character == '.' || character == '+' || character == '-';
}

std::string_view word_at(std::string_view text, std::size_t at) noexcept {
    std::size_t end = at;
    while (end < text.size() && is_word_character(text[end])) {
        ++end;
    }
    return text.substr(at, end - at);
}

} // namespace

JsonReader::JsonReader(std::string_view text, Count count) : source_(text), count_(count) {
    if (source_.starts_with(byte_order_mark)) {
        at_ = byte_order_mark.size();
    }
    if (count_ == Count::lines) {
        wanted_ = Wanted::nothing;
    }
}

JsonReader::Event JsonReader::read() {
    if (has_failed_) {
        return Event::fault;
    }
    const bool has_line_break = skip_blanks();
    begin_ = at_;
    if (has_line_break && count_ == Count::lines && !open_.empty()) {
        return fail_here(line_ends_early);
    }
    switch (wanted_) {
    case Wanted::nothing:
        if (is_at_end()) {
            return Event::end;
        }
        if (has_value_ && (count_ == Count::one || !has_line_break)) {
            return fail_here("there is more after the end of the value");
        }
        return read_value();
    case Wanted::key:
    case Wanted::key_or_end:
        return read_key_or_end();
    case Wanted::comma_or_end:
        return read_after_value();
    case Wanted::value:
    case Wanted::value_or_end:
        break;
    }
    return read_value();
}

JsonReader::Event JsonReader::fail(std::string_view message, std::size_t offset, std::size_t length) {
    has_failed_ = true;
    message_ = message;
    text_ = message_;
    begin_ = offset;
    at_ = offset + length;
    return Event::fault;
}

/// Reports an error at this character, or at the end.
JsonReader::Event JsonReader::fail_here(std::string_view message) {
    if (is_at_end() && !open_.empty()) {
        return fail(open_.back() == '{' ? "the text ends inside an object" : "the text ends inside an array",
                    at_, 0);
    }
    return fail(message, at_, is_at_end() ? 0 : 1);
}

/// Skips blanks, and returns whether there was a line end among them.
bool JsonReader::skip_blanks() {
    bool has_line_break = false;
    for (; at_ < source_.size(); ++at_) {
        const char character = source_[at_];
        if (character == '\n') {
            has_line_break = true;
        } else if (character != ' ' && character != '\t' && character != '\r') {
            break;
        }
    }
    return has_line_break;
}

JsonReader::Event JsonReader::read_after_value() {
    const char bracket = open_.back();
    if (peek() == ',') {
        ++at_;
        wanted_ = bracket == '{' ? Wanted::key : Wanted::value;
        return read();
    }
    if (peek() == (bracket == '{' ? '}' : ']')) {
        return end(peek());
    }
    return fail_here(bracket == '{' ? "',' or '}' is missing" : "',' or ']' is missing");
}

JsonReader::Event JsonReader::read_key_or_end() {
    if (peek() == '}' && wanted_ == Wanted::key_or_end) {
        return end('}');
    }
    if (peek() != '"') {
        return fail_here("a name in double quotes is missing");
    }
    if (!read_string()) {
        return Event::fault;
    }
    const std::size_t begin = begin_;
    end_ = at_;
    if (skip_blanks() && count_ == Count::lines) {
        return fail_here(line_ends_early);
    }
    if (peek() != ':') {
        return fail_here("':' is missing after the name");
    }
    ++at_;
    begin_ = begin;
    wanted_ = Wanted::value;
    return Event::key;
}

JsonReader::Event JsonReader::read_value() {
    const char first = peek();
    if (first == '{' || first == '[') {
        return begin(first);
    }
    if (first == ']' && wanted_ == Wanted::value_or_end) {
        return end(']');
    }
    if (first == '"') {
        return read_string() ? finish_value(Event::string) : Event::fault;
    }
    if (first == '-' || (first >= '0' && first <= '9')) {
        return read_number();
    }
    return is_word_character(first) ? read_word() : fail_here("a value is missing");
}

JsonReader::Event JsonReader::begin(char bracket) {
    ++at_;
    open_ += bracket;
    wanted_ = bracket == '{' ? Wanted::key_or_end : Wanted::value_or_end;
    return bracket == '{' ? Event::object : Event::array;
}

JsonReader::Event JsonReader::end(char bracket) {
    ++at_;
    open_.pop_back();
    return finish_value(bracket == '}' ? Event::object_end : Event::array_end);
}

JsonReader::Event JsonReader::finish_value(Event event) noexcept {
    has_value_ = true;
    wanted_ = open_.empty() ? Wanted::nothing : Wanted::comma_or_end;
    return event;
}

JsonReader::Event JsonReader::read_number() {
    const std::string_view word = word_at(source_, at_);
    const std::size_t length = json_number_length(word);
    if (length != word.size()) {
        return fail(shown(word) + " is not a JSON number", at_, word.size());
    }
    at_ += length;
    text_ = word;
    is_of_source_ = true;
    return finish_value(Event::number);
}

JsonReader::Event JsonReader::read_word() {
    const std::string_view word = word_at(source_, at_);
    const Event event = word == "true"    ? Event::yes
                        : word == "false" ? Event::no
                        : word == "null"  ? Event::null
                                          : Event::fault;
    if (event == Event::fault) {
        return fail(shown(word) + " is not a JSON word", at_, word.size());
    }
    at_ += word.size();
    return finish_value(event);
}

} // namespace bk_parser
