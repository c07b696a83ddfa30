#include "document/utf8.h"

#include "core/text/core_utf8_impl.h"

namespace bk_parser {

std::size_t utf8_length(std::string_view text, std::size_t position) noexcept {
    return bk::utf8_length(text, position);
}

std::size_t count_characters(std::string_view text) noexcept {
    return bk::count_characters(text);
}

} // namespace bk_parser
