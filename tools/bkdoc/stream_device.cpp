#include "stream_device.h"

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

SysPathInfo StreamDevice::inspect(const std::string& path) {
    if (names(path, input_path)) {
        return {SysPathKind::regular, static_cast<core_int64>(input_.size())};
    }
    if (names(path, output_path)) {
        return {SysPathKind::other, 0};
    }
    return beneath_.inspect(path);
}

std::unique_ptr<SysHandle> StreamDevice::open_for_reading(const std::string& path) {
    return names(path, input_path) ? std::make_unique<InputHandle>(input_) : beneath_.open_for_reading(path);
}

std::unique_ptr<SysHandle> StreamDevice::open_in_place(const std::string& path) {
    return names(path, output_path) ? std::make_unique<OutputHandle>(out_) : beneath_.open_in_place(path);
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
    return names(path, input_path) || names(path, output_path) ? path : beneath_.resolve_links(path);
}

std::string StreamDevice::current_folder() {
    return beneath_.current_folder();
}

} // namespace bkdoc
