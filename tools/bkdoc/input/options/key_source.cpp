#include "input/options/key_source.h"

#include "core/sys_file.h"
#include "input/files/input.h"
#include "platform/platform.h"

namespace bkdoc {

namespace {

constexpr core_int64 largest_key_file = 1 << 20;

bool read_first_line(const std::string& path, std::string& line) {
    SysFile file;
    if (!file.open(CoreString(std::string_view(path)), SysFile::MODE_READ, SysFile::TYPE_BINARY)) {
        return false;
    }
    CoreString text;
    file.read(text, largest_key_file);
    if (!file.close()) {
        return false;
    }
    line = text.get_view().substr(0, text.get_view().find('\n'));
    if (line.ends_with('\r')) {
        line.pop_back();
    }
    return true;
}

// Refuses a key that begins with NUL: the library takes it for no key and would write readable text.
bool is_usable(const std::string& key) {
    return !key.empty() && key.front() != '\0';
}

} // namespace

std::optional<std::string> find_key(const KeySource& source, std::string& key) {
    if (source.key && source.file) {
        return "--key and --key-file are both given";
    }
    if (source.key) {
        key = *source.key;
        return is_usable(key) ? std::nullopt : std::optional<std::string>("--key: the key is empty");
    }
    if (source.file) {
        if (!read_first_line(*source.file, key)) {
            return "--key-file: " + *source.file + ": " + why_unread(*source.file);
        }
        return is_usable(key)
                   ? std::nullopt
                   : std::optional<std::string>(*source.file + ": the first line of the key file is empty");
    }
    key = environment_variable(KeySource::variable);
    return std::nullopt;
}

} // namespace bkdoc
