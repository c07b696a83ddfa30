#include "verbs/check/shared_files.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

namespace bkdoc {

namespace {

class SharedHandle : public SysHandle {
public:
    explicit SharedHandle(std::shared_ptr<const std::string> bytes)
        : bytes_(std::move(bytes)), rest_(*bytes_) {}

    core_int64 read(char* buffer, std::size_t size) override {
        const std::size_t count = std::min(size, rest_.size());
        std::memcpy(buffer, rest_.data(), count);
        rest_.remove_prefix(count);
        return static_cast<core_int64>(count);
    }
    core_int64 write(const char*, std::size_t) override { return -1; }
    bool sync() override { return true; }
    bool close() override { return true; }

private:
    std::shared_ptr<const std::string> bytes_;
    std::string_view rest_;
};

} // namespace

// Inspects a file that is not kept each time anew, so that errno has the system's reason.
SysPathInfo SharedFiles::inspect(const std::string& path) {
    const std::shared_ptr<File> file = find_or_add(path);
    return file == nullptr ? beneath().inspect(path) : file->info;
}

std::unique_ptr<SysHandle> SharedFiles::open_for_reading(const std::string& path) {
    const std::shared_ptr<File> file = find_or_add(path);
    if (file == nullptr) {
        return beneath().open_for_reading(path);
    }
    std::unique_lock reading(file->mutex);
    if (file->bytes == nullptr) {
        file->bytes = read(path, file->info.size);
        if (file->bytes != nullptr) {
            const std::size_t size = file->bytes->size();
            reading.unlock();
            count(key_of(path), file, size);
            reading.lock();
        }
    }
    return file->bytes == nullptr ? beneath().open_for_reading(path)
                                  : std::make_unique<SharedHandle>(file->bytes);
}

/// Paths of documents may be relative to the current folder; those of includes are absolute.
std::string SharedFiles::key_of(const std::string& path) const {
    const bool is_absolute = path.starts_with('/') || path.starts_with('\\') || path.find(':') == 1;
    return is_absolute || path.empty() ? path : current_folder_ + '/' + path;
}

std::shared_ptr<SharedFiles::File> SharedFiles::find(const std::string& key) {
    const std::lock_guard lock(mutex_);
    const auto known = files_.find(key);
    if (known == files_.end()) {
        return nullptr;
    }
    uses_.splice(uses_.begin(), uses_, known->second->use);
    return known->second;
}

/// Returns null for a file that is not regular, that is too large, or that has size 0, as virtual files such as those in /proc
/// have.
std::shared_ptr<SharedFiles::File> SharedFiles::find_or_add(const std::string& path) {
    const std::string key = key_of(path);
    if (std::shared_ptr<File> known = find(key)) {
        return known;
    }
    const SysPathInfo info = beneath().inspect(path);
    if (info.kind != SysPathKind::regular || info.size <= 0 || info.size > largest_file) {
        return nullptr;
    }
    auto file = std::make_shared<File>();
    file->info = info;
    {
        const std::lock_guard lock(mutex_);
        const auto [known, is_new] = files_.emplace(key, file);
        if (!is_new) { // another thread was faster
            return known->second;
        }
        uses_.push_front(key);
        file->use = uses_.begin();
    }
    count(key, file, bytes_of_entry);
    return file;
}

/// Adds to the cost of a file, and drops the files unused for longest when the total is too large.
void SharedFiles::count(const std::string& key, const std::shared_ptr<File>& file, std::size_t more) {
    const std::lock_guard lock(mutex_);
    const auto known = files_.find(key);
    if (known == files_.end() || known->second != file) {
        return; // it was dropped already
    }
    file->cost += more;
    cost_ += more;
    while (cost_ > most_bytes && uses_.size() > 1) {
        const auto oldest = files_.find(uses_.back());
        cost_ -= oldest->second->cost;
        files_.erase(oldest);
        uses_.pop_back();
    }
}

/// Returns null when the read fails, and reads one byte more than the size, to see a file that has grown.
std::shared_ptr<const std::string> SharedFiles::read(const std::string& path, core_int64 size) {
    const std::unique_ptr<SysHandle> handle = beneath().open_for_reading(path);
    if (handle == nullptr) {
        return nullptr;
    }
    std::string bytes(static_cast<std::size_t>(size) + 1, '\0');
    std::size_t have = 0;
    core_int64 got = 1;
    while (have < bytes.size() && got > 0) {
        got = handle->read(bytes.data() + have, bytes.size() - have);
        have += got > 0 ? static_cast<std::size_t>(got) : 0;
    }
    if (got != 0 || !handle->close()) {
        return nullptr;
    }
    bytes.resize(have);
    return std::make_shared<const std::string>(std::move(bytes));
}

} // namespace bkdoc
