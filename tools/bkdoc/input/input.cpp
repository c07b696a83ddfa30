#include "input/input.h"

#include "core/sys_device.h"
#include "core/sys_file.h"
#include "input/stream_device.h"

#include <algorithm>

namespace bkdoc {

namespace {

std::string why_missing(const std::string& path) {
    switch (SysDevice::get().inspect(path).kind) {
    case SysPathKind::directory:
        return "is a directory";
    case SysPathKind::missing:
        return "no such file";
    default:
        return "cannot be read";
    }
}

} // namespace

Input::Input(const std::string& argument, StreamDevice& device)
    : name_(argument == "-" ? "<stdin>" : argument) {
    find(argument, device);
    if (refusal_.empty()) {
        look_at_form();
    }
}

// An argument names a file as it stands: its absolute path keeps the search folders out of it.
void Input::find(const std::string& argument, StreamDevice& device) {
    const CoreString name{std::string_view(argument)};
    if (argument == "-") {
        path_ = SysFilesystem::get_full_file_path(StreamDevice::input_path).get_view();
        refusal_ = device.load_input() ? "" : "standard input cannot be read";
    } else if (argument.empty()) {
        refusal_ = "'': no such file";
    } else if (!SysFilesystem::file_exists(name)) {
        refusal_ = argument + ": " + why_missing(argument);
    } else {
        path_ = SysFilesystem::get_full_file_path(name).get_view();
        const bool reads_twice = device.inspect(path_).kind == SysPathKind::regular;
        refusal_ = reads_twice || device.hold(path_) ? "" : argument + ": cannot be read";
    }
}

// A file that cannot be opened is left to the reading, which says so.
void Input::look_at_form() {
    SysFile file;
    if (file.open(CoreString(std::string_view(path_)), SysFile::MODE_READ, SysFile::TYPE_BINARY)) {
        char mark[form_mark_size];
        size_ = file.get_size();
        const core_int64 count = std::max(file.read(mark, 1, sizeof mark), core_int64{0});
        form_ = form_of({mark, static_cast<std::size_t>(count)});
    }
}

bool Input::load(CoreVector<char>& bytes) const {
    SysFile file;
    if (size_ > CoreString::max_length ||
        !file.open(CoreString(std::string_view(path_)), SysFile::MODE_READ, SysFile::TYPE_BINARY)) {
        return false;
    }
    const auto size = static_cast<unsigned int>(size_);
    bytes.clear();
    bytes.reserve(size);
    return size == 0 || file.read(bytes.extend(size), 1, size_) == size_;
}

} // namespace bkdoc
