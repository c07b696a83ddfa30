#pragma once

#include "input/input.h"
#include "input/read_recorder.h"
#include "parser/parser_file.h"

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
    std::string key; // for what is stored enciphered; empty when there is none
    bool trusted = false;

    /// What reading may cost: of a document that is trusted, whatever it takes.
    ParserLimits get_limits() const noexcept;
};

/// What an archive is made of.
struct ArchiveFacts {
    unsigned int strings = 0;
    unsigned int words = 0;

    /// The bytes that the number of a string takes.
    unsigned int index_width() const noexcept { return strings < 256 ? 1 : strings < 65536 ? 2 : 4; }
};

/// A document as the library read it, with all that was found on the way. It may be stored in any form. The version
/// entry that writing puts into an enciphered document is the version line in another place: it is taken off the
/// tree, as the line is.
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
    /// Faults of the storage, which have no place in a text: one line each.
    const std::vector<std::string>& get_damage() const noexcept { return damage_; }
    bool has_faults() const noexcept { return !faults_.empty() || !damage_.empty(); }

    /// As it is called in reports.
    const std::string& get_name() const noexcept { return input_.get_name(); }
    const Input& get_input() const noexcept { return input_; }
    DocumentForm get_form() const noexcept { return input_.get_form(); }
    /// Only of an archive.
    const ArchiveFacts& get_archive_facts() const noexcept { return archive_facts_; }
    ParserFile& get_file() noexcept { return file_; }
    const ParserFile& get_file() const noexcept { return file_; }
    ParserGroup& get_root() const noexcept { return file_.get_root(); }
    const SourceMap& get_sources() const noexcept { return sources_; }
    const std::vector<DocumentFault>& get_faults() const noexcept { return faults_; }
    const OpenOptions& get_options() const noexcept { return options_; }

private:
    void read();
    std::string why_not_deciphered() const;
    void read_text();
    void read_binary();
    void read_archive();
    void parse_archive(const CoreString& text);
    void refuse_text();
    void take_faults(std::vector<DocumentFault>& faults);

    OpenOptions options_;
    Input input_;
    std::string refusal_;
    ParserFile file_;
    ArchiveFacts archive_facts_;
    SourceMap sources_;
    std::vector<DocumentFault> faults_;
    std::vector<std::string> messages_;
    std::vector<std::string> damage_;
    std::optional<Spot> failed_directive_;
    bool read_ = false;
};

/// Takes the version entry off a root group.
void remove_version_entry(ParserGroup& root);

/// Where the library looks for `name` in a search folder; the empty folder is for the name as it stands.
std::string candidate_path(std::string_view folder, std::string_view name);

} // namespace bkdoc
