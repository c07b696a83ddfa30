#include "core/files/sys_reason_impl.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <system_error>

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#include <windows.h>
#endif

namespace bk {

namespace {

struct Reason {
    std::errc code;
    const char* text;
};

// The C library words these by the locale.
constexpr Reason reasons[] = {
    {std::errc::no_such_file_or_directory, no_such_file},
    {std::errc::permission_denied, "permission denied"},
    {std::errc::operation_not_permitted, "operation not permitted"},
    {std::errc::is_a_directory, "is a directory"},
    {std::errc::not_a_directory, "a part of the path is not a directory"},
    {std::errc::too_many_symbolic_link_levels, "too many levels of symbolic links"},
    {std::errc::filename_too_long, "file name too long"},
    {std::errc::too_many_files_open, "too many open files"},
    {std::errc::too_many_files_open_in_system, "too many open files in the system"},
    {std::errc::io_error, "input/output error"},
    {std::errc::no_space_on_device, "no space left on the device"},
    {std::errc::read_only_file_system, "read-only file system"},
    {std::errc::file_too_large, "file too large"},
    {std::errc::file_exists, "file exists"},
    {std::errc::text_file_busy, "the file is a program that is running"},
    {std::errc::device_or_resource_busy, "device or resource busy"},
    {std::errc::no_such_device, "no such device"},
    {std::errc::no_such_device_or_address, "no such device or address"},
    {std::errc::not_enough_memory, "out of memory"},
    {std::errc::invalid_argument, "invalid argument"},
    {std::errc::invalid_seek, "illegal seek"},
    {std::errc::broken_pipe, "broken pipe"},
    {std::errc::timed_out, "timed out"},
};

std::error_code last_error() noexcept {
#if defined(_WIN32)
    return {static_cast<int>(GetLastError()), std::system_category()};
#else
    return {errno, std::generic_category()};
#endif
}

} // namespace

void forget_system_reason() noexcept {
#if defined(_WIN32)
    SetLastError(0);
#else
    errno = 0;
#endif
}

std::string last_system_reason() {
    const std::error_code error = last_error();
    if (error.value() == 0) {
        return {};
    }
    const auto found = std::find_if(std::begin(reasons), std::end(reasons),
                                    [&error](const Reason& reason) { return error == reason.code; });
    return found != std::end(reasons) ? found->text : "system error " + std::to_string(error.value());
}

} // namespace bk
