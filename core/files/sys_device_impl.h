#pragma once

#include "core/sys_device.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace bk {

/// The operating system's device. It lives as long as the process.
SysDevice& platform_device();

/// How many names for a new file are tried while other files already have these names.
inline constexpr int temporary_name_attempts = 100;

/// A name for a file that is being written, in the folder of its target. If the writer dies, the file is of no use and may be deleted.
inline std::string temporary_name(std::uint64_t process, int attempt) {
    static constexpr char digits[] = "0123456789abcdef";
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    std::uint64_t mixed = static_cast<std::uint64_t>(now) + static_cast<std::uint64_t>(attempt);
    mixed = (mixed ^ (process << 32)) * 0x9E3779B97F4A7C15u;
    std::string name = ".bk_parser_new_";
    for (int shift = 60; shift >= 0; shift -= 4) {
        name += digits[(mixed >> shift) & 15];
    }
    return name;
}

/// The part of a path up to and with its last separator; empty when there is none.
inline std::string_view folder_prefix(std::string_view path, std::string_view separators) {
    const std::size_t last = path.find_last_of(separators);
    return last == std::string_view::npos ? std::string_view() : path.substr(0, last + 1);
}

} // namespace bk
