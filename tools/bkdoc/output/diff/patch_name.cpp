#include "output/diff/patch_name.h"

#include "platform/paths.h"

#include <algorithm>

namespace bkdoc {

namespace {

/// Keeps ".." after a link to a folder, because it leads elsewhere there.
std::string without_steps_back(const std::string& name) {
    const std::filesystem::path path = path_of(name);
    const std::filesystem::path plain = path.lexically_normal();
    std::error_code failure;
    const bool is_same =
        !std::filesystem::exists(path, failure) || std::filesystem::equivalent(path, plain, failure);
    return slashed(is_same && !failure ? plain : path);
}

bool needs_quotes(char character) noexcept {
    const auto byte = static_cast<unsigned char>(character);
    return byte < ' ' || byte == '"' || byte == '\\' || byte == 0x7F;
}

std::string quoted(const std::string& name) {
    constexpr std::string_view special = "\a\b\t\n\v\f\r\"\\";
    constexpr std::string_view letters = "abtnvfr\"\\";
    std::string result = "\"";
    for (const char character : name) {
        const std::size_t at = special.find(character);
        if (at != std::string_view::npos) {
            result += {'\\', letters[at]};
        } else if (needs_quotes(character)) {
            const auto byte = static_cast<unsigned char>(character);
            result += {'\\', static_cast<char>('0' + byte / 64), static_cast<char>('0' + byte / 8 % 8),
                       static_cast<char>('0' + byte % 8)};
        } else {
            result += character;
        }
    }
    return result + "\"";
}

} // namespace

std::string patch_name(const std::string& name) {
    const std::string plain = without_steps_back(name);
    if (std::any_of(plain.begin(), plain.end(), needs_quotes)) {
        return quoted(plain);
    }
    return plain.find(' ') == std::string::npos ? plain : plain + "\t";
}

} // namespace bkdoc
