#include "document/load/form_impl.h"

#include "parser/archive/parser_archive_impl.h"
#include "parser/binary/parser_binary_impl.h"
#include "parser/cipher/parser_cipher_impl.h"

#include <algorithm>
#include <cstddef>

namespace bk_parser {

namespace {

bool begins_nearly_with(std::string_view bytes, std::string_view mark) noexcept {
    std::size_t wrong = 0;
    for (std::size_t i = 0; i < mark.size(); ++i) {
        wrong += bytes[i] == mark[i] ? 0 : 1;
    }
    return wrong == 1;
}

} // namespace

Form form_of(std::string_view bytes) noexcept {
    if (bytes.starts_with(bk::binary_tag)) {
        return Form::binary;
    }
    if (bytes.starts_with(bk::cipher_magic)) {
        return Form::enciphered;
    }
    return bytes.starts_with(bk::archive_magic) ? Form::archive : Form::text;
}

Form likely_form_of(std::string_view bytes) noexcept {
    const Form form = form_of(bytes);
    constexpr std::size_t looked_at = 64;
    const bool has_nul = bytes.substr(0, looked_at).find('\0') != std::string_view::npos;
    if (form != Form::text || bytes.size() < bk::binary_tag.size()) {
        return form;
    }
    if (has_nul && begins_nearly_with(bytes, bk::binary_tag)) {
        return Form::binary;
    }
    if (has_nul && begins_nearly_with(bytes, bk::archive_magic)) {
        return Form::archive;
    }
    const bool is_text = std::none_of(bytes.begin(), bytes.end(), [](char byte) {
        const auto code = static_cast<unsigned char>(byte);
        return code < 0x20 && byte != '\n' && byte != '\r' && byte != '\t';
    });
    return !is_text && begins_nearly_with(bytes, bk::cipher_magic) ? Form::enciphered : Form::text;
}

} // namespace bk_parser
