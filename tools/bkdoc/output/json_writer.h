#pragma once

#include "output/output.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace bkdoc {

/// A quoted JSON string. Bytes that are not UTF-8 become U+FFFD.
std::string json_string(std::string_view text);

/// Writes one JSON value with an indentation of two blanks per level. Empty objects and arrays take one line.
class JsonWriter {
public:
    explicit JsonWriter(Output& out) : out_(out) {}

    void begin_object() { begin('{'); }
    void end_object() { end('}'); }
    void begin_array() { begin('['); }
    void end_array() { end(']'); }
    /// Writes the key of the next value.
    void key(std::string_view name);
    void string(std::string_view text) { scalar(json_string(text)); }
    void number(unsigned long long value) { scalar(std::to_string(value)); }
    void boolean(bool value) { scalar(value ? "true" : "false"); }
    void null() { scalar("null"); }
    /// Writes a value that is JSON already.
    void raw(std::string_view json) { scalar(json); }

    template <class Value>
    void member(std::string_view name, const Value& value) {
        key(name);
        if constexpr (std::is_same_v<Value, bool>) {
            boolean(value);
        } else if constexpr (std::is_integral_v<Value>) {
            number(static_cast<unsigned long long>(value));
        } else {
            string(value);
        }
    }
    /// Ends the line after the outermost value.
    void finish() { out_ << "\n"; }

private:
    void begin(char bracket);
    void end(char bracket);
    void scalar(std::string_view json);
    void separate();

    Output& out_;
    std::vector<std::size_t> counts_; // number of values in each open level
    bool has_key_ = false;
};

} // namespace bkdoc
