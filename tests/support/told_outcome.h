#pragma once

#include "document/document.h"

#include <string>
#include <string_view>

/// The tree and the problems of a text, in the format of docs/language.md: one line for each entry with its types and values, then one line
/// for each problem.

namespace told_outcome_detail {

inline std::string hexadecimal(const ParserEntry& entry, unsigned int i) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto* bytes = static_cast<const unsigned char*>(entry.get_binary_data(i));
    std::string text;
    for (unsigned int at = 0; at < entry.get_binary_data_size(i); ++at) {
        text += digits[bytes[at] >> 4];
        text += digits[bytes[at] & 15];
    }
    return text.empty() ? "no bytes" : "bytes " + text;
}

inline std::string string_text(std::string_view string) {
    std::string text = "string ‹";
    for (const char character : string) {
        text += character == '\n' ? std::string("⏎") : std::string(1, character);
    }
    return text + "›";
}

inline std::string double_text(double value) {
    CoreString text;
    ParserValue(value).get_text(text, false, 0);
    return "double " + std::string(text.get_view());
}

inline std::string value_text(const ParserEntry& entry, unsigned int i) {
    switch (entry.get_value_type(i)) {
    case ParserValue::TYPE_BOOL:
        return entry.get_bool(i) ? "bool yes" : "bool no";
    case ParserValue::TYPE_INT:
        return "int " + std::to_string(entry.get_int(i));
    case ParserValue::TYPE_DOUBLE:
        return double_text(entry.get_double(i));
    case ParserValue::TYPE_STRING:
        return string_text(entry.get_string(i).get_view());
    case ParserValue::TYPE_BINARY_DATA:
        return hexadecimal(entry, i);
    default:
        return "group";
    }
}

inline std::string head_text(const ParserEntry& entry) {
    std::string text(entry.get_name().get_view());
    if (entry.get_type() == ParserEntry::TYPE_FUNCTION_CALL) {
        text += " (call)";
    } else if (entry.get_type() == ParserEntry::TYPE_KEYWORD) {
        text += " (keyword)";
    }
    if (entry.is_template()) {
        text += " (template " + std::string(entry.get_template().get_view()) + ")";
    }
    if (entry.is_array()) {
        text += " (array of " + std::to_string(entry.get_array_count()) + ")";
    }
    return text;
}

} // namespace told_outcome_detail

inline std::string tree_outcome(const ParserGroup& root) {
    std::string out;
    for (const bk_parser::Visit& visit : bk_parser::walk(root)) {
        out.append(4 * visit.depth(), ' ');
        out += told_outcome_detail::head_text(visit.entry()) + ":";
        for (unsigned int i = 0; i < visit.entry().get_value_count(); ++i) {
            out += (i == 0 ? " " : ", ") + told_outcome_detail::value_text(visit.entry(), i);
        }
        out += visit.entry().get_value_count() == 0 ? " nothing\n" : "\n";
    }
    return out.empty() ? "(no entry)\n" : out;
}

inline std::string outcome_of(std::string_view text) {
    const bk_parser::LoadResult result = bk_parser::parse(text);
    std::string out = tree_outcome(result.document.root());
    for (const bk_parser::Problem& problem : result.problems) {
        out += problem.severity == bk_parser::Severity::error ? "error " : "warning ";
        out += std::to_string(problem.line) + ":" + std::to_string(problem.column) + " [" + problem.code +
               "] " + problem.message + "\n";
    }
    return out;
}
