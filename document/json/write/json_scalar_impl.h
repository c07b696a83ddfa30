#pragma once

#include "core/numbers/core_number_impl.h"
#include "parser/model/parser_value_impl.h"

#include <array>
#include <string_view>

namespace bk_parser {

/// The word that a text has for a bool, char, int, double or bare word. Refers to the value.
class ScalarWord {
public:
    /// The spelling, or the word for the content when there is no spelling.
    static ScalarWord as_spelled(const bk::StoredValue& value) { return ScalarWord(value, true); }
    /// The word for the content, however the value is spelled.
    static ScalarWord as_read(const bk::StoredValue& value) { return ScalarWord(value, false); }

    ScalarWord(const ScalarWord&) = delete;
    ScalarWord& operator=(const ScalarWord&) = delete;

    std::string_view view() const noexcept { return word_; }

private:
    ScalarWord(const bk::StoredValue& value, bool keeps_spelling) {
        const bool has_content = value.type() != ParserValue::TYPE_WORD;
        const bool is_shown = value.is_spelled() && (keeps_spelling || !has_content);
        word_ = is_shown ? value.spelling() : word_of_content(value);
    }

    std::string_view word_of_content(const bk::StoredValue& value) {
        switch (value.type()) {
        case ParserValue::TYPE_BOOL:
            return value.get_as_bool() ? "yes" : "no";
        case ParserValue::TYPE_CHAR:
        case ParserValue::TYPE_INT:
            return {room_.data(), bk::write_int(room_.data(), value.get_as_int())};
        case ParserValue::TYPE_DOUBLE:
            return {room_.data(), bk::write_double(room_.data(), value.get_as_double())};
        default:
            return {};
        }
    }

    std::array<char, bk::number_text_capacity> room_;
    std::string_view word_;
};

} // namespace bk_parser
