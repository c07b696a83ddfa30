#include "core/numbers/core_number_impl.h"
#include "document/json/json_words_impl.h"
#include "document/json/read/json_tree_reader_impl.h"
#include "document/problems/list/problem_codes_impl.h"
#include "document/problems/list/shown_word_impl.h"
#include "document/problems/values/value_checks_impl.h"
#include "parser/words/parser_characters_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <algorithm>
#include <charconv>
#include <system_error>

/// Reads tagged values, and the texts and numbers of the shape.
namespace bk_parser {

namespace {

struct Tag {
    std::string_view key;
    ParserValue::Type type;
};

constexpr Tag word_tags[] = {{bool_key, ParserValue::TYPE_BOOL},
                             {char_key, ParserValue::TYPE_CHAR},
                             {int_key, ParserValue::TYPE_INT},
                             {double_key, ParserValue::TYPE_DOUBLE},
                             {word_key, ParserValue::TYPE_WORD}};

constexpr unsigned int largest_type = 0xFFFFFF;

/// Whether a text document reads it as one word, and as a value of this kind.
bool is_value_of_text(ParserValue::Type type, std::string_view word) {
    constexpr unsigned int cuts = bk::CHAR_BLANK | bk::CHAR_DELIMITER | bk::CHAR_QUOTE | bk::CHAR_TERMINATOR;
    const bool is_one_word = !word.empty() && std::none_of(word.begin(), word.end(), [](char character) {
        return bk::is_char(character, cuts);
    });
    const bool is_name =
        is_one_word && bk::is_char(word.front(), bk::CHAR_NAME_START); // as a value: yes or no
    return type != ParserValue::TYPE_WORD && is_one_word && is_name == (type == ParserValue::TYPE_BOOL) &&
           word.find("//") == std::string_view::npos && bk::value_type_of(bk::classify_value(word)) == type;
}

} // namespace

bool JsonTreeReader::take_tagged() {
    const std::string_view key = reader_.text();
    if (key == string_key) {
        std::string text;
        if (!read_escaped_text(text)) {
            return false;
        }
        tree_.add_value(ParserValue::TYPE_STRING, text, false);
        value_done();
        return true;
    }
    if (key == binary_key) {
        return take_binary();
    }
    if (key == type_key) {
        return take_type();
    }
    for (const Tag& tag : word_tags) {
        if (tag.key == key) {
            return take_tagged_word(tag.type);
        }
    }
    return shape_fault(shown(key) + " is not a tag of a value");
}

/// Reads the spelling: a string or, for a number, the number itself.
bool JsonTreeReader::take_tagged_word(ParserValue::Type type) {
    const Event event = reader_.next();
    std::string word;
    if (event == Event::number && type != ParserValue::TYPE_WORD && type != ParserValue::TYPE_BOOL) {
        word = reader_.text();
    } else if (!read_text(event, word)) {
        return false;
    }
    const std::size_t offset = reader_.offset();
    const std::size_t length = reader_.length();
    if (!read_object_end()) {
        return false;
    }
    if (type != ParserValue::TYPE_CHAR && !is_value_of_text(type, word)) {
        problems_.add(
            Severity::warning, codes::json_word,
            [&] { return shown(word) + " is not a value of that kind in a text, which cannot hold it"; },
            Spot{0, offset, length, offset});
    }
    tree_.add_value(type, word, false);
    value_done();
    return true;
}

bool JsonTreeReader::take_binary() {
    const Event event = reader_.next();
    if (event == Event::fault) {
        return syntax_fault();
    }
    scratch_.clear();
    if (event != Event::string || !resolve_base64(reader_.text(), scratch_)) {
        return shape_fault("binary data must be a string in base64, with padding");
    }
    if (!read_object_end()) {
        return false;
    }
    tree_.add_value(ParserValue::TYPE_BINARY_DATA, scratch_, false);
    value_done();
    return true;
}

/// Reads a value of an unnamed type, which has no content.
bool JsonTreeReader::take_type() {
    const Event event = reader_.next();
    unsigned int number = 0;
    if (event == Event::fault) {
        return syntax_fault();
    }
    if (event != Event::number || !take_whole(largest_type, number) || number <= ParserValue::TYPE_WORD) {
        return shape_fault("a type without a name is a number from 8 to 16777215");
    }
    if (!read_object_end()) {
        return false;
    }
    tree_.add_value(static_cast<ParserValue::Type>(number), {}, false);
    value_done();
    return true;
}

/// Reads a string, or an object with an escaped string.
bool JsonTreeReader::read_text(Event event, std::string& text) {
    if (event == Event::string) {
        text = reader_.text();
        return true;
    }
    if (event == Event::object) {
        event = reader_.next();
        if (event == Event::key && reader_.text() == string_key) {
            return read_escaped_text(text);
        }
    }
    return event == Event::fault ? syntax_fault() : shape_fault("a string is missing");
}

/// Reads the object from after its key to its end.
bool JsonTreeReader::read_escaped_text(std::string& text) {
    const Event event = reader_.next();
    if (event == Event::fault) {
        return syntax_fault();
    }
    text.clear();
    if (event != Event::string || !resolve_byte_escapes(reader_.text(), text)) {
        return shape_fault(
            "'$string' is a string with \\\\ for a backslash and \\x with two digits for a byte");
    }
    return read_object_end();
}

/// The number that was read, if it has no sign, point or exponent.
bool JsonTreeReader::take_whole(unsigned int most, unsigned int& number) {
    const std::string_view word = reader_.text();
    const auto read = std::from_chars(word.data(), word.data() + word.size(), number);
    if (read.ec == std::errc() && read.ptr == word.data() + word.size() && number <= most) {
        return true;
    }
    return shape_fault(shown(word) + " is not a whole number up to " + std::to_string(most));
}

bool JsonTreeReader::read_object_end() {
    const Event event = reader_.next();
    return event == Event::object_end ||
           (event == Event::fault ? syntax_fault() : shape_fault("the object may hold only one value"));
}

bool JsonTreeReader::shape_fault(std::string_view message) {
    add_problem(codes::json_shape, std::string(message), reader_.offset(), reader_.length());
    return false;
}

bool JsonTreeReader::syntax_fault() {
    add_problem(codes::json_syntax, std::string(reader_.text()), reader_.offset(), reader_.length());
    return false;
}

/// Warns of a number that no value can hold. The tree keeps its spelling, but a typed read returns another number.
void JsonTreeReader::warn_of_number(bool is_int) {
    const std::string_view word = reader_.text();
    if (is_plain_number(word, is_int, word.data() + word.size())) {
        return;
    }
    const ValueFlaw flaw = find_number_flaw(word, is_int);
    if (flaw.code == codes::number_out_of_range) {
        add_problem(flaw.code, flaw.text(word, flaw), reader_.offset(), reader_.length());
    }
}

void JsonTreeReader::add_problem(std::string_view code, std::string message, std::size_t offset,
                                 std::size_t length) {
    problems_.add(code, std::move(message), Spot{0, offset, length, offset});
}

} // namespace bk_parser
