#include "parser/parser_value.h"

#include "core/core_memory.h"
#include "core/memory/core_nothrow_impl.h"
#include "core/reports/core_guard_impl.h"
#include "parser/model/parser_value_impl.h"
#include "parser/parser_group.h"
#include "parser/words/parser_word_rules_impl.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <new>

namespace {

/// A host can pass a type that is not listed by a cast. Larger numbers are stored as this one.
constexpr unsigned int largest_type = 0x00FFFFFFu;

} // namespace

using bk::StoredValue;

ParserValue::ParserValue(const char& value) {
    StoredValue::make_scalar(&stored_, TYPE_CHAR, static_cast<unsigned char>(value));
}

ParserValue::ParserValue(const int& value) {
    StoredValue::make_scalar(&stored_, TYPE_INT, static_cast<unsigned int>(value));
}

ParserValue::ParserValue(const double& value) {
    StoredValue::make_scalar(&stored_, TYPE_DOUBLE, std::bit_cast<std::uint64_t>(bk::clamp_to_finite(value)));
}

ParserValue::ParserValue(const bool& value) {
    StoredValue::make_scalar(&stored_, TYPE_BOOL, value ? 1 : 0);
}

ParserValue::ParserValue(const CoreString& value) {
    StoredValue::make_own_string(&stored_, value);
}

ParserValue::ParserValue(ParserGroup* group) {
    StoredValue::make_group(&stored_, group != nullptr ? group : new ParserGroup(CoreString()));
}

ParserValue::ParserValue(void* data, const unsigned int& size) {
    StoredValue::make_binary_data(&stored_, size == 0 ? nullptr : bk::copy_bytes(data, size), size);
}

ParserValue::ParserValue(const Type& type, const CoreString& text) {
    switch (type) {
    case TYPE_GROUP:
        StoredValue::make_group(&stored_, new ParserGroup(text));
        break;
    case TYPE_STRING:
        StoredValue::make_own_string(&stored_, text);
        break;
    case TYPE_BINARY_DATA: {
        unsigned int size = 0;
        void* const bytes = bk::decode_binary_literal(text.get_view(), size);
        StoredValue::make_binary_data(&stored_, bytes, size);
        break;
    }
    case TYPE_BOOL:
    case TYPE_CHAR:
    case TYPE_INT:
    case TYPE_DOUBLE:
    case TYPE_WORD:
        StoredValue::make_apart(&stored_, type, text.get_view());
        break;
    default:
        ::new (&stored_) StoredValue(static_cast<Type>(std::min<unsigned int>(type, largest_type)));
        break;
    }
}

ParserValue::ParserValue(const ParserValue& other) {
    const StoredValue& value = StoredValue::of(other);
    char* no_text = nullptr;
    StoredValue::copy(&stored_, value, value.group() != nullptr ? new ParserGroup(*value.group()) : nullptr,
                      no_text);
}

ParserValue::~ParserValue() {
    StoredValue::of(*this).release();
}

ParserValue& ParserValue::operator=(const ParserValue& other) {
    if (this != &other) {
        StoredValue::copy_shallow(&stored_, StoredValue::of(other));
    }
    return *this;
}

void ParserValue::clear() {
    StoredValue::of(*this).clear();
}

void ParserValue::set_bool(const bool& value) {
    StoredValue::of(*this).set_bool(value);
}

void ParserValue::set_char(const char& value) {
    StoredValue::of(*this).set_char(value);
}

void ParserValue::set_int(const int& value) {
    StoredValue::of(*this).set_int(value);
}

void ParserValue::set_double(const double& value) {
    StoredValue::of(*this).set_double(value);
}

void ParserValue::set_string(const CoreString& value) {
    StoredValue::of(*this).set_string(value);
}

void ParserValue::set_binary_data(void* data, const unsigned int& size) {
    StoredValue::of(*this).set_binary_data(data, size);
}

bool ParserValue::get_as_bool() const {
    return StoredValue::of(*this).get_as_bool();
}

char ParserValue::get_as_char() const {
    return StoredValue::of(*this).get_as_char();
}

int ParserValue::get_as_int() const {
    return StoredValue::of(*this).get_as_int();
}

double ParserValue::get_as_double() const {
    return StoredValue::of(*this).get_as_double();
}

const CoreString& ParserValue::get_as_string() const {
    return StoredValue::of(*this).get_as_string();
}

void* ParserValue::get_as_binary_data(unsigned int& size) const {
    return StoredValue::of(*this).get_as_binary_data(size);
}

void ParserValue::make_value() const {
    StoredValue::of(*this).make_value();
}

CoreString ParserValue::get_type_name(const Type& type) {
    CoreString name; // which allocates nothing
    const char* const text = bk::type_name(type);
    name.set_borrowed(text, static_cast<unsigned int>(std::strlen(text)));
    return name;
}

void ParserValue::word_to_binary_data(void*& data, unsigned int& size, const ParserWord& word) {
    data = nullptr;
    size = 0;
    bk::completed("ParserValue.word_to_binary_data",
                  [&] { data = bk::decode_binary_literal(bk::characters_of(word), size); });
}

void* ParserValue::operator new(std::size_t size) {
    return CoreMemory::allocate(size);
}

void* ParserValue::operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return bk::allocate_or_null(size);
}

void ParserValue::operator delete(void* block, std::size_t size) noexcept {
    CoreMemory::release(block, size);
}

void ParserValue::operator delete(void* block, const std::nothrow_t&) noexcept {
    CoreMemory::release(block, sizeof(ParserValue));
}
