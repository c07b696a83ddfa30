#include "input/stream_device.h"

#include "core/sys_file.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace bkdoc {

namespace {

class InputHandle : public SysHandle {
public:
    explicit InputHandle(const std::string& text) : rest_(text) {}

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
    std::string_view rest_;
};

class OutputHandle : public SysHandle {
public:
    explicit OutputHandle(Output& out) : out_(out) {}

    core_int64 read(char*, std::size_t) override { return -1; }
    core_int64 write(const char* data, std::size_t size) override {
        out_ << std::string_view(data, size);
        return out_.has_failed() ? -1 : static_cast<core_int64>(size);
    }
    bool sync() override { return out_.flush(); }
    bool close() override { return out_.flush(); }

private:
    Output& out_;
};

class DraftHandle : public SysHandle {
public:
    explicit DraftHandle(std::string& draft) : draft_(draft) { draft_.clear(); }

    core_int64 read(char*, std::size_t) override { return -1; }
    core_int64 write(const char* data, std::size_t size) override {
        draft_.append(data, size);
        return static_cast<core_int64>(size);
    }
    bool sync() override { return true; }
    bool close() override { return true; }

private:
    std::string& draft_;
};

// No document is as long as this; a device that never ends must not fill the memory.
constexpr std::size_t unreadable_size = std::size_t{1} << 32;

// The absolute form differs where a drive is put in front.
bool names(const std::string& path, const char* stream) {
    return path == stream || path == SysFilesystem::get_full_file_path(stream).get_view();
}

} // namespace

StreamDevice::StreamDevice(Output& out) : beneath_(SysDevice::get()), out_(out) {
    SysDevice::set(this);
}

StreamDevice::~StreamDevice() {
    SysDevice::set(&beneath_);
}

bool StreamDevice::load_input() {
    if (loaded_) {
        return true;
    }
    char buffer[64 * 1024];
    while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, stdin)) {
        input_.append(buffer, count);
    }
    loaded_ = std::ferror(stdin) == 0;
    return loaded_;
}

bool StreamDevice::hold(const std::string& path) {
    const std::unique_ptr<SysHandle> handle = beneath_.open_for_reading(path);
    if (handle == nullptr) {
        return false;
    }
    std::string bytes;
    std::string piece(std::size_t{64} * 1024, '\0');
    core_int64 count = 0;
    while ((count = handle->read(piece.data(), piece.size())) > 0 && bytes.size() < unreadable_size) {
        bytes.append(piece, 0, static_cast<std::size_t>(count));
    }
    if (count == 0) {
        held_.insert_or_assign(path, std::move(bytes));
    }
    return count == 0;
}

const std::string* StreamDevice::in_memory(const std::string& path) const {
    if (names(path, input_path)) {
        return &input_;
    }
    if (names(path, draft_path)) {
        return &draft_;
    }
    const auto held = held_.find(path);
    return held == held_.end() ? nullptr : &held->second;
}

// What is written in place is neither a regular file nor, as long as it is empty, to be read: a draft becomes
// regular with its first byte.
SysPathInfo StreamDevice::inspect(const std::string& path) {
    if (names(path, output_path) || (draft_.empty() && names(path, draft_path))) {
        return {SysPathKind::other, 0};
    }
    if (const std::string* bytes = in_memory(path)) {
        return {SysPathKind::regular, static_cast<core_int64>(bytes->size())};
    }
    return beneath_.inspect(path);
}

std::unique_ptr<SysHandle> StreamDevice::open_for_reading(const std::string& path) {
    if (const std::string* bytes = in_memory(path)) {
        return std::make_unique<InputHandle>(*bytes);
    }
    return beneath_.open_for_reading(path);
}

std::unique_ptr<SysHandle> StreamDevice::open_in_place(const std::string& path) {
    if (names(path, draft_path)) {
        return std::make_unique<DraftHandle>(draft_);
    }
    if (names(path, output_path)) {
        return std::make_unique<OutputHandle>(out_);
    }
    return beneath_.open_in_place(path);
}

std::unique_ptr<SysHandle> StreamDevice::create_beside(const std::string& target, std::string& created_path) {
    return beneath_.create_beside(target, created_path);
}

bool StreamDevice::replace(const std::string& from, const std::string& to) {
    return beneath_.replace(from, to);
}

bool StreamDevice::remove(const std::string& path) {
    return beneath_.remove(path);
}

std::string StreamDevice::resolve_links(const std::string& path) {
    return names(path, output_path) || in_memory(path) != nullptr ? path : beneath_.resolve_links(path);
}

std::string StreamDevice::current_folder() {
    return beneath_.current_folder();
}

} // namespace bkdoc
