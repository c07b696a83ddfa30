#include "input/json_input.h"

#include "core/sys_device.h"
#include "platform/paths.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace bkdoc {

namespace {

using bk_parser::JsonShape;

constexpr std::size_t sample_size = 4096;
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
constexpr std::string_view blanks = " \t\r\n";

std::string_view behind_blanks(std::string_view text) noexcept {
    return text.substr(std::min(text.find_first_not_of(blanks), text.size()));
}

/// Whether a text begins like JSON: with an object whose first key is quoted or that is empty, or with an array of objects. No
/// text document begins so.
bool begins_as_json(std::string_view text) noexcept {
    if (text.starts_with(byte_order_mark)) {
        text.remove_prefix(byte_order_mark.size());
    }
    text = behind_blanks(text);
    const std::string_view inside = text.empty() ? text : behind_blanks(text.substr(1));
    return (text.starts_with('{') && (inside.starts_with('"') || inside.starts_with('}'))) ||
           (text.starts_with('[') && (inside.starts_with('{') || inside.starts_with(']')));
}

std::optional<JsonShape> shape_of_name(std::string_view operand) noexcept {
    if (operand.ends_with(".ndjson") || operand.ends_with(".jsonl")) {
        return JsonShape::lines;
    }
    return operand.ends_with(".json") ? std::optional(JsonShape::lossless) : std::nullopt;
}

/// Empty when the file cannot be read from its beginning again, as a pipe cannot.
std::string begin_of_file(const std::string& operand) {
    if (SysDevice::get().inspect(operand).kind != SysPathKind::regular) {
        return {};
    }
    const std::unique_ptr<SysHandle> handle = SysDevice::get().open_for_reading(operand);
    std::string sample(sample_size, '\0');
    const core_int64 count = handle == nullptr ? 0 : handle->read(sample.data(), sample_size);
    sample.resize(static_cast<std::size_t>(std::max<core_int64>(count, 0)));
    return sample;
}

} // namespace

bool is_json_input(const std::string& operand, std::string_view bytes, const OpenOptions& options) {
    return options.json || (options.reads_json && (shape_of_name(operand) || begins_as_json(bytes)));
}

bool is_json_file(const std::string& operand, const OpenOptions& options) {
    return !operand.empty() &&
           (options.json || (options.reads_json && is_json_input(operand, begin_of_file(operand), options)));
}

bk_parser::LoadResult read_json(const std::string& name, std::string_view bytes, const OpenOptions& options,
                                std::function<bool(double)> progress) {
    const bk_parser::LoadOptions load = options.load_options();
    bk_parser::JsonReadOptions read;
    read.shape = options.json;
    if (!read.shape && shape_of_name(name) == JsonShape::lines) {
        read.shape = JsonShape::lines;
    }
    read.file = path_of(name);
    read.limits = load.limits;
    read.allow = load.allow;
    read.progress = std::move(progress);
    return bk_parser::from_json(bytes, read);
}

} // namespace bkdoc
