#if defined(_WIN32)

#include "core/files/sys_device_impl.h"
#include "core/files/sys_path_impl.h"
#include "core/memory/core_immortal_impl.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace bk {
namespace {

constexpr std::size_t largest_transfer = std::size_t{1} << 30; // the system counts in 32 bits
constexpr std::size_t longest_short_path = 240;                // a longer one must be marked as such
constexpr DWORD share_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

DWORD transfer_size(std::size_t size) {
    return static_cast<DWORD>(size < largest_transfer ? size : largest_transfer);
}

/// Empty when the text is not UTF-8.
std::wstring to_wide(const std::string& text) {
    const int size = static_cast<int>(text.size());
    const int length = ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    if (length > 0) {
        ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size, wide.data(), length);
    }
    return wide;
}

std::string to_utf8(const std::wstring& wide) {
    const int size = static_cast<int>(wide.size());
    const int length = ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(length), '\0');
    if (length > 0) {
        ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, text.data(), length, nullptr, nullptr);
    }
    return text;
}

// Runs a call that fills a buffer and returns the length, or the size needed when the buffer is too small.
template <class Call>
std::wstring wide_text(Call call) {
    std::wstring text(MAX_PATH, L'\0');
    DWORD length = call(text.data(), static_cast<DWORD>(text.size()));
    while (length >= text.size()) {
        text.resize(std::size_t{length} + 1);
        length = call(text.data(), static_cast<DWORD>(text.size()));
    }
    text.resize(length);
    return text;
}

std::wstring current_folder_wide() {
    return wide_text([](wchar_t* out, DWORD size) { return ::GetCurrentDirectoryW(size, out); });
}

/// A path of any length in the form that system calls take. A short path allocates no memory, because files are also removed and restored
/// when memory has run out.
class NativePath {
public:
    explicit NativePath(const std::string& path) {
        const int size = path.size() < longest_short_path ? static_cast<int>(path.size()) + 1 : 0;
        const int length = size == 0
                               ? 0
                               : ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, path.c_str(), size,
                                                       short_, static_cast<int>(longest_short_path));
        if (length == 0) {
            short_[0] = L'\0'; // of a text that is not UTF-8, which names no file
            long_ = long_path(path);
        }
    }

    const wchar_t* c_str() const noexcept { return long_.empty() ? short_ : long_.c_str(); }

private:
    static std::wstring long_path(const std::string& path) {
        std::wstring wide = to_wide(path);
        if (wide.size() < longest_short_path) {
            return wide;
        }
        const std::string full = full_path(path, to_utf8(current_folder_wide()), PathStyle::windows);
        if (full.starts_with("\\\\?\\") || full.starts_with("\\\\.\\")) {
            return to_wide(full);
        }
        return to_wide(full.starts_with("\\\\") ? "\\\\?\\UNC" + full.substr(1) : "\\\\?\\" + full);
    }

    wchar_t short_[longest_short_path] = {};
    std::wstring long_;
};

class WindowsHandle final : public SysHandle {
public:
    WindowsHandle() noexcept = default;
    ~WindowsHandle() override { WindowsHandle::close(); }

    core_int64 read(char* buffer, std::size_t size) override {
        DWORD got = 0;
        if (::ReadFile(file_, buffer, transfer_size(size), &got, nullptr) != 0) {
            return got;
        }
        return ::GetLastError() == ERROR_BROKEN_PIPE ? 0 : -1; // the writer's end of a pipe was closed
    }
    core_int64 write(const char* data, std::size_t size) override {
        DWORD taken = 0;
        return ::WriteFile(file_, data, transfer_size(size), &taken, nullptr) != 0 ? core_int64{taken} : -1;
    }
    bool sync() override {
        // A pipe and other files without a disk cannot be flushed.
        return ::GetFileType(file_) != FILE_TYPE_DISK || ::FlushFileBuffers(file_) != 0;
    }
    bool close() override {
        const HANDLE file = file_;
        file_ = INVALID_HANDLE_VALUE;
        return file == INVALID_HANDLE_VALUE || ::CloseHandle(file) != 0;
    }

    /// Keeps and closes a file that was opened; false when it was not.
    bool adopt(HANDLE file) noexcept {
        file_ = file;
        return file != INVALID_HANDLE_VALUE;
    }
    HANDLE file() const noexcept { return file_; }

private:
    HANDLE file_ = INVALID_HANDLE_VALUE;
};

HANDLE open_file(const NativePath& path, DWORD access, DWORD share, DWORD disposition, DWORD flags) {
    return ::CreateFileW(path.c_str(), access, share, nullptr, disposition, flags, nullptr);
}

std::unique_ptr<SysHandle> open_existing(const std::string& path, DWORD access, DWORD flags) {
    auto handle = std::make_unique<WindowsHandle>();
    const bool opened = handle->adopt(open_file(NativePath(path), access, share_all, OPEN_EXISTING, flags));
    return opened ? std::move(handle) : nullptr;
}

// Opens whatever is at a path, only to query it. Follows links.
bool open_to_ask(WindowsHandle& handle, const std::string& path) {
    return handle.adopt(open_file(NativePath(path), FILE_READ_ATTRIBUTES, share_all, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS));
}

// "NUL", "CON" and pipes are in no folder: their full paths begin with "\\.\".
bool is_device_path(const std::string& path) {
    const NativePath wide(path);
    const std::wstring full = wide_text(
        [&wide](wchar_t* out, DWORD size) { return ::GetFullPathNameW(wide.c_str(), size, out, nullptr); });
    return full.starts_with(L"\\\\.\\");
}

class WindowsDevice final : public SysDevice {
public:
    SysPathInfo inspect(const std::string& path) override {
        if (is_device_path(path)) {
            return {SysPathKind::other, 0};
        }
        WindowsHandle handle;
        BY_HANDLE_FILE_INFORMATION found;
        if (!open_to_ask(handle, path) || ::GetFileInformationByHandle(handle.file(), &found) == 0) {
            return {};
        }
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
            return {SysPathKind::directory, 0};
        }
        const core_uint64 size = (core_uint64{found.nFileSizeHigh} << 32) | found.nFileSizeLow;
        return {SysPathKind::regular, static_cast<core_int64>(size)};
    }

    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override {
        return open_existing(path, GENERIC_READ, FILE_FLAG_SEQUENTIAL_SCAN);
    }

    std::unique_ptr<SysHandle> open_in_place(const std::string& path) override {
        return open_existing(path, GENERIC_WRITE, 0);
    }

    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created_path) override {
        const DWORD attributes = ::GetFileAttributesW(NativePath(target).c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
            return nullptr; // a file that may not be written may not be replaced either
        }
        const std::string folder(folder_prefix(target, path_separators(PathStyle::windows)));
        auto handle = std::make_unique<WindowsHandle>();
        for (int attempt = 0; attempt < temporary_name_attempts; ++attempt) {
            created_path = folder + temporary_name(::GetCurrentProcessId(), attempt);
            // Only this process may open the file until it is whole. `replace` gives it the old file's permissions.
            if (handle->adopt(open_file(NativePath(created_path), GENERIC_WRITE, 0, CREATE_NEW,
                                        FILE_ATTRIBUTE_NORMAL))) {
                return handle;
            }
            if (::GetLastError() != ERROR_FILE_EXISTS) {
                return nullptr;
            }
        }
        return nullptr;
    }

    bool replace(const std::string& from, const std::string& to) override {
        const NativePath source(from);
        const NativePath target(to);
        // Keeps the old file's permissions and attributes, where there is an old file and the file system has them.
        if (::ReplaceFileW(target.c_str(), source.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr,
                           nullptr) != 0) {
            return true;
        }
        return ::MoveFileExW(source.c_str(), target.c_str(),
                             MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
    }

    bool remove(const std::string& path) override { return ::DeleteFileW(NativePath(path).c_str()) != 0; }

    std::string resolve_links(const std::string& path) override {
        const DWORD attributes = ::GetFileAttributesW(NativePath(path).c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
            return path;
        }
        WindowsHandle handle;
        if (!open_to_ask(handle, path)) {
            return std::string(); // a link that leads nowhere is not replaced by a file
        }
        return to_utf8(wide_text([&handle](wchar_t* out, DWORD size) {
            return ::GetFinalPathNameByHandleW(handle.file(), out, size, FILE_NAME_NORMALIZED);
        }));
    }

    std::string current_folder() override { return to_utf8(current_folder_wide()); }
};

} // namespace

SysDevice& platform_device() {
    static constinit Immortal<WindowsDevice> device;
    return device.value;
}

} // namespace bk

#endif
