#include "core/files/sys_file_output_impl.h"

#include "core/files/sys_line_ends_impl.h"

#include <algorithm>
#include <utility>

namespace bk {
namespace {

constexpr std::size_t write_size = 65536;

} // namespace

FileOutput::~FileOutput() {
    try {
        discard();
    } catch (...) {
        return; // the file stays; its name shows that it is temporary
    }
}

bool FileOutput::open(const std::string& path, bool translates_text) {
    translates_text_ = translates_text;
    SysDevice& device = SysDevice::get();
    const SysPathKind kind = device.inspect(path).kind;
    if (kind == SysPathKind::directory) {
        return false;
    }
    if (kind == SysPathKind::other) {
        handle_ = device.open_in_place(path);
        return handle_ != nullptr;
    }
    target_ = device.resolve_links(path);
    if (target_.empty()) {
        return false;
    }
    std::string created;
    handle_ = device.create_beside(target_, created);
    if (handle_ != nullptr) {
        created_.swap(created);
    }
    return handle_ != nullptr;
}

std::size_t FileOutput::write(const char* data, std::size_t size) {
    if (!translates_text_) {
        return write_bytes(data, size);
    }
    std::string piece;
    std::size_t taken = 0;
    while (!failed_ && taken < size) {
        const std::size_t part = std::min(size - taken, write_size);
        piece.clear();
        append_with_cr_lf(piece, {data + taken, part});
        write_bytes(piece.data(), piece.size());
        taken += failed_ ? 0 : part;
    }
    return taken;
}

std::size_t FileOutput::write_bytes(const char* data, std::size_t size) {
    std::size_t taken = 0;
    while (!failed_ && taken < size) {
        const core_int64 part = handle_->write(data + taken, size - taken);
        failed_ = part <= 0;
        taken += failed_ ? 0 : static_cast<std::size_t>(part);
    }
    return taken;
}

bool FileOutput::close() {
    const bool stored = finish_handle();
    if (created_.empty()) {
        return stored;
    }
    if (stored && SysDevice::get().replace(created_, target_)) {
        created_.clear();
        return true;
    }
    discard();
    return false;
}

bool FileOutput::finish_handle() {
    if (handle_ == nullptr) {
        return false;
    }
    const bool flushed = !failed_ && handle_->sync();
    const bool closed = handle_->close();
    handle_.reset();
    return flushed && closed;
}

// An open file cannot be removed everywhere, so it is closed first.
void FileOutput::discard() {
    handle_.reset();
    if (!created_.empty()) {
        const std::string removed = std::exchange(created_, std::string());
        SysDevice::get().remove(removed);
    }
}

} // namespace bk
