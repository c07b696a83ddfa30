#include "parser/binary/parser_binary_cut_impl.h"

#include "core/reports/core_diagnostic_impl.h"

namespace bk {

bool cut_string(ByteCursor& cursor, std::string_view& text) noexcept {
    const std::string_view rest = cursor.rest();
    const std::size_t size = rest.find('\0');
    if (size == std::string_view::npos) {
        cursor.move_to_end();
        return false;
    }
    cursor.skip(size + 1);
    text = rest.substr(0, size);
    return true;
}

bool cut_binary_data(ByteCursor& cursor, std::string_view& bytes) noexcept {
    const auto size = static_cast<std::uint32_t>(cursor.take<std::uint64_t>());
    const std::string_view rest = cursor.rest();
    if (size > rest.size()) {
        cursor.skip(rest.size());
        return false;
    }
    cursor.skip(size);
    bytes = rest.substr(0, size);
    return true;
}

std::string_view take_string(ByteCursor& cursor) {
    std::string_view text;
    if (!cut_string(cursor, text)) {
        report_warning("ParserValue.bin_to_string: Failed to parse string\n");
    }
    return text;
}

std::string_view take_binary_data(ByteCursor& cursor) {
    std::string_view bytes;
    if (!cut_binary_data(cursor, bytes)) {
        report_warning("ParserValue.bin_to_binary_data: Failed to parse string\n");
    }
    return bytes;
}

} // namespace bk
