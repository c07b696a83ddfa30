#include "core/files/sys_filesystem_impl.h"

#include "core/files/sys_path_impl.h"
#include "core/reports/core_guard_impl.h"
#include "core/sys_device.h"
#include "core/sys_file.h"

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
