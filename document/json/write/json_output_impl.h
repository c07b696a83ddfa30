#pragma once

#include "document/json.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace bk_parser {

/// Collects JSON in pieces for a sink. Strings are escaped here alone.
class JsonOutput {
public:
    explicit JsonOutput(const JsonSink& sink) : sink_(sink) {}

    void put(char character) { buffer_ += character; }
    void put(std::string_view json) { buffer_ += json; }
    /// Indentation stops growing at a hundred levels: otherwise the text of deep groups would grow with the square of the depth.
    void break_line(std::size_t level, std::size_t indent) {
        constexpr std::size_t indented_levels = 100;
        buffer_.push_back('\n');
        buffer_.append(std::min(level, indented_levels) * indent, ' ');
    }
    /// A string in quotes; bytes that are no UTF-8 become U+FFFD.
    void put_string(std::string_view text);
    /// A string in quotes, behind a beginning of plain characters: a backslash is spelled "\\" and each byte that is no UTF-8
    /// "\xE9", as characters of the string.
    void put_byte_escaped(std::string_view begin, std::string_view text);
    /// In quotes.
    void put_base64(std::string_view bytes);

    /// Hands over what is there when that is enough for a piece. False when no more is wanted.
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
