#include "core/text/core_text_buffer_impl.h"

#include "core/text/core_room_impl.h"

#include <algorithm>

namespace bk {

bool TextBuffer::grow(std::size_t size) {
    constexpr core_uint64 first_room = 64;
    const core_uint64 needed = core_uint64{length()} + size;
    if (needed > CoreString::max_length) {
        is_too_long_ = true;
        return false;
    }
    const unsigned int used = length();
    const core_uint64 grown = std::max(next_room(used), first_room);
    const core_uint64 room = std::min<core_uint64>(std::max(needed, grown), CoreString::max_length);
    begin_ = out_.resize(static_cast<unsigned int>(room));
    end_ = begin_ + used;
    limit_ = begin_ + room;
    return true;
}

} // namespace bk
