#include "command/arguments.h"

#include <algorithm>
#include <charconv>

namespace bkdoc {

const Arguments::Given* Arguments::find(std::string_view option) const noexcept {
    const auto found = std::find_if(given_.begin(), given_.end(),
                                    [option](const Given& given) { return given.name == option; });
    return found == given_.end() ? nullptr : &*found;
}

std::optional<std::string> Arguments::value(std::string_view option) const {
    const Given* const given = find(option);
    return given == nullptr ? std::nullopt : std::optional(given->value);
}

std::string Arguments::value_or(std::string_view option, std::string_view fallback) const {
    return value(option).value_or(std::string(fallback));
}

std::vector<std::string> Arguments::values(std::string_view option) const {
    std::vector<std::string> result;
    for (const Given& given : given_) {
        if (given.name == option) {
            result.push_back(given.value);
        }
    }
    return result;
}

std::size_t Arguments::number_or(std::string_view option, std::size_t fallback) const {
    const Given* const given = find(option);
    return given == nullptr ? fallback : whole_number(given->value).value_or(fallback);
}

std::optional<std::size_t> whole_number(std::string_view text) noexcept {
    std::size_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && !text.empty() ? std::optional(number)
                                                                                     : std::nullopt;
}

} // namespace bkdoc
