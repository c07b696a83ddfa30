#pragma once

#include <filesystem>
#include <vector>

namespace bkdoc {

/// Waits until something in a set of folders changes. Uses inotify where there is one, and looks twice a second elsewhere.
class ChangeWaiter {
public:
    explicit ChangeWaiter(const std::vector<std::filesystem::path>& folders);
    ~ChangeWaiter();
    ChangeWaiter(const ChangeWaiter&) = delete;
    ChangeWaiter& operator=(const ChangeWaiter&) = delete;

    /// Returns when something may have changed; the caller finds out what. Returns false after an interrupt.
    bool wait() const;

private:
    int events_ = -1; // inotify descriptor; -1 without inotify
};

} // namespace bkdoc
