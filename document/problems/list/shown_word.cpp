#include "document/problems/list/shown_word_impl.h"

#include "core/text/core_hexadecimal_impl.h"
#include "core/text/core_utf8_impl.h"

#include <algorithm>

namespace bk_parser {

namespace {

constexpr std::size_t longest_word = 60;

void put_byte(std::string& out, char character) {
    char spelled[4] = {'\\', 'x'};
    bk::put_hexadecimal(spelled + 2, static_cast<unsigned char>(character));
    out.append(spelled, sizeof spelled);
}

/// Appends the characters that begin before `end`, unprintable ones in hexadecimal. Returns where the next one begins.
std::size_t put_text(std::string& out, std::string_view text, std::size_t end) {
    std::size_t at = 0;
    while (at < end) {
        const std::size_t length = bk::utf8_length(text, at);
        const auto byte = static_cast<unsigned char>(text[at]);
        if (length == 0 || byte < 0x20 || byte == 0x7F) {
            put_byte(out, text[at]);
            ++at;
        } else {
            out += text.substr(at, length);
            at += length;
        }
    }
    return at;
}

} // namespace

std::string on_one_line(std::string_view message) {
    std::string out;
    put_text(out, message, message.size());
    return out;
}

std::string shown(std::string_view word) {
    std::string out = "'";
    const std::size_t at = put_text(out, word, std::min(word.size(), longest_word));
    out += at < word.size() ? "...'" : "'";
    return out;
}

std::string counted(std::size_t count, std::string_view thing) {
    return std::to_string(count) + ' ' + std::string(thing) + (count == 1 ? "" : "s");
}

} // namespace bk_parser
