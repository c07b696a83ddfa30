#include "output/stored_file.h"

#include "document/save.h"
#include "platform/paths.h"

namespace bkdoc {

std::string store_file(const std::string& path, std::string_view bytes) {
    return path.empty() ? "'': no such file" : bk_parser::replace_file(path_of(path), bytes);
}

} // namespace bkdoc
