#include "document/sources/file_bytes_impl.h"

#include "core/files/sys_file_input_impl.h"
#include "core/files/sys_reason_impl.h"
#include "core/sys_device.h"
#include "document/sources/byte_hash_impl.h"
#include "document/sources/path_text_impl.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace bk_parser {

namespace {

constexpr std::size_t piece_size = std::size_t{1} << 16; // hashed while it is in the processor's cache

constexpr core_uint64 head_size = 4096;

/// Whether the size of a file is known before it is read. For a pipe or a device it is not.
bool is_size_known(const std::string& path) {
    const SysPathInfo info = SysDevice::get().inspect(path);
    return info.kind == SysPathKind::regular && info.size != 0;
}

/// Whether the path is a character or block device, which may have no end. A pipe has one. SysDevice reports both as `other`, so this asks
/// the system. A file that only a host's own SysDevice knows does not exist for the system.
bool is_endless(const std::string& path, SysPathKind kind) {
    if (kind != SysPathKind::other) {
        return false;
    }
    std::error_code error;
    const std::filesystem::file_type type = std::filesystem::status(path_of_text(path), error).type();
    return !error &&
           (type == std::filesystem::file_type::character || type == std::filesystem::file_type::block);
}

/// The last reason, or a general one when the device gives none.
std::string reason_or(const char* general) {
    std::string reason = bk::last_system_reason();
    return reason.empty() ? general : reason;
}

/// Reads until the file ends. The file may have become longer or shorter since it was opened, so this asks for one byte more than its
/// size, to see the end.
bool read_pieces(bk::FileInput& input, core_uint64 most, FileBytes& file, Meter& meter) {
    ByteHash hash;
    std::size_t have = 0;
    const core_uint64 largest = std::min<core_uint64>(most + 1, CoreString::max_length);
    core_uint64 room = static_cast<core_uint64>(input.size()) + 1;
    for (bool is_whole = false; !is_whole;) {
        if (have == room) {
            room += room / 2 + 1; // the file has grown
        }
        room = std::min(room, largest);
        char* const bytes = file.bytes.resize(static_cast<unsigned int>(room));
        const std::size_t wanted = std::min<std::size_t>(piece_size, static_cast<std::size_t>(room) - have);
        const std::size_t got = input.read(bytes + have, wanted);
        hash.add({bytes + have, got});
        have += got;
        file.facts.add({bytes, have}, have - got);
        is_whole = got < wanted || wanted == 0;
        meter.reach(have);
    }
    file.is_too_large = have > most;
    file.bytes.resize(static_cast<unsigned int>(have));
    file.hash = hash.finish();
    return input.close();
}

} // namespace

std::string why_no_file(SysPathKind kind) {
    switch (kind) {
    case SysPathKind::missing:
        return reason_or(bk::no_such_file);
    case SysPathKind::directory:
        return "is a directory";
    default:
        return {};
    }
}

FileBytes read_file(const std::string& path, core_uint64 most, const Meter::Range& range, Meter& meter) {
    FileBytes file;
    if (path.empty() || path.find('\0') != std::string::npos) {
        file.reason = bk::no_such_file;
        return file;
    }
    bk::forget_system_reason();
    const SysPathInfo info = SysDevice::get().inspect(path);
    const SysPathKind kind = info.kind;
    file.reason = why_no_file(kind);
    if (!file.reason.empty()) {
        return file;
    }
    if (is_endless(path, kind)) {
        file.reason = "is a device";
        return file;
    }
    bk::FileInput input;
    bk::forget_system_reason();
    if (!input.open(path, info,
                    static_cast<core_int64>(std::min(most, CoreString::max_length + core_uint64{0})))) {
        file.reason = reason_or("cannot be opened");
        return file;
    }
    const auto size = static_cast<core_uint64>(input.size());
    if (size > most) {
        file.is_too_large = true;
        file.size = is_size_known(path) ? size : 0;
        char* const bytes =
            file.bytes.resize(static_cast<unsigned int>(std::min<core_uint64>(head_size, size)));
        file.bytes.resize(static_cast<unsigned int>(input.read(bytes, file.bytes.get_length())));
        return file;
    }
    meter.start(range, static_cast<std::size_t>(size));
    bk::forget_system_reason();
    if (!read_pieces(input, most, file, meter)) {
        file.reason = reason_or("cannot be read");
        file.bytes.clear();
    }
    meter.stop(file.bytes.get_length());
    return file;
}

} // namespace bk_parser
