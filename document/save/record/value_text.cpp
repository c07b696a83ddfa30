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

bool reads_as(ParserWord::Type kind, std::string_view word, const bk::StoredValue& value, bool has_escapes) {
    const ParserValue::Type type = bk::value_type_of(kind);
    if (type != value.type()) {
        return false;
    }
    if (value.is_spelled()) {
        return value.spelling() == word;
    }
    if (type == ParserValue::TYPE_STRING) {
        return reads_as_string(word, value.held_string().get_view(), has_escapes);
    }
    if (type == ParserValue::TYPE_BINARY_DATA) {
        return reads_as_bytes(word, value.bytes());
    }
    const ParserValue read(type, CoreString(word));
    return bk::StoredValue::of(read).scalar_bits() == value.scalar_bits();
}

} // namespace bk_parser
