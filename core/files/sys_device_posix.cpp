#if !defined(_WIN32)

#include "core/files/sys_device_impl.h"
#include "core/memory/core_immortal_impl.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace bk {
namespace {

constexpr std::size_t largest_transfer = std::size_t{1}
                                         << 30; // some systems refuse 2 GiB and more in one call
constexpr int most_links = 40;

// Repeats a call that a signal interrupted.
template <class Call>
auto retried(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

int open_file(const std::string& path, int flags, mode_t mode = 0) {
    return retried([&] { return ::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, mode); });
}

bool flush_to_disk(int file) {
    if (retried([&] { return ::fsync(file); }) == 0) {
        return true;
    }
    // A pipe and other files without a disk cannot be flushed.
    return errno == EINVAL || errno == EROFS || errno == ENOTSUP;
}

class PosixHandle final : public SysHandle {
public:
    PosixHandle() noexcept = default;
    ~PosixHandle() override { PosixHandle::close(); }

    core_int64 read(char* buffer, std::size_t size) override {
        const std::size_t part = size < largest_transfer ? size : largest_transfer;
        return retried([&] { return ::read(file_, buffer, part); });
    }
    core_int64 write(const char* data, std::size_t size) override {
        const std::size_t part = size < largest_transfer ? size : largest_transfer;
        return retried([&] { return ::write(file_, data, part); });
    }
    bool sync() override { return flush_to_disk(file_); }
    bool close() override {
        const int file = file_;
        file_ = -1;
        // Never repeat close after a signal: the descriptor is closed already and may belong to another file.
        return file < 0 || ::close(file) == 0 || errno == EINTR;
    }

    /// Keeps and closes a file that was opened; false when it was not.
    bool adopt(int file) noexcept {
        file_ = file;
        return file >= 0;
    }
    int file() const noexcept { return file_; }

private:
    int file_ = -1;
};

std::unique_ptr<SysHandle> open_existing(const std::string& path, int flags) {
    auto handle = std::make_unique<PosixHandle>();
    return handle->adopt(open_file(path, flags)) ? std::move(handle) : nullptr;
}

// Gives a file that owner, where this process may change owners, and that mode.
bool take_permissions(int file, const struct stat& from) {
    struct stat own {};
    if (::fstat(file, &own) != 0) {
        return false;
    }
    // Sets the mode last, because a change of owner clears the set-id bits.
    bool owned = own.st_uid == from.st_uid && own.st_gid == from.st_gid;
    owned = owned || ::fchown(file, from.st_uid, from.st_gid) == 0;
    const bool group_kept =
        owned || own.st_gid == from.st_gid || ::fchown(file, static_cast<uid_t>(-1), from.st_gid) == 0;
    mode_t mode = from.st_mode & 07777;
    if (!owned) {
        mode &= static_cast<mode_t>(~(S_ISUID | S_ISGID));
    }
    if (!group_kept) {
        mode &= static_cast<mode_t>(~S_IRWXG); // the new group must not get the old group's rights
    }
    return ::fchmod(file, mode) == 0;
}

int create_unique(const std::string& folder, mode_t mode, std::string& created_path) {
    for (int attempt = 0; attempt < temporary_name_attempts; ++attempt) {
        created_path = folder + temporary_name(static_cast<std::uint64_t>(::getpid()), attempt);
        const int file = open_file(created_path, O_WRONLY | O_CREAT | O_EXCL, mode);
        if (file >= 0 || errno != EEXIST) {
            return file;
        }
    }
    return -1;
}

// The target of the link at `path`, which may itself be a link; empty when `path` is no link.
std::string read_link(const std::string& path) {
    std::string target(256, '\0');
    for (;;) {
        const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
        if (length < 0) {
            return std::string();
        }
        if (static_cast<std::size_t>(length) < target.size()) {
            target.resize(static_cast<std::size_t>(length));
            return target;
        }
        target.resize(target.size() * 2);
    }
}

class PosixDevice final : public SysDevice {
public:
    SysPathInfo inspect(const std::string& path) override {
        struct stat found {};
        if (::stat(path.c_str(), &found) != 0) {
            return {};
        }
        if (S_ISREG(found.st_mode)) {
            return {SysPathKind::regular, found.st_size};
        }
        return {S_ISDIR(found.st_mode) ? SysPathKind::directory : SysPathKind::other, 0};
    }

    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override {
        return open_existing(path, O_RDONLY);
    }

    std::unique_ptr<SysHandle> open_in_place(const std::string& path) override {
        return open_existing(path, O_WRONLY);
    }

    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created_path) override {
        struct stat old {};
        const bool replaces = ::stat(target.c_str(), &old) == 0;
        if (replaces && ::access(target.c_str(), W_OK) != 0) {
            return nullptr; // a file that may not be written may not be replaced either
        }
        // Only the owner may open the new file until it has the old file's permissions.
        const mode_t mode = replaces ? 0600 : 0666;
        auto handle = std::make_unique<PosixHandle>();
        if (!handle->adopt(create_unique(std::string(folder_prefix(target, "/")), mode, created_path))) {
            return nullptr;
        }
        if (replaces && !take_permissions(handle->file(), old)) {
            handle->close();
            remove(created_path);
            return nullptr;
        }
        return handle;
    }

    bool replace(const std::string& from, const std::string& to) override {
        if (::rename(from.c_str(), to.c_str()) != 0) {
            return false;
        }
        sync_folder_of(to);
        return true;
    }

    bool remove(const std::string& path) override { return ::unlink(path.c_str()) == 0; }

    std::string resolve_links(const std::string& path) override {
        std::string place = path;
        for (int links = 0; links < most_links; ++links) {
            const std::string target = read_link(place);
            if (target.empty()) {
                return place;
            }
            std::string next(target[0] == '/' ? std::string_view() : folder_prefix(place, "/"));
            next += target;
            place = std::move(next);
        }
        return std::string();
    }

    std::string current_folder() override {
        std::string folder(256, '\0');
        while (::getcwd(folder.data(), folder.size()) == nullptr) {
            if (errno != ERANGE) {
                return std::string();
            }
            folder.resize(folder.size() * 2);
        }
        folder.resize(folder.find('\0'));
        return folder;
    }

private:
    // The new file has its name already and the old file is gone, so a failure here changes nothing now. After a
    // crash the folder has either of the two files, whole.
    static void sync_folder_of(const std::string& path) {
        const std::string_view prefix = folder_prefix(path, "/");
        const int folder = open_file(prefix.empty() ? "." : std::string(prefix), O_RDONLY | O_DIRECTORY);
        if (folder >= 0) {
            flush_to_disk(folder);
            ::close(folder);
        }
    }
};

} // namespace

SysDevice& platform_device() {
    static constinit Immortal<PosixDevice> device;
    return device.value;
}

} // namespace bk

#endif
