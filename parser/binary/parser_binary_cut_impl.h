#pragma once

#include "core/text/core_bytes_impl.h"

#include <string_view>

namespace bk {

/// The characters up to a NUL, which is passed. False when there is none: the cursor is at the end then.
bool cut_string(ByteCursor& cursor, std::string_view& text) noexcept;

/// Takes a number of bytes and then these bytes. Returns false when the buffer ends before; the cursor is then at the end.
bool cut_binary_data(ByteCursor& cursor, std::string_view& bytes) noexcept;

/// The same for readers that log: when something is missing, they log a warning and return nothing.
std::string_view take_string(ByteCursor& cursor);
std::string_view take_binary_data(ByteCursor& cursor);

} // namespace bk
