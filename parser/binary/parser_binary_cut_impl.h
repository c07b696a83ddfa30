#pragma once

#include "core/text/core_bytes_impl.h"

#include <string_view>

namespace bk {

/// The characters up to a NUL, which is passed. False when there is none: the cursor is at the end then.
bool cut_string(ByteCursor& cursor, std::string_view& text) noexcept;

/// Bytes that follow their number. False when the buffer ends before they do: the cursor is at the end then.
bool cut_binary_data(ByteCursor& cursor, std::string_view& bytes) noexcept;

/// The same for readers that log: when something is missing, a warning and nothing.
std::string_view take_string(ByteCursor& cursor);
std::string_view take_binary_data(ByteCursor& cursor);

} // namespace bk
