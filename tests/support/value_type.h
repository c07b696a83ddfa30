#pragma once

#include "parser/parser_value.h"
#include "tests/support/recording_log.h"

#include <string>

/// The name of a value's type. Takes it from the message that a read as a wrong type logs.
inline std::string type_name(const ParserValue& value) {
    const std::string end = "' \n";
    const std::string read_as_string = "ParserValue.get_as_string: type mismatch, value type is '";
    const std::string read_as_bool = "ParserValue.get_as_bool: type mismatch, value type is '";
    RecordingLog log;
    value.get_as_string();
    if (log.is_empty()) {
        value.get_as_bool(); // logs the type of a string
    }
    const std::string text = log.messages.empty() ? std::string() : log.messages.front().text;
    for (const std::string& start : {read_as_string, read_as_bool}) {
        if (text.size() > start.size() + end.size() && text.compare(0, start.size(), start) == 0) {
            return text.substr(start.size(), text.size() - start.size() - end.size());
        }
    }
    return "unreadable: " + text;
}
