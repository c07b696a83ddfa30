#pragma once

#include "core/sys_device.h"
#include "output/output.h"

#include <map>
#include <string>

namespace bkdoc {

/// Lets the library read standard input as a file named <stdin>, write to an Output as a file named <stdout>, and
/// write and read back a file <draft> that is in memory only, so that all take the same way as any file. Every other
/// path goes to the device that was there before.
class StreamDevice : public SysDevice {
public:
    explicit StreamDevice(Output& out);
    ~StreamDevice() override;
    StreamDevice(const StreamDevice&) = delete;
    StreamDevice& operator=(const StreamDevice&) = delete;

    static constexpr const char* input_path = "/<stdin>";
    static constexpr const char* output_path = "/<stdout>";
    static constexpr const char* draft_path = "/<draft>";

    /// Takes in the whole of standard input, once. False when it cannot be read.
    bool load_input();
    /// Takes in a file that can be read only once, which is served from memory from then on. False when it cannot
    /// be read, or is longer than any document.
    bool hold(const std::string& path);
    /// What was written to the draft last.
    const std::string& get_draft() const noexcept { return draft_; }

    SysPathInfo inspect(const std::string& path) override;
    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override;
    std::unique_ptr<SysHandle> open_in_place(const std::string& path) override;
    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created_path) override;
    bool replace(const std::string& from, const std::string& to) override;
    bool remove(const std::string& path) override;
    std::string resolve_links(const std::string& path) override;
    std::string current_folder() override;

private:
    /// The bytes of a file that is served from memory; null for every other.
    const std::string* in_memory(const std::string& path) const;

    SysDevice& beneath_;
    Output& out_;
    std::string input_;
    std::map<std::string, std::string> held_;
    std::string draft_;
    bool loaded_ = false;
};

} // namespace bkdoc
