#pragma once

#include <string>
#include <string_view>

namespace bench {

inline std::string repeated(std::string_view part, unsigned int count) {
    std::string text;
    text.reserve(part.size() * count);
    for (unsigned int i = 0; i < count; ++i) {
        text += part;
    }
    return text;
}

} // namespace bench
