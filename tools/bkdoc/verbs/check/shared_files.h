#pragma once

#include "platform/device_layer.h"

#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

namespace bkdoc {

/// While one lives, the library reads each regular file once and has it from memory from then on, in all threads; every other
/// path as it did before. So a file that a thousand documents include is looked for, opened and read once, and is the same for
/// all of them. Files of more than 4 MiB are not kept; of the others up to 64 MiB, the longest unused given up first.
class SharedFiles : public DeviceLayer {
public:
    SysPathInfo inspect(const std::string& path) override;
    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override;
    std::string current_folder() override { return current_folder_; }

private:
    static constexpr core_int64 largest_file = core_int64{4} << 20;
    static constexpr std::size_t most_bytes = std::size_t{64} << 20;
    static constexpr std::size_t bytes_of_entry = 512; // what is kept of a file beside its bytes, about

    struct File {
        std::mutex mutex; // held while the file is read
        SysPathInfo info;
        std::shared_ptr<const std::string> bytes; // null before it is read, and when it cannot be
        std::list<std::string>::iterator use;     // of uses_
        std::size_t cost = 0;                     // as it is counted in cost_
    };

    std::string key_of(const std::string& path) const;
    std::shared_ptr<File> find(const std::string& key);
    std::shared_ptr<File> find_or_add(const std::string& path);
    void count(const std::string& key, const std::shared_ptr<File>& file, std::size_t more);
    std::shared_ptr<const std::string> read(const std::string& path, core_int64 size);

    const std::string current_folder_ = beneath().current_folder();
    std::mutex mutex_; // of what follows
    std::unordered_map<std::string, std::shared_ptr<File>> files_;
    std::list<std::string> uses_; // keys, the one used last in front
    std::size_t cost_ = 0;
};

} // namespace bkdoc
