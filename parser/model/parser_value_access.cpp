#include "core/core_memory.h"
#include "parser/model/parser_value_impl.h"
#include "parser/parser_group.h"
#include "parser/words/parser_word_rules_impl.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace bk {

ParserValue* ValueAccess::make_escaped_string(void* place, std::string_view word, char*& text) noexcept {
    auto* value = ::new (place) ParserValue(ParserValue::TYPE_STRING);
    const std::size_t size = decode_escapes(word, text);
    text[size] = '\0';
    value->string_.set_borrowed(text, static_cast<unsigned int>(size));
    text += size + 1;
    return value;
}

std::size_t ValueAccess::text_need(const ParserValue& value) noexcept {
    if (value.get_type() == ParserValue::TYPE_STRING) {
        return string_need(string(value).size());
    }
    return is_spelled(value) ? spelling_need(spelling(value).size()) : 0;
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
    auto* copied = ::new (place) ParserValue(value.get_type());
    copy_content(*copied, value, group);
    if (value.get_type() == ParserValue::TYPE_STRING) {
        if (string(value).size() > CoreString::inline_capacity) {
            copied->string_.set_borrowed(put_string(string(value), text), copied->string_.get_length());
        }
    } else if (is_spelled(value)) {
        copied->spelled_.text = text;
        copy_text(text, spelling(value).data(), spelling(value).size());
        text += spelling(value).size();
    }
    return copied;
}

void ValueAccess::relocate(ParserValue& from, void* to) noexcept {
    auto* made = ::new (to) ParserValue(ParserValue::TYPE_GROUP);
    made->bits_ = from.bits_;
    made->size_ = from.size_;
    static_assert(sizeof(from.spelled_) == sizeof(from.string_), "both fill the union");
    std::memcpy(static_cast<void*>(&made->spelled_), static_cast<const void*>(&from.spelled_),
                sizeof(from.spelled_));
}

void ValueAccess::leave_string(ParserValue& from, void* to, StringHome& home) noexcept {
    auto* made = ::new (to) ParserValue(ParserValue::TYPE_GROUP);
    made->bits_ = from.bits_ | ParserValue::STRING_AWAY;
    made->away_ = {&from.string_, &home};
    home.add_user();
}

void ValueAccess::rebase_text(ParserValue& value, const char* old_begin, const char* old_end,
                              const char* begin) noexcept {
    const auto moved = [=](const char* text) -> const char* {
        return text >= old_begin && text < old_end ? begin + (text - old_begin) : nullptr;
    };
    if (value.get_type() != ParserValue::TYPE_STRING) {
        if (const char* text = moved(value.spelled_.text)) {
            value.spelled_.text = text;
        }
    } else if (!value.has(ParserValue::STRING_AWAY)) {
        if (const char* text = moved(value.string_.get_data())) {
            value.string_.set_borrowed(text, value.string_.get_length());
        }
    }
}

void ValueAccess::own_text(ParserValue& value) {
    if (value.get_type() == ParserValue::TYPE_STRING) {
        if (has_string_inside(value) && value.string_.is_borrowed()) {
            value.string_ = CoreString(value.string_);
        }
        return;
    }
    if (is_spelled(value) && value.size_ != 0 && !value.has(ParserValue::TEXT_OWNED)) {
        char* const text = static_cast<char*>(CoreMemory::allocate(value.size_));
        copy_text(text, value.spelled_.text, value.size_);
        value.spelled_.text = text;
        value.bits_ |= ParserValue::TEXT_OWNED;
    }
}

#if defined(BK_PARSER_ASSERTIONS)

bool ValueAccess::is_sound(const ParserValue& value) noexcept {
    switch (value.get_type()) {
    case ParserValue::TYPE_GROUP:
    case ParserValue::TYPE_BINARY_DATA:
        return !value.has(ParserValue::TEXT_OWNED) && !value.has(ParserValue::STRING_BOXED);
    case ParserValue::TYPE_STRING:
        return !value.has(ParserValue::TEXT_OWNED) && !value.has(ParserValue::TEXT_HELD);
    default:
        return !value.has(ParserValue::STRING_BOXED) &&
               (!value.has(ParserValue::TEXT_OWNED) || (is_spelled(value) && value.size_ != 0));
    }
}

bool ValueAccess::keep_nothing_outside(const ParserValue* values, unsigned int count) noexcept {
    return std::all_of(values, values + count, [](const ParserValue& value) {
        switch (value.get_type()) {
        case ParserValue::TYPE_GROUP:
            return value.spelled_.scalar.group == nullptr;
        case ParserValue::TYPE_BINARY_DATA:
            return value.spelled_.scalar.bytes == nullptr;
        case ParserValue::TYPE_STRING:
            return !value.has(ParserValue::STRING_BOXED) &&
                   (value.string_.is_borrowed() || string(value).size() <= CoreString::inline_capacity);
        default:
            return !value.has(ParserValue::TEXT_OWNED);
        }
    });
}

#endif

void ValueAccess::forget(ParserValue& value) noexcept {
    value.bits_ = ParserValue::TYPE_WORD;
    value.size_ = 0;
    value.spelled_ = {{.as_double = 0.0}, nullptr};
}

} // namespace bk
