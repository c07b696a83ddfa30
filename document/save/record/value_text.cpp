#include "document/save/record/value_text_impl.h"

#include "core/core_memory.h"
#include "parser/model/parser_value_impl.h"
#include "parser/words/parser_word_rules_impl.h"

namespace bk_parser {

namespace {

bool reads_as_string(std::string_view word, std::string_view string, bool has_escapes) {
    const std::string_view inner = word.substr(1, word.size() - 2); // without the quotes
    if (!has_escapes || inner.find('\\') == std::string_view::npos) {
        return inner == string;
    }
    return bk::decoded(inner).get_view() == string;
}

bool reads_as_bytes(std::string_view word, std::string_view bytes) {
    unsigned int size = 0;
    void* const data = bk::decode_binary_literal(word, size);
    const bool is_equal = bytes == std::string_view(static_cast<const char*>(data), size);
    if (data != nullptr) {
        CoreMemory::release(data, size);
    }
    return is_equal;
}

} // namespace

bool reads_as(ParserWord::Type kind, std::string_view word, const ParserValue& value, bool has_escapes) {
    const ParserValue::Type type = bk::value_type_of(kind);
    if (type != bk::ValueAccess::type(value)) {
        return false;
    }
    if (bk::ValueAccess::is_spelled(value)) {
        return bk::ValueAccess::spelling(value) == word;
    }
    if (type == ParserValue::TYPE_STRING) {
        return reads_as_string(word, bk::ValueAccess::held_string(value).get_view(), has_escapes);
    }
    if (type == ParserValue::TYPE_BINARY_DATA) {
        return reads_as_bytes(word, bk::ValueAccess::bytes(value));
    }
    const ParserValue read(type, CoreString(word));
    return bk::ValueAccess::scalar_bits(read) == bk::ValueAccess::scalar_bits(value);
}

} // namespace bk_parser
