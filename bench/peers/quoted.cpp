#include "bench/peers/quoted.h"

namespace bench {

std::string quoted(std::string_view text) {
    std::string out = "\"";
    for (const char c : text) {
        switch (c) {
        case '"':
        case '\\':
            out += '\\';
            out += c;
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            out += c;
        }
    }
    return out + '"';
}

std::string spelled(const Value& value) {
    switch (value.kind) {
    case SceneValue::Kind::flag:
        return value.text == "yes" ? "true" : "false";
    case SceneValue::Kind::string:
        return quoted(value.text);
    default:
        return value.text;
    }
}

} // namespace bench
