#include "output/hard_links.h"

#include "output/display/text_display.h"
#include "platform/paths.h"
#include "platform/platform.h"

namespace bkdoc {

void HardLinks::note(const std::string& path, const std::string& name) {
    std::error_code failure;
    const std::uintmax_t count = std::filesystem::hard_link_count(path_of(path), failure);
    if (failure || count < 2) {
        return;
    }
    Linked added{path, name, static_cast<std::size_t>(count - 1)};
    for (Linked& other : linked_) {
        if (are_same_file(other.path, path)) { // replaced as well
            --other.others;
            --added.others;
        }
    }
    linked_.push_back(std::move(added));
}

void HardLinks::tell(Streams& streams, bool is_done) const {
    for (const Linked& linked : linked_) {
        const std::string name = shown(linked.name, file_name_limit);
        if (linked.others == 0) {
            complain(streams, name + (is_done ? ": is" : ": would be") + " a file of its own" +
                                  (is_done ? " now" : "") + ", and no hard link");
        } else {
            complain(streams, name + ": " + counted(linked.others, "other hard link", "other hard links") +
                                  " to it" +
                                  (is_done ? linked.others == 1 ? " keeps" : " keep" : " would keep") +
                                  " the old content");
        }
    }
}

} // namespace bkdoc
