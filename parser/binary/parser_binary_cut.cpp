#include "parser/binary/parser_binary_cut_impl.h"

#include "core/reports/core_diagnostic_impl.h"

namespace bk {

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

void report_open_string() {
    report_warning("ParserValue.bin_to_string: Failed to parse string\n");
}

std::string_view take_string(ByteCursor& cursor) {
    std::string_view text;
    if (!cut_string(cursor, text)) {
        report_open_string();
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
