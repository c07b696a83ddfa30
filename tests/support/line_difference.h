#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

/// How many lines of two texts together are not in their longest common subsequence.
inline std::size_t changed_lines(std::string_view left, std::string_view right) {
    const auto lines_of = [](std::string_view text) {
        std::vector<std::string_view> lines;
        while (!text.empty()) {
            const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
            lines.push_back(text.substr(0, end));
            text.remove_prefix(end);
        }
        return lines;
    };
    const std::vector<std::string_view> a = lines_of(left);
    const std::vector<std::string_view> b = lines_of(right);
    std::vector<std::size_t> common(b.size() + 1);
    for (const std::string_view line : a) {
        std::size_t diagonal = 0;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t above = common[j + 1];
            common[j + 1] = line == b[j] ? diagonal + 1 : std::max(above, common[j]);
            diagonal = above;
        }
    }
    return a.size() + b.size() - 2 * common[b.size()];
}
