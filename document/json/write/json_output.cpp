#include "document/json/write/json_output_impl.h"

#include "core/text/core_hexadecimal_impl.h"
#include "core/text/core_utf8_impl.h"
#include "document/json/json_words_impl.h"

#include <algorithm>

namespace bk_parser {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

void append_hexadecimal(std::string& out, char byte) {
    char digits[2];
    bk::put_hexadecimal(digits, static_cast<unsigned char>(byte));
    out.append(digits, sizeof(digits));
}

void append_escape(std::string& out, char character) {
    switch (character) {
    case '"':
        out += "\\\"";
        break;
    case '\\':
        out += "\\\\";
        break;
    case '\n':
        out += "\\n";
        break;
    case '\r':
        out += "\\r";
        break;
    case '\t':
        out += "\\t";
        break;
    default:
        out += "\\u00";
        append_hexadecimal(out, character);
        break;
    }
}

bool needs_escape(char character) noexcept {
    return static_cast<unsigned char>(character) < 0x20 || character == '"' || character == '\\' ||
           character == '\x7F';
}

/// Appends the inside of a string. `append_bad` gets each byte that is not UTF-8, `append_special` each character that needs an
/// escape.
template <class AppendSpecial, class AppendBad>
void append_inside(std::string& out, std::string_view text, AppendSpecial append_special,
                   AppendBad append_bad) {
    std::size_t plain = 0; // beginning of the part not appended yet
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = bk::utf8_length(text, i);
        const bool is_plain = length > 1 || (length == 1 && !needs_escape(text[i]));
        if (!is_plain) {
            out.append(text, plain, i - plain);
            length == 0 ? append_bad(out, text[i]) : append_special(out, text[i]);
            plain = i + 1;
        }
        i += std::max<std::size_t>(length, 1);
    }
    out.append(text, plain);
}

void append_replacing(std::string& out, std::string_view text) {
    append_inside(out, text, append_escape, [](std::string& to, char) { to += replacement; });
}

void append_byte_escaped(std::string& out, std::string_view text) {
    const auto special = [](std::string& to, char character) {
        if (character == '\\') {
            to += "\\\\\\\\"; // two escaped backslashes
        } else {
            append_escape(to, character);
        }
    };
    append_inside(out, text, special, [](std::string& to, char byte) {
        to += "\\\\x";
        append_hexadecimal(to, byte);
    });
}

/// The last place at which the text can be cut without splitting a character.
std::size_t piece_end(std::string_view text, std::size_t most) noexcept {
    if (text.size() <= most) {
        return text.size();
    }
    std::size_t end = most;
    while (end > most - 4 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) {
        --end;
    }
    return end;
}

} // namespace

template <class Append>
void JsonOutput::put_in_pieces(std::string_view text, Append append) {
    while (!text.empty() && offer()) {
        const std::size_t end = piece_end(text, piece_size);
        append(buffer_, text.substr(0, end));
        text.remove_prefix(end);
    }
}

void JsonOutput::put_string(std::string_view text) {
    put('"');
    put_in_pieces(text, append_replacing);
    put('"');
}

void JsonOutput::put_byte_escaped(std::string_view begin, std::string_view text) {
    put('"');
    put(begin);
    put_in_pieces(text, append_byte_escaped);
    put('"');
}

void JsonOutput::put_base64(std::string_view bytes) {
    constexpr std::size_t step = piece_size / 4 * 3;
    put('"');
    while (!bytes.empty() && offer()) {
        append_base64(buffer_, bytes.substr(0, step));
        bytes.remove_prefix(std::min(step, bytes.size()));
    }
    put('"');
}

bool JsonOutput::flush() {
    if (is_wanted_ && !buffer_.empty()) {
        is_wanted_ = sink_(buffer_);
    }
    buffer_.clear();
    return is_wanted_;
}

void append_json_string(std::string& out, std::string_view text) {
    out += '"';
    append_replacing(out, text);
    out += '"';
}

} // namespace bk_parser
