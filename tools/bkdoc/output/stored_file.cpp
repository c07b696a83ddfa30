#include "output/stored_file.h"

#include "document/save.h"
#include "output/hard_links.h"
#include "platform/paths.h"

namespace bkdoc {

std::string store_file(const std::string& path, std::string_view bytes, Streams& streams) {
    if (path.empty()) {
        return "'': no such file";
    }
    HardLinks links;
    links.note(path, path);
    std::string reason = bk_parser::replace_file(path_of(path), bytes);
    if (reason.empty()) {
        links.tell(streams, true);
    }
    return reason;
}

} // namespace bkdoc
