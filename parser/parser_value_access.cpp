#include "core/core_memory.h"
#include "parser/parser_group.h"
#include "parser/parser_value_impl.h"
#include "parser/parser_word_rules_impl.h"

#include <cstring>
#include <memory>

namespace bk {

namespace {

/// Copies a text into an area, a NUL after it, and moves the area's begin past both.
const char* put_text(std::string_view text, char*& area) noexcept {
    char* const begin = area;
    std::char_traits<char>::copy(begin, text.data(), text.size());
    begin[text.size()] = '\0';
    area += text.size() + 1;
    return begin;
}

} // namespace

ParserValue* ValueAccess::make_spelled(void* place, ParserValue::Type type, std::string_view word,
                                       char*& text) {
    auto* value = new (place) ParserValue(type);
    value->size_ = static_cast<unsigned int>(word.size());
    value->bits_ |= ParserValue::TEXT_HELD;
    value->spelled_.text = put_text(word, text);
    return value;
}

ParserValue* ValueAccess::make_string(void* place, std::string_view word, char*& text) noexcept {
    auto* value = new (place) ParserValue(ParserValue::TYPE_STRING);
    const auto size = static_cast<unsigned int>(word.size());
    const bool is_short = size <= CoreString::inline_capacity;
    value->string_.set_borrowed(is_short ? word.data() : put_text(word, text), size);
    return value;
}

ParserValue* ValueAccess::make_escaped_string(void* place, std::string_view word, char*& text) noexcept {
    auto* value = new (place) ParserValue(ParserValue::TYPE_STRING);
    const std::size_t size = decode_escapes(word, text);
    text[size] = '\0';
    value->string_.set_borrowed(text, static_cast<unsigned int>(size));
    text += size + 1;
    return value;
}

ParserValue* ValueAccess::make_group(void* place, ParserGroup* group) noexcept {
    auto* value = new (place) ParserValue(ParserValue::TYPE_GROUP);
    value->spelled_.scalar.group = group;
    return value;
}

ParserValue* ValueAccess::make_binary_data(void* place, void* data, unsigned int size) noexcept {
    auto* value = new (place) ParserValue(ParserValue::TYPE_BINARY_DATA);
    value->spelled_.scalar.bytes = static_cast<unsigned char*>(data);
    value->size_ = size;
    return value;
}

std::size_t ValueAccess::text_need(const ParserValue& value) noexcept {
    if (value.get_type() == ParserValue::TYPE_STRING) {
        const std::size_t size = string(value).size();
        return size <= CoreString::inline_capacity ? 0 : size + 1;
    }
    return is_spelled(value) ? spelling(value).size() + 1 : 0;
}

void ValueAccess::copy_content(ParserValue& copied, const ParserValue& value, ParserGroup* group) {
    if (value.get_type() == ParserValue::TYPE_STRING) {
        copied.string_.set_borrowed(string(value).data(), static_cast<unsigned int>(string(value).size()));
        return;
    }
    copied.bits_ = value.bits_ & ~static_cast<unsigned int>(ParserValue::TEXT_OWNED);
    copied.spelled_ = value.spelled_;
    if (value.get_type() == ParserValue::TYPE_GROUP) {
        copied.spelled_.scalar.group = group;
    } else if (value.get_type() == ParserValue::TYPE_BINARY_DATA) {
        copied.spelled_.scalar.bytes = nullptr;
        if (value.size_ != 0) {
            copied.spelled_.scalar.bytes = copy_bytes(value.spelled_.scalar.bytes, value.size_);
        }
    }
    copied.size_ = value.size_;
}

ParserValue* ValueAccess::copy(void* place, const ParserValue& value, ParserGroup* group, char*& text) {
    auto* copied = new (place) ParserValue(value.get_type());
    copy_content(*copied, value, group);
    if (value.get_type() == ParserValue::TYPE_STRING) {
        if (string(value).size() > CoreString::inline_capacity) {
            copied->string_.set_borrowed(put_text(string(value), text), copied->string_.get_length());
        }
    } else if (is_spelled(value)) {
        copied->spelled_.text = put_text(spelling(value), text);
    }
    return copied;
}

void ValueAccess::relocate(ParserValue& from, void* to) noexcept {
    auto* made = new (to) ParserValue(ParserValue::TYPE_GROUP);
    made->bits_ = from.bits_;
    made->size_ = from.size_;
    static_assert(sizeof(from.spelled_) == sizeof(from.string_), "both fill the union");
    std::memcpy(static_cast<void*>(&made->spelled_), static_cast<const void*>(&from.spelled_),
                sizeof(from.spelled_));
}

void ValueAccess::rebase_text(ParserValue& value, const char* old_begin, const char* old_end,
                              char* begin) noexcept {
    const auto moved = [=](const char* text) -> const char* {
        return text >= old_begin && text < old_end ? begin + (text - old_begin) : nullptr;
    };
    if (value.get_type() != ParserValue::TYPE_STRING) {
        if (const char* text = moved(value.spelled_.text)) {
            value.spelled_.text = text;
        }
    } else if (!value.has(ParserValue::STRING_BOXED)) {
        if (const char* text = moved(value.string_.get_data())) {
            value.string_.set_borrowed(text, value.string_.get_length());
        }
    }
}

void ValueAccess::own_text(ParserValue& value) {
    if (value.get_type() == ParserValue::TYPE_STRING) {
        if (!value.has(ParserValue::STRING_BOXED)) {
            value.string_ = CoreString(value.string_);
        }
        return;
    }
    if (is_spelled(value) && !value.has(ParserValue::TEXT_OWNED) &&
        value.get_type() != ParserValue::TYPE_BINARY_DATA) {
        char* area = static_cast<char*>(CoreMemory::allocate(std::size_t{value.size_} + 1));
        value.spelled_.text = put_text(spelling(value), area);
        value.bits_ |= ParserValue::TEXT_OWNED;
    }
}

void ValueAccess::forget(ParserValue& value) noexcept {
    value.bits_ = ParserValue::TYPE_WORD;
    value.size_ = 0;
    value.spelled_ = {{.as_double = 0.0}, nullptr};
}

} // namespace bk
