#include "bench/peers/json_source.h"

#include <charconv>
#include <cstdint>
#include <string>
#include <vector>

namespace bench {

namespace {

using Kind = SceneValue::Kind;

bool is_letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

std::string identifier(std::string_view name) {
    std::string out(name);
    for (char& c : out) {
        if (!is_letter(c) && !(c >= '0' && c <= '9')) {
            c = '_';
        }
    }
    const bool is_name = !out.empty() && is_letter(out.front()) && out != "yes" && out != "no";
    return is_name ? out : "_" + out;
}

void append_utf8(std::string& out, unsigned int code) {
    const auto byte = [&out](unsigned int value) { out += static_cast<char>(value); };
    if (code < 0x80) {
        byte(code);
    } else if (code < 0x800) {
        byte(0xC0 | code >> 6);
        byte(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        byte(0xE0 | code >> 12);
        byte(0x80 | (code >> 6 & 0x3F));
        byte(0x80 | (code & 0x3F));
    } else {
        byte(0xF0 | code >> 18);
        byte(0x80 | (code >> 12 & 0x3F));
        byte(0x80 | (code >> 6 & 0x3F));
        byte(0x80 | (code & 0x3F));
    }
}

/// Recurses: only the person who measures chooses what it reads.
class JsonReader {
public:
    JsonReader(std::string_view text, SceneSink& sink) : rest_(text), sink_(sink) {}

    bool document() {
        take_blanks();
        return members() && (take_blanks(), rest_.empty());
    }

private:
    struct Scalar {
        Kind kind;
        std::string text;
    };

    void take_blanks() {
        const std::size_t end = rest_.find_first_not_of(" \t\r\n");
        rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end);
    }
    char next() const { return rest_.empty() ? '\0' : rest_.front(); }
    bool take(char c) {
        take_blanks();
        if (next() != c) {
            return false;
        }
        rest_.remove_prefix(1);
        take_blanks();
        return true;
    }
    bool take_word(std::string_view word) {
        if (!rest_.starts_with(word)) {
            return false;
        }
        rest_.remove_prefix(word.size());
        return true;
    }

    bool members() {
        if (!take('{')) {
            return false;
        }
        if (take('}')) {
            return true;
        }
        do {
            std::string name;
            if (!string(name) || !take(':') || !named(identifier(name))) {
                return false;
            }
        } while (take(','));
        return take('}');
    }

    bool group(const std::string& name) {
        sink_.begin_group(name, "");
        const bool is_read = members();
        sink_.end_group();
        return is_read;
    }

    bool named(const std::string& name) {
        if (next() == '{') {
            return group(name);
        }
        if (next() == '[') {
            return list(name);
        }
        Scalar value;
        if (!scalar(value)) {
            return false;
        }
        put(SceneShape::plain, name, {value});
        return true;
    }

    bool list(const std::string& name) {
        take('[');
        if (take(']')) {
            sink_.begin_group(name, "");
            sink_.end_group();
            return true;
        }
        if (next() == '{') {
            return items(name);
        }
        if (next() == '[') {
            sink_.begin_group(name, "");
            const bool is_read = items("item");
            sink_.end_group();
            return is_read;
        }
        std::vector<Scalar> values;
        do {
            if (!scalar(values.emplace_back())) {
                return false;
            }
        } while (take(','));
        put(SceneShape::array, name, values);
        return take(']');
    }

    bool items(const std::string& name) {
        do {
            if (!named(name)) {
                return false;
            }
        } while (take(','));
        return take(']');
    }

    void put(SceneShape shape, const std::string& name, const std::vector<Scalar>& scalars) {
        std::vector<SceneValue> values;
        for (const Scalar& scalar : scalars) {
            values.push_back({scalar.kind, scalar.text});
        }
        sink_.entry(shape, name, values);
    }

    bool scalar(Scalar& value) {
        if (next() == '"') {
            value.kind = Kind::string;
            return string(value.text);
        }
        if (take_word("null")) {
            value = {Kind::string, ""};
            return true;
        }
        if (take_word("true")) {
            value = {Kind::flag, "yes"};
            return true;
        }
        if (take_word("false")) {
            value = {Kind::flag, "no"};
            return true;
        }
        return number(value);
    }

    bool number(Scalar& value) {
        const std::size_t end = rest_.find_first_not_of("+-.0123456789eE");
        value.text = rest_.substr(0, end);
        rest_.remove_prefix(value.text.size());
        for (char& c : value.text) {
            c = c == 'E' ? 'e' : c;
        }
        std::int32_t integer = 0;
        const char* const last = value.text.data() + value.text.size();
        const auto [stop, fault] = std::from_chars(value.text.data(), last, integer);
        const bool is_integer = stop == last && fault == std::errc();
        value.kind = is_integer ? Kind::integer : Kind::decimal;
        if (!is_integer && value.text.find('.') == std::string::npos) {
            const std::size_t exponent = value.text.find('e');
            value.text.insert(exponent == std::string::npos ? value.text.size() : exponent, ".0");
        }
        return !value.text.empty();
    }

    bool string(std::string& out) {
        if (next() != '"') {
            return false;
        }
        rest_.remove_prefix(1);
        while (!rest_.empty() && next() != '"') {
            const char c = next();
            rest_.remove_prefix(1);
            if (c == '\\') {
                escape(out);
            } else {
                out += c;
            }
        }
        for (char& c : out) {
            const bool is_control = (c >= 0 && c < ' ' && c != '\n' && c != '\r' && c != '\t') || c == '\x7F';
            c = is_control ? '?' : c;
        }
        if (!out.empty() && out.back() == '\\') {
            out += ' '; // not every form can carry a string that ends in a backslash
        }
        return take('"');
    }

    void escape(std::string& out) {
        constexpr std::string_view letters = "bfnrt";
        constexpr std::string_view meanings = "\b\f\n\r\t";
        const char c = next();
        rest_.remove_prefix(rest_.empty() ? 0 : 1);
        if (c == 'u') {
            unsigned int code = hexadecimal();
            if (code >= 0xD800 && code < 0xDC00 && take_word("\\u")) {
                code = 0x10000 + ((code - 0xD800) << 10) + ((hexadecimal() - 0xDC00) & 0x3FF);
            }
            append_utf8(out, code >= 0xD800 && code < 0xE000 ? '?' : code);
        } else {
            const std::size_t place = letters.find(c);
            out += place == std::string_view::npos ? c : meanings[place];
        }
    }

    unsigned int hexadecimal() {
        unsigned int code = 0;
        const std::string_view digits = rest_.substr(0, 4);
        std::from_chars(digits.data(), digits.data() + digits.size(), code, 16);
        rest_.remove_prefix(digits.size());
        return code;
    }

    std::string_view rest_;
    SceneSink& sink_;
};

} // namespace

bool read_json(std::string_view text, SceneSink& sink) {
    return JsonReader(text, sink).document();
}

} // namespace bench
