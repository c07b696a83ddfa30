#include "output/json_writer.h"

#include "document/json.h"

namespace bkdoc {

std::string json_string(std::string_view text) {
    std::string json;
    bk_parser::append_json_string(json, text);
    return json;
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

/// Writes the comma and line end before a value or a key. A value directly after its key has none.
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
