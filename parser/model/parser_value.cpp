#include "parser/parser_value.h"

#include "core/core_memory.h"
#include "core/memory/core_assert_impl.h"
#include "core/memory/core_nothrow_impl.h"
#include "core/reports/core_guard_impl.h"
#include "parser/model/drop/parser_teardown_impl.h"
#include "parser/model/parser_value_impl.h"
#include "parser/parser_group.h"
#include "parser/words/parser_word_rules_impl.h"

#include <algorithm>
#include <cstring>

namespace {

/// Returns the least int for a number that does not fit and for not-a-number. It converts only numbers that fit, because any other would
/// raise the invalid-operation exception. That holds even when the compiler computes both branches and selects one.
int truncate_to_int(double value) noexcept {
    constexpr double above = 2147483648.0;
    const bool fits = value > -above - 1.0 && value < above;
    return static_cast<int>(fits ? value : -above);
}

const char* type_name(ParserValue::Type type) noexcept {
    static constexpr const char* names[] = {"TYPE_GROUP",  "TYPE_BOOL",   "TYPE_CHAR",        "TYPE_INT",
                                            "TYPE_DOUBLE", "TYPE_STRING", "TYPE_BINARY_DATA", "TYPE_WORD"};
    return type < std::size(names) ? names[type] : "TYPE_UNKNOWN";
}

} // namespace

ParserValue::ParserValue(const char& value) : ParserValue(TYPE_CHAR) {
    spelled_.scalar.as_char = value;
    bits_ |= VALUE_HELD;
}

ParserValue::ParserValue(const int& value) : ParserValue(TYPE_INT) {
    spelled_.scalar.as_int = value;
    bits_ |= VALUE_HELD;
}

ParserValue::ParserValue(const double& value) : ParserValue(TYPE_DOUBLE) {
    spelled_.scalar.as_double = bk::clamp_to_finite(value);
    bits_ |= VALUE_HELD;
}

ParserValue::ParserValue(const bool& value) : ParserValue(TYPE_BOOL) {
    spelled_.scalar.as_bool = value;
    bits_ |= VALUE_HELD;
}

ParserValue::ParserValue(const CoreString& value) : ParserValue(TYPE_STRING) {
    string_ = value;
}

ParserValue::ParserValue(ParserGroup* group) : ParserValue(TYPE_GROUP) {
    spelled_.scalar.group = group != nullptr ? group : new ParserGroup(CoreString());
}

ParserValue::ParserValue(void* data, const unsigned int& size) : ParserValue(TYPE_BINARY_DATA) {
    if (size != 0) {
        spelled_.scalar.bytes = bk::copy_bytes(data, size);
        size_ = size;
    }
}

ParserValue::ParserValue(const Type& type, const CoreString& text)
    : ParserValue(static_cast<Type>(std::min<unsigned int>(type, ~FLAG_BITS))) {
    switch (type) {
    case TYPE_GROUP:
        spelled_.scalar.group = new ParserGroup(text);
        break;
    case TYPE_STRING:
        string_ = text;
        break;
    case TYPE_BINARY_DATA:
        spelled_.scalar.bytes =
            static_cast<unsigned char*>(bk::decode_binary_literal(text.get_view(), size_));
        break;
    case TYPE_BOOL:
    case TYPE_CHAR:
    case TYPE_INT:
    case TYPE_DOUBLE:
    case TYPE_WORD:
        size_ = text.get_length();
        bits_ |= TEXT_HELD;
        spelled_.text = text.get_data();
        bk::ValueAccess::own_text(*this);
        break;
    default:
        break;
    }
}

ParserValue::ParserValue(const ParserValue& other) : ParserValue(other.get_type()) {
    const ParserGroup* const group = bk::ValueAccess::group(other);
    bk::ValueAccess::copy_content(*this, other, group != nullptr ? new ParserGroup(*group) : nullptr);
    bk::ValueAccess::own_text(*this);
}

ParserValue::~ParserValue() {
    release();
}

ParserValue& ParserValue::operator=(const ParserValue& other) {
    if (other.get_type() == TYPE_STRING && !other.has(STRING_AWAY)) {
        other.box_string();
    }
    bits_ = other.bits_;
    size_ = other.size_;
    if (other.has(STRING_AWAY)) {
        away_ = other.away_;
    } else {
        spelled_ = other.spelled_;
    }
    return *this;
}

void ParserValue::box_string() const {
    CoreString owned(string_);
    auto* boxed = new (CoreMemory::allocate(sizeof(CoreString))) CoreString(std::move(owned));
    std::destroy_at(&string_);
    away_ = {boxed, nullptr};
    bits_ |= STRING_AWAY;
}

void ParserValue::release() noexcept {
    BK_ASSERT(bk::ValueAccess::is_sound(*this));
    switch (get_type()) {
    case TYPE_GROUP:
        bk::destroy_group(spelled_.scalar.group);
        break;
    case TYPE_STRING:
        if (has(STRING_AWAY)) {
            release_away();
        } else {
            std::destroy_at(&string_);
        }
        break;
    case TYPE_BINARY_DATA:
        CoreMemory::release(spelled_.scalar.bytes, size_);
        break;
    default:
        if (has(TEXT_OWNED)) {
            CoreMemory::release(const_cast<char*>(spelled_.text), size_);
        }
        break;
    }
}

void ParserValue::release_away() noexcept { // NOLINT(readability-make-member-function-const): it destroys
    std::destroy_at(away_.string);
    if (away_.home != nullptr) {
        away_.home->let_go();
    } else {
        CoreMemory::release(away_.string, sizeof(CoreString));
    }
}

/// The argument of a setter may alias the content that is freed here, so it is copied first.
void ParserValue::become(Type type) noexcept {
    release();
    bits_ = type;
    size_ = 0;
    spelled_ = {{.as_double = 0.0}, nullptr};
    if (type == TYPE_STRING) {
        std::construct_at(&string_);
    }
}

void ParserValue::clear() {
    become(get_type());
    if (get_type() != TYPE_STRING) {
        bits_ |= TEXT_HELD;
        spelled_.text = "";
    }
}

void ParserValue::set_bool(const bool& value) {
    const bool given = value;
    become(TYPE_BOOL);
    spelled_.scalar.as_bool = given;
    bits_ |= VALUE_HELD;
}

void ParserValue::set_char(const char& value) {
    const char given = value;
    become(TYPE_CHAR);
    spelled_.scalar.as_char = given;
    bits_ |= VALUE_HELD;
}

void ParserValue::set_int(const int& value) {
    const int given = value;
    become(TYPE_INT);
    spelled_.scalar.as_int = given;
    bits_ |= VALUE_HELD;
}

void ParserValue::set_double(const double& value) {
    const double given = bk::clamp_to_finite(value);
    become(TYPE_DOUBLE);
    spelled_.scalar.as_double = given;
    bits_ |= VALUE_HELD;
}

void ParserValue::set_string(const CoreString& value) {
    CoreString copy(value);
    become(TYPE_STRING);
    string_ = std::move(copy);
}

void ParserValue::set_binary_data(void* data, const unsigned int& size) {
    const unsigned int count = size;
    unsigned char* const bytes = bk::copy_bytes(data, count);
    become(TYPE_BINARY_DATA);
    spelled_.scalar.bytes = bytes;
    size_ = count;
}

void ParserValue::make_value() const {
    if (!has(VALUE_HELD)) {
        bk::ValueAccess::convert_spelling(*this);
    }
}

void ParserValue::report_mismatch(const char* read) const {
    bk::report_warning("ParserValue.", read, ": type mismatch, value type is '", type_name(get_type()),
                       "' \n");
}

bool ParserValue::get_as_bool() const {
    make_value();
    switch (get_type()) {
    case TYPE_BOOL:
        return spelled_.scalar.as_bool;
    case TYPE_CHAR:
        return spelled_.scalar.as_char != 0;
    case TYPE_INT:
        return spelled_.scalar.as_int != 0;
    case TYPE_DOUBLE:
        return bk::is_not_zero(spelled_.scalar.as_double);
    default:
        report_mismatch("get_as_bool");
        return false;
    }
}

char ParserValue::get_as_char() const {
    make_value();
    switch (get_type()) {
    case TYPE_BOOL:
        return spelled_.scalar.as_bool ? 1 : 0;
    case TYPE_CHAR:
        return spelled_.scalar.as_char;
    case TYPE_INT:
        return static_cast<char>(spelled_.scalar.as_int);
    case TYPE_DOUBLE:
        return static_cast<char>(truncate_to_int(spelled_.scalar.as_double));
    default:
        report_mismatch("get_as_char");
        return 0;
    }
}

int ParserValue::get_as_int() const {
    make_value();
    switch (get_type()) {
    case TYPE_BOOL:
        return spelled_.scalar.as_bool ? 1 : 0;
    case TYPE_CHAR:
        return static_cast<signed char>(spelled_.scalar.as_char);
    case TYPE_INT:
        return spelled_.scalar.as_int;
    case TYPE_DOUBLE:
        return truncate_to_int(spelled_.scalar.as_double);
    default:
        report_mismatch("get_as_int");
        return 0;
    }
}

double ParserValue::get_as_double() const {
    make_value();
    switch (get_type()) {
    case TYPE_BOOL:
        return spelled_.scalar.as_bool ? 1.0 : 0.0;
    case TYPE_CHAR:
        return static_cast<signed char>(spelled_.scalar.as_char);
    case TYPE_INT:
        return spelled_.scalar.as_int;
    case TYPE_DOUBLE:
        return spelled_.scalar.as_double;
    default:
        report_mismatch("get_as_double");
        return 0.0;
    }
}

const CoreString& ParserValue::get_as_string() const {
    if (get_type() != TYPE_STRING) {
        report_mismatch("get_as_string");
        return CoreString::get_null_string();
    }
    return bk::ValueAccess::held_string(*this);
}

void* ParserValue::get_as_binary_data(unsigned int& size) const {
    if (get_type() != TYPE_BINARY_DATA) {
        report_mismatch("get_as_binary_data");
        return nullptr;
    }
    size = size_;
    return spelled_.scalar.bytes;
}

CoreString ParserValue::get_type_name(const Type& type) {
    CoreString name; // which allocates nothing
    const char* const text = type_name(type);
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
