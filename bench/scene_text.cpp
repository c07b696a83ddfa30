#include "bench/scene_text.h"

namespace bench {

namespace {

std::string escaped(std::string_view text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        case '"':
        case '\'':
        case '\\':
            out += '\\';
            out += c;
            break;
        default:
            out += c;
        }
    }
    return out;
}

std::string spelled(const SceneValue& value) {
    if (value.kind != SceneValue::Kind::string) {
        return std::string(value.text);
    }
    return "\"" + escaped(value.text) + "\"";
}

} // namespace

void SceneText::begin_line() {
    text_.append(4 * depth_, ' ');
}

void SceneText::begin_group(std::string_view name, std::string_view template_name) {
    begin_line();
    text_ += name;
    if (!template_name.empty()) {
        text_ += '<';
        text_ += template_name;
        text_ += '>';
    }
    text_ += " {\n";
    ++depth_;
}

void SceneText::end_group() {
    --depth_;
    begin_line();
    text_ += "}\n";
}

void SceneText::entry(SceneShape shape, std::string_view name, std::span<const SceneValue> values) {
    begin_line();
    text_ += name;
    if (shape == SceneShape::array) {
        text_ += "[" + std::to_string(values.size()) + "]";
    }
    const bool is_call = shape == SceneShape::call;
    std::string_view before = is_call ? "(" : " ";
    for (const SceneValue& value : values) {
        text_ += before;
        text_ += spelled(value);
        before = is_call ? ", " : " ";
    }
    text_ += is_call ? ")\n" : "\n";
}

std::string make_scene_text(unsigned int value_count, std::uint64_t seed) {
    SceneText sink;
    make_scene(sink, value_count, seed);
    return sink.get_text();
}

} // namespace bench
