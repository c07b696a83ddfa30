#include "output/json_writer.h"

#include "output/display/text_display.h"

#include <algorithm>

namespace bkdoc {

namespace {

std::string escape_of(char character) {
    switch (character) {
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        break;
    }
    const auto byte = static_cast<unsigned char>(character);
    return {'\\', 'u', '0', '0', hexadecimal_digits[byte >> 4], hexadecimal_digits[byte & 15]};
}

bool needs_escape(std::string_view character) noexcept {
    return character.size() == 1 && (static_cast<unsigned char>(character[0]) < 0x20 || character[0] == '"' ||
                                     character[0] == '\\' || character[0] == '\x7F');
}

} // namespace

std::string json_string(std::string_view text) {
    std::string json = "\"";
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = utf8_length(text, i);
        const std::string_view character = text.substr(i, std::max<std::size_t>(length, 1));
        if (length == 0) {
            json += "\xEF\xBF\xBD";
        } else if (needs_escape(character)) {
            json += escape_of(character.front());
        } else {
            json += character;
        }
        i += character.size();
    }
    return json + "\"";
}

void JsonWriter::key(std::string_view name) {
    separate();
    out_ << json_string(name) << ": ";
    has_key_ = true;
}

void JsonWriter::begin(char bracket) {
    separate();
    out_ << std::string(1, bracket);
    counts_.push_back(0);
}

void JsonWriter::end(char bracket) {
    const bool is_empty = counts_.back() == 0;
    counts_.pop_back();
    if (!is_empty) {
        out_ << "\n" << std::string(2 * counts_.size(), ' ');
    }
    out_ << std::string(1, bracket);
}

void JsonWriter::scalar(std::string_view json) {
    separate();
    out_ << json;
}

/// Before a value or a key: a comma and a new line, but behind a key.
void JsonWriter::separate() {
    if (has_key_) {
        has_key_ = false;
        return;
    }
    if (!counts_.empty()) {
        out_ << (counts_.back()++ == 0 ? "\n" : ",\n") << std::string(2 * counts_.size(), ' ');
    }
}

} // namespace bkdoc
