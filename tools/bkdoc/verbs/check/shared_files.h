#pragma once

#include "platform/device_layer.h"

#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

namespace bkdoc {

/// A cache of files for all threads. While it lives, the library reads each regular file once, so that a file that a thousand
/// documents include is found, opened and read once and is the same for all of them. Keeps up to 64 MiB, drops the files unused
/// for longest first, and never keeps a file of more than 4 MiB.
class SharedFiles : public DeviceLayer {
public:
    SysPathInfo inspect(const std::string& path) override;
    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override;
    std::string current_folder() override { return current_folder_; }

private:
    static constexpr core_int64 largest_file = core_int64{4} << 20;
    static constexpr std::size_t most_bytes = std::size_t{64} << 20;
    static constexpr std::size_t bytes_of_entry = 512; // rough cost of a file besides its bytes

    struct File {
        std::mutex mutex; // held while the file is read
        SysPathInfo info;
        std::shared_ptr<const std::string> bytes; // null before the read, and when it failed
        std::list<std::string>::iterator use;     // place in uses_
        std::size_t cost = 0;                     // its share of cost_
    };

    std::string key_of(const std::string& path) const;
    std::shared_ptr<File> find(const std::string& key);
    std::shared_ptr<File> find_or_add(const std::string& path);
    void count(const std::string& key, const std::shared_ptr<File>& file, std::size_t more);
    std::shared_ptr<const std::string> read(const std::string& path, core_int64 size);

    const std::string current_folder_ = beneath().current_folder();
    std::mutex mutex_; // guards the members below
    std::unordered_map<std::string, std::shared_ptr<File>> files_;
    std::list<std::string> uses_; // keys, last used first
    std::size_t cost_ = 0;
};

} // namespace bkdoc
