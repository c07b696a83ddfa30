#include "core/reports/core_guard_impl.h"
#include "parser/model/parser_entry_impl.h"
#include "parser/model/parser_value_impl.h"
#include "parser/parser_entry.h"
#include "parser/parser_group.h"
#include "parser/text/parser_text_writer_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

void ParserEntry::append(ParserValue&& value) {
    values_.append(bk::StoredValue::of(value));
}

void ParserEntry::add_bool(const bool& value) {
    append(ParserValue(value));
}

void ParserEntry::add_char(const char& value) {
    append(ParserValue(value));
}

void ParserEntry::add_int(const int& value) {
    append(ParserValue(value));
}

void ParserEntry::add_double(const double& value) {
    append(ParserValue(value));
}

void ParserEntry::add_string(const CoreString& value) {
    append(ParserValue(value));
}

void ParserEntry::add_binary_data(void* data, const unsigned int& size) {
    append(ParserValue(data, size));
}

void ParserEntry::add_word(const ParserWord& word, const ParserValue::Type& type) {
    if (type == ParserValue::TYPE_BINARY_DATA) {
        append(ParserValue(type, CoreString(bk::characters_of(word))));
        return;
    }
    if (type != ParserValue::TYPE_STRING) {
        append(ParserValue(type, word.get_string()));
        return;
    }
    if (word.get_length() < 3) {
        append(ParserValue(CoreString()));
        return;
    }
    const CoreString& text = word.get_string();
    append(ParserValue(text.sub_string(1, text.get_length() - 2)));
}

namespace {

/// The entry owns the group only once it lists it.
void adopt(ParserValueList& values, ParserGroup* group) {
    ParserValue value(group);
    try {
        values.append(bk::StoredValue::of(value));
    } catch (...) {
        bk::StoredValue::of(value).forget();
        throw;
    }
}

/// Adds all of them or none.
template <class Number>
void append_all(ParserValueList& values, std::initializer_list<Number> components) {
    const unsigned int old_count = values.get_count();
    try {
        for (const Number& component : components) {
            ParserValue value(component);
            values.append(bk::StoredValue::of(value));
        }
    } catch (...) {
        values.truncate(old_count);
        throw;
    }
}

} // namespace

ParserGroup* ParserEntry::add_group(ParserGroup* group) {
    if (group != nullptr) {
        adopt(values_, group);
        return group;
    }
    auto* const made = new ParserGroup(CoreString());
    append(ParserValue(made));
    made->set_source_entry(this);
    return made;
}

void ParserEntry::add_vec2d(const GMathVec2<double>& value) {
    append_all(values_, {value.x, value.y});
}

void ParserEntry::add_vec2i(const GMathVec2<int>& value) {
    append_all(values_, {value.x, value.y});
}

void ParserEntry::add_vec3d(const GMathVec3<double>& value) {
    append_all(values_, {value.x, value.y, value.z});
}

void ParserEntry::add_vec4d(const GMathVec4<double>& value) {
    append_all(values_, {value.x, value.y, value.z, value.w});
}

bool ParserEntry::get_bool(const unsigned int& i) const {
    return values_[i].get_as_bool();
}

char ParserEntry::get_char(const unsigned int& i) const {
    return values_[i].get_as_char();
}

int ParserEntry::get_int(const unsigned int& i) const {
    return values_[i].get_as_int();
}

double ParserEntry::get_double(const unsigned int& i) const {
    return values_[i].get_as_double();
}

const CoreString& ParserEntry::get_string(const unsigned int& i) const {
    values_.show_strings();
    return values_[i].get_as_string();
}

void* ParserEntry::get_binary_data(const unsigned int& i) const {
    unsigned int size = 0;
    return values_[i].get_as_binary_data(size);
}

unsigned int ParserEntry::get_binary_data_size(const unsigned int& i) const {
    unsigned int size = 0;
    values_[i].get_as_binary_data(size);
    return size;
}

CoreString ParserEntry::get_word(const unsigned int& i) const {
    CoreString text;
    bk::completed("ParserEntry.get_word", [&] {
        CoreString made;
        {
            bk::TextBuffer buffer(made);
            bk::put_plain_text(buffer, values_[i]);
        }
        text = std::move(made);
    });
    return text;
}

ParserGroup* ParserEntry::get_group(const unsigned int& i) const {
    if (!has_value()) {
        return const_cast<ParserEntry*>(this)->add_group(nullptr);
    }
    return values_[i].group();
}

namespace {

/// Reads the components of a vector that starts at value `start`, as far as there are values.
template <class Vector, class Read>
Vector read_components(const ParserValueList& values, unsigned int start, unsigned int size, Read read) {
    Vector vector;
    const unsigned int count = values.get_count();
    for (unsigned int k = 0; k < size && start < count && k < count - start; ++k) {
        vector[k] = read(values[start + k]);
    }
    return vector;
}

double read_double(const bk::StoredValue& value) {
    return value.get_as_double();
}

int read_int(const bk::StoredValue& value) {
    return value.get_as_int();
}

} // namespace

GMathVec2<double> ParserEntry::get_vec2d(const unsigned int& i) const {
    return read_components<GMathVec2<double>>(values_, i, 2, read_double);
}

GMathVec2<int> ParserEntry::get_vec2i(const unsigned int& i) const {
    return read_components<GMathVec2<int>>(values_, i, 2, read_int);
}

GMathVec3<double> ParserEntry::get_vec3d(const unsigned int& i) const {
    return read_components<GMathVec3<double>>(values_, i, 3, read_double);
}

GMathVec4<double> ParserEntry::get_vec4d(const unsigned int& i) const {
    return read_components<GMathVec4<double>>(values_, i, 4, read_double);
}

bool ParserEntry::is_value_group(const unsigned int& i) const {
    return values_[i].type() == ParserValue::TYPE_GROUP;
}

bool ParserEntry::is_value_bool(const unsigned int& i) const {
    return values_[i].type() == ParserValue::TYPE_BOOL;
}

bool ParserEntry::is_value_char(const unsigned int& i) const {
    return values_[i].type() == ParserValue::TYPE_CHAR;
}

bool ParserEntry::is_value_int(const unsigned int& i) const {
    return values_[i].type() == ParserValue::TYPE_INT;
}

bool ParserEntry::is_value_double(const unsigned int& i) const {
    return is_value_int(i) || values_[i].type() == ParserValue::TYPE_DOUBLE;
}

bool ParserEntry::is_value_string(const unsigned int& i) const {
    return values_[i].type() == ParserValue::TYPE_STRING;
}

ParserValue::Type ParserEntry::get_value_type(const unsigned int& i) const {
    return has_value() ? values_[i].type() : static_cast<ParserValue::Type>(0xFFFFFFFFu);
}

void ParserEntry::set_bool(const bool& value, const unsigned int& i) {
    values_.change(i).set_bool(value);
}

void ParserEntry::set_int(const int& value, const unsigned int& i) {
    values_.change(i).set_int(value);
}

void ParserEntry::set_double(const double& value, const unsigned int& i) {
    values_.change(i).set_double(value);
}

void ParserEntry::set_string(const CoreString& value, const unsigned int& i) {
    values_.change(i).set_string(value);
}

void ParserEntry::set_binary_data(void* data, const unsigned int& size, const unsigned int& i) {
    values_.change(i).set_binary_data(data, size);
}
