#include "input/files/input.h"

#include "core/sys_device.h"
#include "document/load.h"
#include "platform/paths.h"

#include <cstddef>
#include <cstdio>
#include <memory>

namespace bkdoc {

namespace {

/// The bytes of standard input, which can be read only once.
struct StandardInput {
    std::string bytes;
    bool is_whole = false;

    StandardInput() {
        char buffer[64 * 1024];
        while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, stdin)) {
            bytes.append(buffer, count);
        }
        is_whole = std::ferror(stdin) == 0;
    }
};

} // namespace

std::string why_unread(const std::string& path) {
    const bk_parser::LoadResult result = bk_parser::load(path_of(path));
    const std::string told = result.problems.empty() ? std::string() : result.problems.front().message;
    return told.starts_with(path + ": ") ? told.substr(path.size() + 2) : "cannot be read";
}

bool read_standard_input(std::string& bytes) {
    static const StandardInput input;
    bytes = input.bytes;
    return input.is_whole;
}

Input::Input(const std::string& operand) {
    if (operand == "-") {
        refusal = read_standard_input(bytes) ? "" : "standard input cannot be read";
        return;
    }
    const std::unique_ptr<SysHandle> handle =
        operand.empty() || SysDevice::get().inspect(operand).kind == SysPathKind::directory
            ? nullptr
            : SysDevice::get().open_for_reading(operand);
    char buffer[64 * 1024];
    core_int64 count = handle == nullptr ? -1 : 0;
    while (handle != nullptr && (count = handle->read(buffer, sizeof buffer)) > 0) {
        bytes.append(buffer, static_cast<std::size_t>(count));
    }
    if (count < 0) {
        refusal = operand.empty() ? "'': no such file" : operand + ": " + why_unread(operand);
    }
}

} // namespace bkdoc
