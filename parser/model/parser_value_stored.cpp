#include "core/core_memory.h"
#include "parser/model/drop/parser_teardown_impl.h"
#include "parser/model/parser_value_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <memory>
#include <utility>

namespace bk {

StoredValue* StoredValue::make_apart(void* place, Type type, std::string_view word) {
    if (word.empty()) {
        return ::new (place)
            StoredValue(Plain{mark_of(type) | spelled_bit, 0, {.scalar = {.as_double = 0.0}}});
    }
    auto* const apart = ::new (CoreMemory::allocate(sizeof(Apart) + word.size()))
        Apart{{.as_double = 0.0}, static_cast<std::uint32_t>(word.size()), false};
    copy_text(apart->text(), word.data(), word.size());
    return ::new (place) StoredValue(Plain{mark_of(type) | spelled_bit | size_apart, 0, {.apart = apart}});
}

StoredValue* StoredValue::make_boxed(void* place, CoreString string) {
    auto* const boxed = ::new (CoreMemory::allocate(sizeof(CoreString))) CoreString(std::move(string));
    return ::new (place)
        StoredValue(Plain{mark_of(ParserValue::TYPE_STRING), in_own_block, {.string = boxed}});
}

StoredValue* StoredValue::make_own_string(void* place, CoreString string) {
    if (is_kept_apart(ParserValue::TYPE_STRING, string.get_length())) [[unlikely]] {
        return make_boxed(place, std::move(string));
    }
    auto* const value = ::new (place) StoredValue(ParserValue::TYPE_STRING);
    value->string_ = std::move(string);
    return value;
}

StoredValue* StoredValue::make_escaped_string(void* place, std::string_view word, char*& text) {
    const std::string_view string(text, decode_escapes(word, text));
    if (is_kept_apart(ParserValue::TYPE_STRING, string.size())) [[unlikely]] {
        return make_own_string(place, CoreString(string));
    }
    auto* value = ::new (place) StoredValue(ParserValue::TYPE_STRING);
    text[string.size()] = '\0';
    value->string_.set_borrowed(text, static_cast<unsigned int>(string.size()));
    text += string.size() + 1;
    return value;
}

std::size_t StoredValue::text_need() const noexcept {
    if (type() == ParserValue::TYPE_STRING) {
        return string_need(held_string().get_length());
    }
    return is_spelled() ? spelling_need(spelling().size()) : 0;
}

StoredValue* StoredValue::copy(void* place, const StoredValue& value, ParserGroup* group, char*& text) {
    const Type type = value.type();
    if (type == ParserValue::TYPE_STRING) {
        return text == nullptr ? make_own_string(place, CoreString(value.held_string()))
                               : make_string(place, value.string(), text);
    }
    if (value.has_text_in_area() || value.is_spelled_apart()) {
        StoredValue* const copied = text == nullptr ? make_apart(place, type, value.spelling())
                                                    : make_spelled(place, type, value.spelling(), text);
        copied->take_scalar(value);
        return copied;
    }
    auto* const copied = ::new (place) StoredValue(value.plain_);
    if (type == ParserValue::TYPE_GROUP) {
        copied->plain_.content.group = group;
    } else if (type == ParserValue::TYPE_BINARY_DATA) {
        copied->plain_.content.bytes = nullptr;
        if (value.plain_.offset != 0) {
            copied->plain_.content.bytes = copy_bytes(value.plain_.content.bytes, value.plain_.offset);
        }
    }
    return copied;
}

/// Copies the scalar of a value with the same spelling, so that this spelling need not be converted again.
void StoredValue::take_scalar(const StoredValue& from) noexcept {
    const bool is_apart = from.is_spelled_apart();
    if (is_apart ? !from.plain_.content.apart->is_converted : !from.has_scalar_inside()) {
        return;
    }
    const Scalar scalar = is_apart ? from.plain_.content.apart->scalar : from.plain_.content.scalar;
    if (is_spelled_apart()) {
        plain_.content.apart->scalar = scalar;
        plain_.content.apart->is_converted = true;
    } else {
        plain_.content.scalar = scalar;
        plain_.mark |= held_bit;
    }
}

void StoredValue::copy_shallow(void* place, const StoredValue& value) {
    if (value.has_string_inside()) {
        CoreString owned(value.string_);
        alignas(StoredValue) unsigned char room[sizeof(StoredValue)];
        const Plain boxed = make_boxed(room, std::move(owned))->plain_;
        std::destroy_at(&value.string_);
        value.plain_ = boxed;
    }
    ::new (place) StoredValue(value.plain_);
}

void StoredValue::relocate(const StoredValue& from, void* to, std::uintptr_t text_shift) noexcept {
    std::memcpy(to, static_cast<const void*>(&from), sizeof(StoredValue));
    auto* const made = std::launder(static_cast<StoredValue*>(to));
    if (made->has_text_in_area()) {
        made->move_text(distance(to, &from) + text_shift);
    } else if (text_shift != 0 && made->has_string_inside() && made->string_.is_borrowed()) {
        const CoreString& string = made->string_;
        made->string_.set_borrowed(string.get_data() + static_cast<std::ptrdiff_t>(text_shift),
                                   string.get_length());
    }
}

/// Computes modulo 2^35, so that a value may for a while be far from its text, for example on the stack.
void StoredValue::move_text(std::uint64_t by) noexcept {
    const std::uint64_t moved = offset() + by;
    plain_.mark = (plain_.mark & ~offset_mask) | high_bits(moved);
    plain_.offset = static_cast<std::uint32_t>(moved);
}

void StoredValue::leave_string(const StoredValue& from, void* to, unsigned int index,
                               StringHome& home) noexcept {
    ::new (to) StoredValue(Plain{mark_of(ParserValue::TYPE_STRING), index, {.string = &from.string_}});
    home.add_user();
}

void StoredValue::own_text() {
    if (has_string_inside()) {
        if (string_.is_borrowed()) {
            string_ = CoreString(string_);
        }
    } else if (has_text_in_area()) {
        alignas(StoredValue) unsigned char room[sizeof(StoredValue)];
        StoredValue* const apart = make_apart(room, type(), spelling());
        apart->take_scalar(*this);
        plain_ = apart->plain_;
    }
}

bool StoredValue::keeps_nothing_outside() const noexcept {
    switch (type()) {
    case ParserValue::TYPE_GROUP:
        return plain_.content.group == nullptr;
    case ParserValue::TYPE_BINARY_DATA:
        return plain_.content.bytes == nullptr;
    case ParserValue::TYPE_STRING:
        return has_string_inside() &&
               (string_.is_borrowed() || string_.get_length() <= CoreString::inline_capacity);
    default:
        return !is_spelled_apart();
    }
}

void StoredValue::release() noexcept {
    if (has_string_inside()) {
        std::destroy_at(&string_);
        return;
    }
    switch (type()) {
    case ParserValue::TYPE_GROUP:
        destroy_group(plain_.content.group);
        break;
    case ParserValue::TYPE_STRING:
        release_string_outside();
        break;
    case ParserValue::TYPE_BINARY_DATA:
        CoreMemory::release(plain_.content.bytes, plain_.offset);
        break;
    default:
        if (is_spelled_apart()) {
            CoreMemory::release(plain_.content.apart, sizeof(Apart) + plain_.content.apart->size);
        }
        break;
    }
}

void StoredValue::release_string_outside() noexcept {
    CoreString* const string = plain_.content.string;
    std::destroy_at(string);
    if (plain_.offset == in_own_block) {
        CoreMemory::release(string, sizeof(CoreString));
        return;
    }
    const char* const first =
        reinterpret_cast<const char*>(string) - std::size_t{plain_.offset} * sizeof(StoredValue);
    (*std::launder(reinterpret_cast<StringHome* const*>(first - block_head_size)))->let_go();
}

void StoredValue::become(Type type) noexcept {
    release();
    ::new (this) StoredValue(type);
}

void StoredValue::clear() noexcept {
    become(type());
    if (!has_string_inside()) {
        plain_.mark |= spelled_bit; // as the empty text
    }
}

void StoredValue::set_bool(bool value) noexcept {
    release();
    make_scalar(this, ParserValue::TYPE_BOOL, value ? 1 : 0);
}

void StoredValue::set_char(char value) noexcept {
    release();
    make_scalar(this, ParserValue::TYPE_CHAR, static_cast<unsigned char>(value));
}

void StoredValue::set_int(int value) noexcept {
    release();
    make_scalar(this, ParserValue::TYPE_INT, static_cast<unsigned int>(value));
}

void StoredValue::set_double(double value) noexcept {
    release();
    make_scalar(this, ParserValue::TYPE_DOUBLE, std::bit_cast<std::uint64_t>(clamp_to_finite(value)));
}

/// Copies the argument first, because it may be a part of the content that is freed here.
void StoredValue::set_string(const CoreString& value) {
    alignas(StoredValue) unsigned char room[sizeof(StoredValue)];
    const StoredValue* const made = make_own_string(room, CoreString(value));
    release();
    relocate(*made, this);
}

void StoredValue::set_binary_data(const void* data, unsigned int size) {
    unsigned char* const bytes = copy_bytes(data, size);
    release();
    make_binary_data(this, bytes, size);
}

} // namespace bk
