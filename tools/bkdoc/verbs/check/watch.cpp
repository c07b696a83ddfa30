#include "verbs/check/watch.h"

#include "input/options/config.h"
#include "output/display/text_display.h"
#include "platform/change_waiter.h"
#include "platform/interruption.h"
#include "platform/paths.h"

#include <map>
#include <set>
#include <utility>

namespace bkdoc {

namespace {

/// The properties that show whether a file changed.
struct Stamp {
    bool is_there = false;
    std::filesystem::file_time_type time{};
    std::uintmax_t size = 0;

    bool operator==(const Stamp&) const = default;
};
using Stamps = std::map<std::filesystem::path, Stamp>;

Stamp stamp_of(const std::filesystem::path& file) {
    std::error_code error;
    Stamp stamp;
    stamp.is_there = std::filesystem::is_regular_file(file, error);
    if (stamp.is_there) {
        stamp.time = std::filesystem::last_write_time(file, error);
        stamp.size = std::filesystem::file_size(file, error);
    }
    return stamp;
}

std::filesystem::path absolute_of(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::absolute(path, error).lexically_normal();
}

/// The watched files, and their state at the last look.
class Watched {
public:
    explicit Watched(const FileListOptions& list) : list_(list) { look(); }

    /// Watches the files of the last round from now on.
    void add(const std::vector<std::filesystem::path>& sources) {
        for (const std::filesystem::path& source : sources) {
            const std::filesystem::path path = absolute_of(source);
            if (sources_.insert(path).second) {
                stamps_.try_emplace(path, stamp_of(path));
            }
        }
    }

    /// The first file that changed; empty when none did.
    std::filesystem::path look() {
        Stamps now;
        for (const std::string& file : list_files(list_).files) {
            const std::filesystem::path path = absolute_of(path_of(file));
            now.emplace(path, stamp_of(path));
        }
        for (const std::filesystem::path& source : sources_) {
            now.emplace(source, stamp_of(source));
        }
        std::filesystem::path changed;
        for (const auto& [path, stamp] : now) {
            const auto before = stamps_.find(path);
            if (changed.empty() && (before == stamps_.end() || before->second != stamp)) {
                changed = path;
            }
        }
        for (const auto& [path, stamp] : stamps_) {
            if (changed.empty() && !now.contains(path)) {
                changed = path;
            }
        }
        stamps_ = std::move(now);
        return changed;
    }

    std::size_t file_count() const {
        std::size_t count = 0;
        for (const auto& [path, stamp] : stamps_) {
            count += stamp.is_there ? 1 : 0;
        }
        return count;
    }

    std::vector<std::filesystem::path> folders() const {
        std::set<std::filesystem::path> folders;
        for (const auto& [path, stamp] : stamps_) {
            folders.insert(path.parent_path());
        }
        for (const std::string& operand : list_.operands) {
            add_folders(path_of(operand), folders);
        }
        return {folders.begin(), folders.end()};
    }

private:
    static void add_folders(const std::filesystem::path& top, std::set<std::filesystem::path>& folders) {
        std::error_code error;
        if (!std::filesystem::is_directory(top, error)) {
            return;
        }
        folders.insert(absolute_of(top));
        std::filesystem::recursive_directory_iterator item(
            top, std::filesystem::directory_options::skip_permission_denied, error);
        for (; !error && item != end(item); item.increment(error)) {
            std::error_code ignored;
            if (text_of(item->path().filename()).starts_with('.')) {
                item.disable_recursion_pending();
            } else if (item->is_directory(ignored)) {
                folders.insert(absolute_of(item->path()));
            }
        }
    }

    const FileListOptions& list_;
    std::set<std::filesystem::path> sources_;
    Stamps stamps_;
};

} // namespace

ExitCode watch(const FileListOptions& list, Streams& streams, const std::function<WatchRound()>& check) {
    const Interruption interruption;
    Watched watched(list);
    while (!streams.out.has_failed()) {
        const WatchRound round = check();
        watched.add(round.sources);
        streams.out << "watching " << counted(watched.file_count(), "file", "files") << "; Ctrl-C ends\n";
        streams.out.flush();
        const ChangeWaiter waiter(watched.folders());
        std::filesystem::path changed = watched.look(); // changed before the waiter existed
        while (changed.empty()) {
            if (!waiter.wait()) {
                return EXIT_INTERRUPTED;
            }
            changed = watched.look();
        }
        streams.out << "\n" << shown(text_of(changed.filename()), file_name_limit) << " changed\n";
    }
    return EXIT_UNREADABLE;
}

} // namespace bkdoc
