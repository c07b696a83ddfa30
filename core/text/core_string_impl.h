#pragma once

#include "core/core_string.h"
#include "core/text/core_copy_impl.h"

#include <cstddef>
#include <cstring>
#include <string_view>

namespace bk {

/// Operations on strings for hot paths, in fewer steps than the public functions take.
class StringAccess {
public:
    /// Does the same as CoreString::set_borrowed. The string must be empty and own no block.
    static void show(CoreString& empty, std::string_view text) noexcept {
        const auto size = static_cast<unsigned int>(text.size());
        if (size <= CoreString::inline_capacity) {
            copy_short_text(empty.short_.text, text.data(), size);
            empty.short_.length = size;
        } else {
            empty.long_ = {size, 0, const_cast<char*>(text.data())};
        }
    }

    /// How many bytes `put` may write.
    static std::size_t put_room(const CoreString& text) noexcept {
        return text.is_inline() ? CoreString::inline_capacity + 1 : std::size_t{text.get_length()} + 1;
    }
    /// Stores the characters and a NUL, and returns the position after them.
    static char* put(char* out, const CoreString& text) noexcept {
        if (text.is_inline()) {
            std::memcpy(
                out, text.short_.text,
                sizeof(
                    text.short_
                        .text)); // copying all of it takes fewer instructions than copying the right length
        } else {
            copy_text(out, text.long_.data, text.get_length());
            out[text.get_length()] = '\0';
        }
        return out + text.get_length() + 1;
    }
};

} // namespace bk
