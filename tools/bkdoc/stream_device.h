#pragma once

#include "core/sys_device.h"
#include "output.h"

#include <string>

namespace bkdoc {

/// Lets the library read standard input as a file named <stdin> and write to an Output as a file named
/// <stdout>, so that both take the same way as any file. Every other path goes to the device that was there
/// before.
class StreamDevice : public SysDevice {
public:
    explicit StreamDevice(Output& out);
    ~StreamDevice() override;
    StreamDevice(const StreamDevice&) = delete;
    StreamDevice& operator=(const StreamDevice&) = delete;

    static constexpr const char* input_path = "/<stdin>";
    static constexpr const char* output_path = "/<stdout>";

    /// Takes in the whole of standard input, once. False when it cannot be read.
    bool load_input();

    SysPathInfo inspect(const std::string& path) override;
    std::unique_ptr<SysHandle> open_for_reading(const std::string& path) override;
    std::unique_ptr<SysHandle> open_in_place(const std::string& path) override;
    std::unique_ptr<SysHandle> create_beside(const std::string& target, std::string& created_path) override;
    bool replace(const std::string& from, const std::string& to) override;
    bool remove(const std::string& path) override;
    std::string resolve_links(const std::string& path) override;
    std::string current_folder() override;

private:
    SysDevice& beneath_;
    Output& out_;
    std::string input_;
    bool loaded_ = false;
};

} // namespace bkdoc
