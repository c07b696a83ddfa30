#include "parser/parser_word.h"

#include "parser/parser_file.h"
#include "parser/words/parser_word_rules_impl.h"

#include <cstring>
#include <utility>

ParserWord::ParserWord(const CoreString& text, const bool& whole, const CoreVersion& version)
    : ParserWord(version) {
    text_ = text.get_data();
    length_ = whole ? text.get_length() : 0;
}

ParserWord::ParserWord(const CoreVersion& version)
    : string_rule_(bk::has_escapes(version) ? &ParserWord::get_string_0110 : &ParserWord::get_string_0100) {}

ParserWord::ParserWord() : ParserWord(default_parser_serial_version) {}

ParserWord::ParserWord(const ParserWord& other) = default;

ParserWord& ParserWord::operator=(const ParserWord& other) {
    if (this == &other) {
        return *this;
    }
    // Copies before it deletes the old template, because `other` may be a part of that.
    std::shared_ptr<ParserWord> copied;
    ParserWord* inner = nullptr;
    for (const ParserWord* source = other.get_template(); source != nullptr;
         source = source->get_template()) {
        auto word = std::make_shared<ParserWord>();
        word->copy_without_template(*source);
        ParserWord* const made = word.get();
        (inner == nullptr ? copied : inner->template_) = std::move(word);
        inner = made;
    }
    copy_without_template(other);
    release_template();
    template_ = std::move(copied);
    return *this;
}

ParserWord::~ParserWord() {
    release_template();
}

void ParserWord::copy_without_template(const ParserWord& other) {
    string_ = other.string_; // may throw, so it comes before any other change
    type_ = other.type_;
    text_ = other.text_;
    start_ = other.start_;
    length_ = other.length_;
    line_ = other.line_;
    column_ = other.column_;
    array_count_ = other.array_count_;
    string_stale_ = other.string_stale_;
    string_rule_ = other.string_rule_;
}

void ParserWord::release_template() noexcept {
    // Destroys the chain of templates link by link, so that a long chain costs no stack.
    std::shared_ptr<ParserWord> word = std::move(template_);
    while (word != nullptr && word.use_count() == 1) {
        word = std::exchange(word->template_, nullptr);
    }
}

ParserWord& ParserWord::operator+=(unsigned int position) {
    if (length_ == 0) {
        start_ = position;
    }
    ++length_;
    string_stale_ = true;
    return *this;
}

void ParserWord::clear() {
    length_ = 0;
    string_stale_ = true;
    type_ = TYPE_UNKNOWN;
}

bool ParserWord::operator==(const char* s) const {
    if (length_ == 0) {
        return *s == '\0';
    }
    return std::strncmp(text_ + start_, s, std::strlen(s)) == 0;
}

const CoreString& ParserWord::get_string() const {
    if (string_stale_) {
        (this->*string_rule_)(string_);
        string_stale_ = false;
    }
    return string_;
}

std::string_view ParserWord::characters() const noexcept {
    return length_ == 0 ? std::string_view() : std::string_view(text_ + start_, length_);
}

void ParserWord::get_string_0100(CoreString& out) const {
    out.set_data(characters().data(), length_);
}

void ParserWord::get_string_0110(CoreString& out) const {
    const bool is_string =
        type_ == TYPE_STRING || (type_ == TYPE_UNKNOWN && bk::is_string_word(characters()));
    if (!is_string) {
        get_string_0100(out);
        return;
    }
    out = bk::decoded(characters());
    type_ = TYPE_STRING; // last, because decoding the text may throw
}

bool ParserWord::classify(Type type, bool matches) const {
    if (type_ == TYPE_UNKNOWN && matches) {
        type_ = type;
    }
    return type_ == type;
}

// Also classifies: the comparison decodes the text, and decoding a quoted word makes it a string.
bool ParserWord::is_text(std::string_view text) const {
    return type_ == TYPE_UNKNOWN && get_string().get_view() == text;
}

bool ParserWord::is_operator() const {
    return classify(TYPE_OPERATOR, is_text("="));
}

bool ParserWord::is_separator() const {
    return classify(TYPE_SEPARATOR, is_text(","));
}

bool ParserWord::is_brace() const {
    return type_ == TYPE_BRACE;
}

bool ParserWord::is_bool() const {
    return classify(TYPE_BOOL, type_ == TYPE_UNKNOWN && bk::is_bool_word(get_string().get_view()));
}

bool ParserWord::is_empty_tag() const {
    return classify(TYPE_EMPTY_TAG, is_text(bk::empty_tag));
}

bool ParserWord::is_binary_data() const {
    return classify(TYPE_BINARY_DATA, bk::is_binary_data_word(characters()));
}

bool ParserWord::is_string() const {
    return classify(TYPE_STRING, bk::is_string_word(characters()));
}

bool ParserWord::is_int() const {
    return classify(TYPE_INT, type_ == TYPE_UNKNOWN && bk::is_int_word(characters()));
}

bool ParserWord::is_double() const {
    return classify(TYPE_DOUBLE, type_ == TYPE_UNKNOWN && bk::is_double_word(get_string().get_view()));
}

bool ParserWord::is_keyword() const {
    if (type_ != TYPE_UNKNOWN || length_ < 2 || is_bool()) {
        return type_ == TYPE_KEYWORD;
    }
    return classify(TYPE_KEYWORD, bk::is_keyword_word(characters()));
}

bool ParserWord::is_identifier() const {
    if (type_ != TYPE_UNKNOWN || length_ == 0 || is_bool() || type_ == TYPE_STRING) {
        return type_ == TYPE_IDENTIFIER;
    }
    bk::NameParts name;
    bk::NameParts template_name;
    const bk::NameKind kind = bk::classify_name(characters(), name, template_name);
    if (kind == bk::NameKind::identifier) {
        take_name(name);
    } else if (kind == bk::NameKind::invalid) {
        type_ = TYPE_INVALID;
        length_ = static_cast<unsigned int>(name.base.size());
        string_stale_ = true;
    }
    return type_ == TYPE_IDENTIFIER;
}

/// Makes the templates before it changes the word, because making them may throw.
void ParserWord::take_name(bk::NameParts parts) const {
    const auto take_level = [](const ParserWord& word, const bk::NameParts& level) {
        word.type_ = TYPE_IDENTIFIER;
        word.length_ = static_cast<unsigned int>(level.base.size());
        if (level.array_count != bk::no_array) { // a name without a count keeps the one of an earlier name
            word.array_count_ = level.array_count;
        }
        word.string_stale_ = true;
    };
    const bk::NameParts outermost = parts;
    std::shared_ptr<ParserWord> made;
    ParserWord* innermost = nullptr;
    while (parts.has_template) {
        auto inner = std::make_shared<ParserWord>();
        inner->text_ = text_;
        inner->start_ = static_cast<unsigned int>(parts.template_word.data() - text_);
        bk::NameParts level;
        bk::classify_name_level(parts.template_word, level);
        take_level(*inner, level);
        ParserWord* const next = inner.get();
        (innermost == nullptr ? made : innermost->template_) = std::move(inner);
        innermost = next;
        parts = level;
    }
    take_level(*this, outermost);
    if (made != nullptr) {
        template_ = std::move(made);
    }
}

bool ParserWord::is_value(ParserValue::Type& type) const {
    // The comparison with the empty tag decodes the word, and so decides whether a quoted word is a string.
    if (!is_empty_tag() && type_ == TYPE_UNKNOWN) {
        type_ = bk::classify_value(characters());
    }
    if (!is_value_type(type_)) {
        return false;
    }
    type = bk::value_type_of(type_);
    return true;
}

bool ParserWord::is_value_type(const Type& type) {
    return bk::is_value_kind(type);
}
