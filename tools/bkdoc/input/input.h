#pragma once

#include "core/core_containers.h"
#include "core/core_string.h"
#include "input/document_form.h"

#include <string>

namespace bkdoc {

class StreamDevice;

/// The file that an argument of the command line names: found, but not read.
class Input {
public:
    /// "-" is standard input. What can be read only once, as a pipe, is taken in here and stays readable.
    Input(const std::string& argument, StreamDevice& device);

    /// Why the file cannot be read: one line. Empty when it can.
    const std::string& get_refusal() const noexcept { return refusal_; }
    /// As it is called in reports.
    const std::string& get_name() const noexcept { return name_; }
    /// Absolute.
    const std::string& get_path() const noexcept { return path_; }
    DocumentForm get_form() const noexcept { return form_; }
    core_int64 get_size() const noexcept { return size_; }

    /// The whole file. False when it is not there as a whole, or is larger than any document.
    bool load(CoreVector<char>& bytes) const;

private:
    void find(const std::string& argument, StreamDevice& device);
    void look_at_form();

    std::string name_;
    std::string path_;
    std::string refusal_;
    DocumentForm form_ = DocumentForm::text;
    core_int64 size_ = 0;
};

} // namespace bkdoc
