#include "core/files/sys_path_impl.h"

#include <algorithm>
#include <vector>

namespace bk {
namespace {

bool is_separator(char c, PathStyle style) {
    return c == '/' || (style == PathStyle::windows && c == '\\');
}

bool has_drive(std::string_view path) {
    const auto is_letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    return path.size() >= 2 && path[1] == ':' && is_letter(path[0]);
}

std::size_t end_of_step(std::string_view path, std::size_t from, PathStyle style) {
    return std::min(path.find_first_of(path_separators(style), from), path.size());
}

// The length of "\\server\share", or of a device's "\\.\name".
std::size_t share_length(std::string_view path, PathStyle style) {
    const std::size_t server_end = end_of_step(path, 2, style);
    return server_end == path.size() ? server_end : end_of_step(path, server_end + 1, style);
}

/// A path, cut into the part that no ".." step can leave and the steps after it.
struct CutPath {
    std::string_view device;   // "C:" or "\\server\share"; never anything on Posix
    bool from_root = false;    // whether a separator follows the device
    std::string_view relative; // the steps
};

CutPath cut_path(std::string_view path, PathStyle style) {
    CutPath cut;
    if (style == PathStyle::windows) {
        if (path.size() >= 2 && is_separator(path[0], style) && is_separator(path[1], style)) {
            cut.device = path.substr(0, share_length(path, style));
            cut.from_root = true;
        } else if (has_drive(path)) {
            cut.device = path.substr(0, 2);
        }
    }
    cut.relative = path.substr(cut.device.size());
    cut.from_root = cut.from_root || (!cut.relative.empty() && is_separator(cut.relative[0], style));
    return cut;
}

void add_steps(std::vector<std::string_view>& steps, std::string_view path, PathStyle style) {
    for (std::size_t at = 0; at < path.size();) {
        const std::size_t end = end_of_step(path, at, style);
        const std::string_view step = path.substr(at, end - at);
        if (step == "..") {
            if (!steps.empty()) {
                steps.pop_back();
            }
        } else if (!step.empty() && step != ".") {
            steps.push_back(step);
        }
        at = end + 1;
    }
}

bool same_device(std::string_view a, std::string_view b) {
    return has_drive(a) && has_drive(b) && (a[0] | 32) == (b[0] | 32);
}

} // namespace

std::string full_path(std::string_view path, std::string_view current_folder, PathStyle style) {
    if (path.empty()) {
        return std::string();
    }
    const CutPath cut = cut_path(path, style);
    const CutPath current = cut_path(current_folder, style);
    std::vector<std::string_view> steps;
    // "C:name" on another drive than the current one is taken from that drive's root.
    if (!cut.from_root && (cut.device.empty() || same_device(cut.device, current.device))) {
        add_steps(steps, current.relative, style);
    }
    add_steps(steps, cut.relative, style);

    const char separator = style == PathStyle::windows ? '\\' : '/';
    std::string full(cut.device.empty() ? current.device : cut.device);
    std::replace(full.begin(), full.end(), '/', separator);
    for (const std::string_view step : steps) {
        full += separator;
        full += step;
    }
    if (steps.empty()) {
        full += separator;
    }
    return full;
}

std::string without_steps_back(std::string_view path, PathStyle style) {
    const CutPath cut = cut_path(path, style);
    std::string result(cut.device);
    std::vector<std::size_t> names; // where the names begin that a ".." step can remove
    for (std::size_t at = 0; at < cut.relative.size();) {
        const std::size_t end = end_of_step(cut.relative, at, style);
        const std::string_view step = cut.relative.substr(at, end - at);
        const std::size_t next =
            std::min(cut.relative.find_first_not_of(path_separators(style), end), cut.relative.size());
        if (step == ".." && !names.empty()) {
            result.resize(names.back());
            names.pop_back();
        } else {
            if (!step.empty() && step != "." && step != "..") {
                names.push_back(result.size());
            }
            result += cut.relative.substr(at, next - at);
        }
        at = next;
    }
    return result.empty() && !path.empty() ? "." : result;
}

bool is_absolute_path(std::string_view path, PathStyle style) noexcept {
    return cut_path(path, style).from_root;
}

std::string_view folder_of(std::string_view path, PathStyle style) {
    const std::size_t last = path.find_last_of(path_separators(style));
    if (last == std::string_view::npos) {
        return std::string_view();
    }
    const std::size_t root = cut_path(path, style).device.size();
    return path.substr(0, last > root ? last : last + 1);
}

} // namespace bk
