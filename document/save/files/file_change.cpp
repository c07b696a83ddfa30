#include "document/save/files/file_change_impl.h"

#include "core/files/sys_filesystem_impl.h"
#include "core/reports/core_diagnostic_impl.h"
#include "core/sys_device.h"
#include "document/save/files/file_set_impl.h"
#include "document/sources/byte_hash_impl.h"
#include "document/sources/file_bytes_impl.h"
#include "document/sources/path_text_impl.h"

#include <new>
#include <stdexcept>
#include <utility>

namespace bk_parser {

namespace {

/// The bytes of a file. Sets a reason when it exists and cannot be read.
std::string stored_bytes(const std::string& path, std::string& reason) {
    const std::function<bool(double)> nobody;
    Meter meter(nobody);
    const FileBytes stored = read_file(path, CoreString::max_length, {}, meter);
    if (!stored.reason.empty() || stored.is_too_large) {
        reason = path + ": " + (stored.is_too_large ? "too large" : stored.reason);
    }
    return std::string(stored.bytes.get_view());
}

bool is_there(const std::string& path) {
    return SysDevice::get().inspect(path).kind == SysPathKind::regular;
}

std::string replace_all(std::span<const FileChange> changes) {
    FileSet files;
    for (const FileChange& change : changes) {
        const std::string path = path_text(change.path);
        std::string reason = why_no_name(path);
        if (!reason.empty()) {
            return reason;
        }
        const bool is_as_seen = is_there(path) == change.is_there &&
                                (!change.is_there || stored_bytes(path, reason) == change.before);
        if (!reason.empty() || !is_as_seen) {
            return reason.empty() ? path + ": has changed on the disk since it was loaded" : reason;
        }
        const KnownFile known{change.is_there, change.before.size(), ByteHash::of(change.before)};
        files.add(path, {}, change.after, known);
    }
    return files.replace();
}

/// Returns what the action returns, or "out of memory" when it runs out of memory.
template <class Action>
std::string reason_of(Action action) {
    const bk::KeptErrno kept;
    try {
        return action();
    } catch (const std::bad_alloc&) {
        return "out of memory"; // fits the string's own buffer, so allocates nothing
    } catch (const std::length_error&) {
        return "out of memory";
    }
}

} // namespace

FileChange change_of_file(const std::string& path, std::string&& after, std::string& reason) {
    FileChange change{path_of_text(path), {}, std::move(after), is_there(path)};
    if (change.is_there) {
        change.before = stored_bytes(path, reason);
    }
    return change;
}

std::string replace_files(std::span<const FileChange> changes) {
    return reason_of([changes] { return replace_all(changes); });
}

std::string replace_file(const std::filesystem::path& path, std::string_view bytes) {
    return reason_of([&] {
        FileSet files;
        files.add(path_text(path), {}, bytes);
        return files.replace();
    });
}

} // namespace bk_parser
