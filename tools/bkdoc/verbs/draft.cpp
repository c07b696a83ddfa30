#include "verbs/draft.h"

#include "input/files/memory_file.h"
#include "input/form_mark.h"
#include "input/log_keeper.h"
#include "output/display/document_text.h"
#include "parser/parser_archive.h"
#include "parser/parser_file.h"

namespace bkdoc {

namespace {

using bk_parser::Form;

std::string archive_bytes(ParserGroup& root) {
    ParserArchive archive;
    ParserImpl::archive_group(root, archive, false, nullptr);
    const MemoryFile file;
    const CoreString refusal = ParserImpl::save_archive(archive, CoreString(MemoryFile::name), nullptr);
    return refusal.is_empty() ? file.bytes() : std::string();
}

std::string encrypted_bytes(ParserGroup& root, const std::string& key) {
    const CoreString version("#Brellwick_Serial_Version");
    root.add_entry(version, 0, 0)->add_double(default_parser_serial_version.get_value());
    CoreArray<unsigned char> block;
    root.get_encrypted_text(block, CoreString(std::string_view(key)), false, true, 1);
    root.remove_entry(version);
    std::string bytes(form_mark(Form::enciphered));
    bytes.append(reinterpret_cast<const char*>(block.get_data()), block.get_count());
    return bytes;
}

std::string bytes_in_form(ParserGroup& root, Form form, const std::string& key) {
    switch (form) {
    case Form::binary: {
        const CoreVector<char> binary = root.get_binary(false);
        return std::string(form_mark(form)) + std::string(binary.get_data(), binary.get_count());
    }
    case Form::enciphered:
        return encrypted_bytes(root, key);
    case Form::archive:
        return archive_bytes(root);
    case Form::text:
        break;
    }
    return document_text(root);
}

/// Why a draft did not read back completely.
std::string why_unread(const OpenedDocument& read) {
    for (const bk_parser::Problem& problem : read.problems()) {
        if (problem.severity == bk_parser::Severity::error) {
            return problem.message;
        }
    }
    return "what would be written cannot be read back";
}

OpenedDocument read_draft(const Draft& draft, const Storage& storage, const OpenOptions& options) {
    OpenOptions own = options;
    own.reads_json = false;
    own.json = storage.json;
    return open_bytes("<draft>", draft.bytes, own);
}

} // namespace

Draft make_draft(OpenedDocument& document, const Storage& storage, const std::string& key) {
    const LogKeeper log;
    Draft draft;
    draft.bytes = storage.json ? bk_parser::to_json(document.root(), {*storage.json})
                               : bytes_in_form(document.root(), storage.form, key);
    const bool may_be_empty = storage.json == bk_parser::JsonShape::lines;
    draft.refusal = !log.first().empty()                   ? log.first()
                    : draft.bytes.empty() && !may_be_empty ? "the document cannot be written"
                                                           : "";
    return draft;
}

DraftProof prove_draft(const OpenedDocument& document, const Draft& draft, const Storage& storage,
                       const OpenOptions& options) {
    if (storage.json == bk_parser::JsonShape::plain) {
        return {}; // plain JSON has no way back
    }
    const OpenedDocument read = read_draft(draft, storage, options);
    if (!read.is_read() || read.is_broken_json() || read.lacks_includes()) {
        return {why_unread(read), {}};
    }
    return {{}, find_difference(document.root(), read.root(), Likeness::everything)};
}

} // namespace bkdoc
