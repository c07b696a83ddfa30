#include "document/recover/cipher_salvage_impl.h"

#include "core/text/core_utf8_impl.h"
#include "document/load/failure_text_impl.h"
#include "parser/cipher/parser_cipher_impl.h"

#include <algorithm>

namespace bk_parser {

namespace {

constexpr std::size_t length_width = 8;
constexpr std::size_t word_width = 4;

/// Whether at most a quarter of the bytes are ones that no text has. Under a wrong key more than half are.
bool is_likely_text(std::string_view text) noexcept {
    constexpr std::size_t most_bad = 4;
    std::size_t bad = 0;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = bk::utf8_length(text, i);
        const auto byte = static_cast<unsigned char>(text[i]);
        const bool is_control = byte < 0x20 && byte != '\n' && byte != '\r' && byte != '\t';
        bad += length == 0 || is_control || byte == 0x7F ? 1 : 0;
        i += std::max<std::size_t>(length, 1);
    }
    return bad <= text.size() / most_bad;
}

/// The text without the bytes that fill its last word.
std::size_t size_without_padding(std::string_view text) noexcept {
    std::size_t size = text.size();
    while (size > 0 && text.size() - size < word_width - 1 && text[size - 1] == '\0') {
        --size;
    }
    return size;
}

/// Whether a text of this length would have filled these words.
bool is_exact(std::string_view present, std::uint64_t announced) noexcept {
    if (announced > present.size() || present.size() - announced >= word_width) {
        return false;
    }
    const auto size = static_cast<std::size_t>(announced);
    return present.find_first_not_of('\0', size) == std::string_view::npos &&
           (size == 0 || present[size - 1] != '\0');
}

} // namespace

bool salvage_cipher(std::string_view bytes, std::string_view key, CoreString& text, LostParts& lost) {
    const std::string_view block = bytes.substr(std::min(bk::cipher_magic.size(), bytes.size()));
    if (block.size() < length_width) {
        lost.cut_off(bytes.size(), length_width - block.size());
        return true;
    }
    const std::size_t stray = block.size() % word_width;
    const std::uint64_t announced = bk::decipher_words(block.substr(0, block.size() - stray), key, text);
    const std::string_view present = text.get_view();
    if (!is_likely_text(present.substr(0, size_without_padding(present)))) {
        return false;
    }
    if (stray != 0) {
        lost.add(bytes.size() - stray, stray, "a part of a word of 4 bytes");
    }
    if (is_exact(present, announced)) {
        text = CoreString(present.substr(0, static_cast<std::size_t>(announced)));
        return true;
    }
    const std::size_t size = size_without_padding(present);
    if (announced > present.size() && announced <= CoreString::max_length) {
        lost.cut_off(bytes.size(), announced - present.size());
    } else {
        lost.add(bk::cipher_magic.size(), length_width,
                 "the length of the text, which says " + grouped_number(announced) + "; " +
                     grouped_number(size) + " bytes are there");
    }
    text = CoreString(present.substr(0, size));
    return true;
}

} // namespace bk_parser
