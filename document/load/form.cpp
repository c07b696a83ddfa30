#include "document/load/form_impl.h"

#include "parser/archive/parser_archive_impl.h"
#include "parser/binary/parser_binary_impl.h"
#include "parser/cipher/parser_cipher_impl.h"

namespace bk_parser {

Form form_of(std::string_view bytes) noexcept {
    if (bytes.starts_with(bk::binary_tag)) {
        return Form::binary;
    }
    if (bytes.starts_with(bk::cipher_magic)) {
        return Form::enciphered;
    }
    return bytes.starts_with(bk::archive_magic) ? Form::archive : Form::text;
}

} // namespace bk_parser
