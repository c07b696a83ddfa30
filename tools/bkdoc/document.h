#pragma once

#include "parser/parser_file.h"
#include "read_recorder.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bkdoc {

class StreamDevice;

/// How documents are opened: the same for every verb.
struct OpenOptions {
    std::vector<std::string> search_paths;
};

/// A document as the library read it, with all that was found on the way.
class Document {
public:
    /// Reads the file that an argument of the command line names; "-" is standard input.
    Document(const std::string& argument, const OpenOptions& options, StreamDevice& device);

    bool is_read() const noexcept { return read_; }
    /// Why the document could not be read, when that has nothing to do with an include: one line. Else empty.
    const std::string& get_refusal() const noexcept { return refusal_; }
    /// What the library says of an include that stopped the reading, and where the directive is.
    const std::vector<std::string>& get_messages() const noexcept { return messages_; }
    const std::optional<Spot>& get_failed_directive() const noexcept { return failed_directive_; }

    /// As it is called in reports.
    const std::string& get_name() const noexcept { return name_; }
    ParserFile& get_file() noexcept { return file_; }
    const ParserFile& get_file() const noexcept { return file_; }
    const ParserGroup& get_root() const noexcept { return file_.get_root(); }
    const SourceMap& get_sources() const noexcept { return sources_; }
    const std::vector<DocumentFault>& get_faults() const noexcept { return faults_; }
    const OpenOptions& get_options() const noexcept { return options_; }

private:
    bool find_file(const std::string& argument, StreamDevice& device);
    void read();
    void take_faults(std::vector<DocumentFault>& faults);

    OpenOptions options_;
    std::string name_;
    std::string path_;
    std::string refusal_;
    ParserFile file_;
    SourceMap sources_;
    std::vector<DocumentFault> faults_;
    std::vector<std::string> messages_;
    std::optional<Spot> failed_directive_;
    bool read_ = false;
};

/// Where the library looks for `name` in a search folder; the empty folder is for the name as it stands.
std::string candidate_path(std::string_view folder, std::string_view name);

} // namespace bkdoc
