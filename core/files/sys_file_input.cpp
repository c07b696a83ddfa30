#include "core/files/sys_file_input_impl.h"

#include <algorithm>
#include <cstring>

namespace bk {
namespace {

constexpr std::size_t piece_size = 65536;

} // namespace

bool FileInput::open(const std::string& path, bool translates_text, core_int64 most) {
    translates_text_ = translates_text;
    return open(path, SysDevice::get().inspect(path), most);
}

bool FileInput::open(const std::string& path, const SysPathInfo& info, core_int64 most) {
    if (info.kind == SysPathKind::missing || info.kind == SysPathKind::directory) {
        return false;
    }
    handle_ = SysDevice::get().open_for_reading(path);
    if (handle_ == nullptr) {
        return false;
    }
    size_ = info.size;
    // A pipe has no size before its end, and neither have files that the system generates while they are read: it gives 0
    // for these.
    if (info.kind == SysPathKind::other || size_ == 0) {
        read_all_ahead(most);
    }
    return true;
}

std::size_t FileInput::read(char* buffer, std::size_t size) {
    std::size_t have = take_ahead(buffer, size);
    while (have < size && !ended_) {
        if (translates_text_) {
            read_ahead();
            have += take_ahead(buffer + have, size - have);
            continue;
        }
        have += take(buffer + have, size - have);
    }
    taken_ += static_cast<core_int64>(have);
    return have;
}

// Ignores the result of closing: the bytes were read already.
bool FileInput::close() noexcept {
    handle_.reset();
    return !failed_;
}

/// Reads from the handle; 0 at the end, and at an error.
std::size_t FileInput::take(char* buffer, std::size_t size) {
    const core_int64 got = handle_->read(buffer, size);
    failed_ = failed_ || got < 0;
    ended_ = got <= 0;
    return ended_ ? 0 : static_cast<std::size_t>(got);
}

std::size_t FileInput::take_ahead(char* buffer, std::size_t size) {
    const std::size_t taken = std::min(size, ahead_.size() - ahead_at_);
    if (taken != 0) {
        std::memcpy(buffer, ahead_.data() + ahead_at_, taken);
        ahead_at_ += taken;
    }
    if (ahead_at_ == ahead_.size()) {
        ahead_.clear();
        ahead_at_ = 0;
    }
    return taken;
}

// Reads one more piece; returns its bytes in the file.
core_int64 FileInput::read_ahead() {
    const std::unique_ptr<char[]> piece(new char[piece_size]);
    const std::string_view bytes(piece.get(), take(piece.get(), piece_size));
    if (translates_text_) {
        line_ends_.append(ahead_, bytes);
    } else {
        ahead_.append(bytes);
    }
    if (ended_) {
        line_ends_.finish(ahead_);
        return 0;
    }
    return static_cast<core_int64>(bytes.size());
}

void FileInput::read_all_ahead(core_int64 most) {
    size_ = 0;
    while (!ended_) {
        size_ += read_ahead();
        if (size_ > most) {
            ended_ = true;
            std::string().swap(ahead_);
        }
    }
}

} // namespace bk
