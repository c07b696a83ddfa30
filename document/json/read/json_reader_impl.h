#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace bk_parser {

/// Parses JSON (RFC 8259) event by event. Each level of nesting costs one byte of heap.
class JsonReader {
public:
    enum class Event { key, string, number, yes, no, null, object, object_end, array, array_end, end, fault };
    /// How many values the text may hold.
    enum class Count {
        one,
        lines, ///< any number, one on each line
        any    ///< one, or one on each line
    };

    JsonReader(std::string_view text, Count count);

    /// Returns the next event. After `end` and `fault` there are no more.
    Event next() {
        const Event event = read();
        end_ = event == Event::key ? end_ : at_;
        return event;
    }

    /// The characters of a key or string, the word of a number, or the message of a fault. Valid until the next event.
    std::string_view text() const noexcept { return text_; }
    /// Whether these characters are in the source, and so valid as long as the source.
    bool is_text_of_source() const noexcept { return is_of_source_; }
    /// The place of the last event.
    std::size_t offset() const noexcept { return begin_; }
    std::size_t length() const noexcept { return end_ - begin_; }

private:
    enum class Wanted { value, value_or_end, key, key_or_end, comma_or_end, nothing };

    Event read();
    Event fail(std::string_view message, std::size_t offset, std::size_t length);
    Event fail_here(std::string_view message);
    bool skip_blanks();
    Event read_after_value();
    Event read_key_or_end();
    Event read_value();
    Event begin(char bracket);
    Event end(char bracket);
    Event finish_value(Event event) noexcept;
    Event read_number();
    Event read_word();
    bool read_string();
    bool read_escape();
    bool read_code_unit(unsigned int& unit);
    void append_character(unsigned int code);
    char peek() const noexcept { return at_ < source_.size() ? source_[at_] : '\0'; }
    bool is_at_end() const noexcept { return at_ == source_.size(); }

    std::string_view source_;
    Count count_;
    std::size_t at_ = 0;
    std::size_t begin_ = 0; // of the last event
    std::size_t end_ = 0;
    Wanted wanted_ = Wanted::value;
    std::string open_; // open brackets
    bool has_value_ = false;
    bool has_failed_ = false;
    bool is_of_source_ = true;
    std::string_view text_;
    std::string decoded_;
    std::string message_;
};

} // namespace bk_parser
