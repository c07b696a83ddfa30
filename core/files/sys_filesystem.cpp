#include "core/files/sys_filesystem_impl.h"

#include "core/files/sys_path_impl.h"
#include "core/reports/core_guard_impl.h"
#include "core/sys_device.h"
#include "core/sys_file.h"

#include <algorithm>
#include <string>

namespace bk {
namespace {

SysPathKind kind_of(std::string_view path) {
    if (path.empty() || path.find('\0') != std::string_view::npos) {
        return SysPathKind::missing;
    }
    return SysDevice::get().inspect(std::string(path)).kind;
}

} // namespace

bool is_file(std::string_view path) {
    const SysPathKind kind = kind_of(path);
    return kind == SysPathKind::regular || kind == SysPathKind::other;
}

bool is_regular_file(std::string_view path) {
    return kind_of(path) == SysPathKind::regular;
}

CoreString absolute_path(const CoreString& path) {
    const std::string current = SysDevice::get().current_folder();
    if (current.empty()) {
        return path; // the folder is gone
    }
    return CoreString(std::string_view(full_path(path.get_view(), current, native_path_style)));
}

namespace {

/// Removes the ".." steps of an absolute path. Follows at most `most_links_stepped` symbolic links that such steps leave.
std::string without_parent_steps(std::string path) {
    constexpr int most_links_stepped = 40;
    std::string place;
    int links = 0;
    for (std::size_t at = 0; at < path.size();) {
        const std::size_t end = std::min(path.find('/', at), path.size());
        const std::string_view step = std::string_view(path).substr(at, end - at);
        if (step == "..") {
            const std::string target = place.empty() ? place : SysDevice::get().resolve_links(place);
            if (!target.empty() && target != place && links++ < most_links_stepped) {
                path.replace(0, at, target + '/');
                place.clear();
                at = 0;
                continue;
            }
            place.erase(std::min(place.rfind('/'), place.size()));
        } else if (!step.empty() && step != ".") {
            (place += '/') += step;
        }
        at = end + 1;
    }
    return place.empty() ? "/" : place;
}

} // namespace

CoreString opened_path(const CoreString& path) {
    const std::string_view name = path.get_view();
    // Windows removes the steps before it looks for links.
    if (native_path_style == PathStyle::windows || name.find("..") == std::string_view::npos) {
        return absolute_path(path);
    }
    const std::string current = name.front() == '/' ? std::string() : SysDevice::get().current_folder();
    if (current.empty() && name.front() != '/') {
        return path; // the folder is gone
    }
    return CoreString(std::string_view(without_parent_steps(current + '/' + std::string(name))));
}

CoreString path_without_steps_back(const CoreString& path) {
    if (path.get_view().find("..") == std::string_view::npos) {
        return path;
    }
    const CoreString shortened(std::string_view(without_steps_back(path.get_view(), native_path_style)));
    const bool is_safe = kind_of(folder_of(path.get_view(), native_path_style)) == SysPathKind::directory &&
                         opened_path(path) == absolute_path(shortened);
    return is_safe ? shortened : path;
}

} // namespace bk

bool SysFilesystem::file_exists(const CoreString& path) {
    return bk::guarded("SysFilesystem.file_exists", false, [&] { return bk::is_file(path.get_view()); });
}

CoreString SysFilesystem::get_full_file_path(const CoreString& path) {
    CoreString full;
    bk::completed("SysFilesystem.get_full_file_path", [&] { full = bk::absolute_path(path); });
    return full;
}

CoreString SysFilesystem::get_folder(const CoreString& path) {
    CoreString folder;
    bk::completed("SysFilesystem.get_folder",
                  [&] { folder = CoreString(bk::folder_of(path.get_view(), bk::native_path_style)); });
    return folder;
}
