#pragma once

#include "core/text/core_bytes_impl.h"

#include <cstddef>
#include <string_view>

namespace bk {

/// The characters up to a NUL, which is passed. False when there is none: the cursor is at the end then.
inline bool cut_string(ByteCursor& cursor, std::string_view& text) noexcept {
    const std::string_view rest = cursor.rest();
    const std::size_t size = rest.find('\0');
    if (size == std::string_view::npos) {
        cursor.move_to_end();
        return false;
    }
    cursor.move_to(cursor.position() + size + 1);
    text = rest.substr(0, size);
    return true;
}

/// Takes a number of bytes and then these bytes. Returns false when the buffer ends before; the cursor is then at the end.
bool cut_binary_data(ByteCursor& cursor, std::string_view& bytes) noexcept;

/// Logs that a string does not end.
void report_open_string();

/// Cut a string or binary data for readers that log: when something is missing, they log a warning and return nothing.
std::string_view take_string(ByteCursor& cursor);
std::string_view take_binary_data(ByteCursor& cursor);

} // namespace bk
