#include "document/paths/path_scanner_impl.h"

#include "core/text/core_hexadecimal_impl.h"
#include "core/text/core_utf8_impl.h"

namespace bk_parser {

namespace {

void put_escaped(std::string& out, char character) {
    const auto byte = static_cast<unsigned char>(character);
    switch (character) {
    case '"':
    case '\\':
        out += '\\';
        out += character;
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
        if (byte >= ' ' && byte < 0x7F) {
            out += character;
        } else {
            char spelled[4] = {'\\', 'x'};
            bk::put_hexadecimal(spelled + 2, byte);
            out.append(spelled, sizeof spelled);
        }
        break;
    }
}

} // namespace

std::string path_string(TextRef given) {
    const std::string_view text = given.view();
    std::string out = "\"";
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = bk::utf8_length(text, i);
        if (length > 1) {
            out += text.substr(i, length);
            i += length;
        } else {
            put_escaped(out, text[i++]);
        }
    }
    return out += '"';
}

std::string path_name(TextRef given) {
    const std::string_view name = given.view();
    PathScanner scanner(name);
    std::string bare;
    return scanner.take_bare_name(bare) && scanner.is_at_end() ? bare : path_string(name);
}

} // namespace bk_parser
