#include "output/stored_file.h"

#include "core/sys_file.h"
#include "input/log_keeper.h"
#include "output/display/text_display.h"

namespace bkdoc {

std::string store_file(const std::string& path, std::string_view bytes) {
    const LogKeeper quiet; // the reason is told here
    const std::string name = shown(path, file_name_limit);
    SysFile file;
    const auto size = static_cast<core_int64>(bytes.size());
    if (!file.open(CoreString(std::string_view(path)), SysFile::MODE_WRITE, SysFile::TYPE_BINARY)) {
        return name + ": cannot be opened for writing";
    }
    const bool is_taken = file.write(bytes.data(), size) == size;
    return file.close() && is_taken ? "" : name + ": cannot be stored";
}

} // namespace bkdoc
