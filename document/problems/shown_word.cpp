#include "document/problems/shown_word_impl.h"

#include "core/text/core_hexadecimal_impl.h"
#include "core/text/core_utf8_impl.h"

namespace bk_parser {

namespace {

constexpr std::size_t longest_word = 60;

void put_byte(std::string& out, char character) {
    char spelled[4] = {'\\', 'x'};
    bk::put_hexadecimal(spelled + 2, static_cast<unsigned char>(character));
    out.append(spelled, sizeof spelled);
}

} // namespace

std::string shown(std::string_view word) {
    std::string out = "'";
    std::size_t at = 0;
    while (at < word.size() && at < longest_word) {
        const std::size_t length = bk::utf8_length(word, at);
        const auto byte = static_cast<unsigned char>(word[at]);
        if (length == 0 || byte < 0x20 || byte == 0x7F) {
            put_byte(out, word[at]);
            ++at;
        } else {
            out += word.substr(at, length);
            at += length;
        }
    }
    out += at < word.size() ? "...'" : "'";
    return out;
}

std::string counted(std::size_t count, std::string_view thing) {
    return std::to_string(count) + ' ' + std::string(thing) + (count == 1 ? "" : "s");
}

} // namespace bk_parser
