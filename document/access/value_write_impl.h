#pragma once

#include "document/values.h"

namespace bk_parser {

/// Writes values into an entry from position `value` on. With ListEnd::cut, removes the old values after them. Writes all or
/// none.
bool write_values(ParserEntry& entry, unsigned int value, std::span<const GivenValue> given,
                  access::ListEnd end);

/// Updates a declared array count that was equal to the number of values before.
class ArrayCount {
public:
    explicit ArrayCount(ParserEntry& entry) noexcept
        : entry_(entry), was_right_(entry.get_array_count() == entry.get_value_count()) {}

    void follow() noexcept {
        if (was_right_) {
            entry_.set_array(true, entry_.get_value_count());
        }
    }

private:
    ParserEntry& entry_;
    bool was_right_;
};

} // namespace bk_parser
