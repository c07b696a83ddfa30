#include "core/sys_device.h"
#include "core/sys_file.h"
#include "core/sys_path_impl.h"

#include <new>

bool SysFilesystem::file_exists(const CoreString& path) {
    try {
        const std::string_view view = path.get_view();
        if (view.empty() || view.find('\0') != std::string_view::npos) {
            return false;
        }
        const SysPathKind kind = SysDevice::get().inspect(std::string(view)).kind;
        return kind == SysPathKind::regular || kind == SysPathKind::other;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

CoreString SysFilesystem::get_full_file_path(const CoreString& path) {
    try {
        const std::string current = SysDevice::get().current_folder();
        if (current.empty()) {
            return path; // the folder is gone
        }
        return CoreString(std::string_view(bk::full_path(path.get_view(), current, bk::native_path_style)));
    } catch (const std::bad_alloc&) {
        return CoreString();
    }
}

CoreString SysFilesystem::get_folder(const CoreString& path) {
    try {
        return CoreString(bk::folder_of(path.get_view(), bk::native_path_style));
    } catch (const std::bad_alloc&) {
        return CoreString();
    }
}
