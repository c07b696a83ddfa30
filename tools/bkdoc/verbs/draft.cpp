#include "verbs/draft.h"

#include "parser/parser_archive.h"

namespace bkdoc {

namespace {

CoreString draft_path() {
    return CoreString(StreamDevice::draft_path);
}

bool write_archive(Document& document) {
    ParserArchive archive;
    ParserImpl::archive_group(document.get_root(), archive, false, nullptr);
    return ParserImpl::save_archive(archive, draft_path(), nullptr).is_empty();
}

bool write_file(Document& document, ParserFile::Mode mode, const std::string& key) {
    const bool written = document.get_file().write(mode, draft_path(), CoreString(std::string_view(key)));
    remove_version_entry(document.get_root());
    return written;
}

bool write_form(Document& document, DocumentForm form, const std::string& key) {
    switch (form) {
    case DocumentForm::binary:
        return write_file(document, ParserFile::MODE_BINARY, {});
    case DocumentForm::enciphered:
        return write_file(document, ParserFile::MODE_TEXT, key);
    case DocumentForm::archive:
        return write_archive(document);
    case DocumentForm::text:
        break;
    }
    return write_file(document, ParserFile::MODE_TEXT, {});
}

/// Why a draft was not read: never empty, whatever stopped the reading.
std::string why_unread(const Document& draft) {
    std::string reason = draft.get_messages().empty() ? draft.get_refusal() : draft.get_messages().front();
    const std::string name = draft.get_name() + ": ";
    if (reason.starts_with(name)) { // no file that anybody could look at
        reason.erase(0, name.size());
    }
    return reason.empty() ? "what would be written cannot be read back" : reason;
}

} // namespace

std::optional<std::string> write_draft(Document& document, DocumentForm form, const std::string& key,
                                       StreamDevice& device) {
    LogCollector log;
    const bool written = write_form(document, form, key);
    if (!log.get_messages().empty()) {
        return log.get_messages().front();
    }
    if (!written || device.get_draft().empty()) {
        return "the document cannot be written";
    }
    return std::nullopt;
}

DraftProof prove_draft(const Document& document, const std::string& key, StreamDevice& device) {
    OpenOptions options = document.get_options();
    options.key = key;
    const Document draft(StreamDevice::draft_path, options, device);
    if (!draft.is_read()) {
        return {why_unread(draft), {}, {}};
    }
    const ParserGroup& root = document.get_root();
    return {{},
            find_difference(root, draft.get_root(), Likeness::content),
            find_difference(root, draft.get_root(), Likeness::everything)};
}

} // namespace bkdoc
