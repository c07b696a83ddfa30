#pragma once

#include "document/json.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace bk_parser {

/// Collects JSON and hands it to a sink in pieces. The only place that escapes strings.
class JsonOutput {
public:
    explicit JsonOutput(const JsonSink& sink) : sink_(sink) {}

    void put(char character) { buffer_ += character; }
    void put(std::string_view json) { buffer_ += json; }
    /// Indentation stops growing at 100 levels. Otherwise the text of deep groups would grow with the square of the depth.
    void break_line(std::size_t level, std::size_t indent) {
        constexpr std::size_t indented_levels = 100;
        buffer_.push_back('\n');
        buffer_.append(std::min(level, indented_levels) * indent, ' ');
    }
    /// Writes a quoted string. Bytes that are not UTF-8 become U+FFFD.
    void put_string(std::string_view text);
    /// Writes a quoted string that begins with plain characters. A backslash becomes "\\" and each byte that is not UTF-8
    /// becomes "\xE9", as characters of the string.
    void put_byte_escaped(std::string_view begin, std::string_view text);
    /// Writes the text between quotes.
    void put_base64(std::string_view bytes);

    /// Hands the text over when there is enough for a piece. Returns false when the sink wants no more.
    bool offer() { return buffer_.size() < piece_size ? is_wanted_ : flush(); }
    bool flush();

private:
    static constexpr std::size_t piece_size = std::size_t{1} << 16;

    template <class Append>
    void put_in_pieces(std::string_view text, Append append);

    const JsonSink& sink_;
    std::string buffer_;
    bool is_wanted_ = true;
};

} // namespace bk_parser
