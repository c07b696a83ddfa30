#include "input/document.h"

#include "core/sys_file.h"

#include <algorithm>
#include <limits>

namespace bkdoc {

namespace {

CoreString core(std::string_view text) {
    return CoreString(text);
}

CoreVector<CoreString> core(const std::vector<std::string>& texts) {
    CoreVector<CoreString> result;
    for (const std::string& text : texts) {
        result.add(core(text));
    }
    return result;
}

// The first place that leads to this path is the one that the library took.
SourceName name_of(const std::vector<std::string>& folders, std::string_view name, const CoreString& path) {
    for (const std::string& folder : folders) {
        std::string candidate = candidate_path(folder, name);
        if (SysFilesystem::get_full_file_path(core(candidate)) == path) {
            return {candidate, folder};
        }
    }
    return {std::string(name), {}};
}

} // namespace

std::string candidate_path(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.empty() && path.back() != '/') {
        path += '/';
    }
    return path.append(name);
}

void remove_version_entry(ParserGroup& root) {
    root.remove_entry(CoreString("#Brellwick_Serial_Version"));
}

ParserLimits OpenOptions::get_limits() const noexcept {
    ParserLimits limits;
    if (trusted) {
        limits.include_depth = ParserLimits::no_limit;
        limits.include_count = ParserLimits::no_limit;
        limits.source_size = std::numeric_limits<core_uint64>::max();
        limits.archive_size = std::numeric_limits<core_uint64>::max();
        limits.archive_free_size = limits.archive_size;
    }
    return limits;
}

Document::Document(const std::string& argument, const OpenOptions& options, StreamDevice& device)
    : options_(options), input_(argument, device), refusal_(input_.get_refusal()), file_(CoreString()) {
    if (refusal_.empty()) {
        read();
    }
}

void Document::read() {
    switch (get_form()) {
    case DocumentForm::binary:
        read_binary();
        break;
    case DocumentForm::archive:
        read_archive();
        break;
    case DocumentForm::enciphered:
        refusal_ = why_not_deciphered();
        if (!refusal_.empty()) {
            return;
        }
        read_text();
        break;
    case DocumentForm::text:
        read_text();
        return;
    }
    if (read_) {
        remove_version_entry(file_.get_root());
    }
}

// The library takes the mark alone for a text.
std::string Document::why_not_deciphered() const {
    if (options_.key.empty()) {
        return get_name() + ": is enciphered; its key is given by --key, --key-file or BKDOC_KEY";
    }
    return input_.get_size() > core_int64{form_mark_size} ? ""
                                                          : get_name() + ": ends before the enciphered text";
}

void Document::read_text() {
    ReadRecorder recorder([this](const CoreString& name, const CoreString& path) {
        return path.get_view() == input_.get_path() ? SourceName{get_name(), {}}
                                                    : name_of(options_.search_paths, name.get_view(), path);
    });
    LogCollector log;
    file_.set_search_paths(core(options_.search_paths));
    file_.set_limits(options_.get_limits());
    file_.set_read_observer(&recorder);
    read_ = file_.read(core(input_.get_path()), core(options_.key), nullptr);
    file_.set_read_observer(nullptr);

    failed_directive_ = recorder.get_open_directive();
    sources_ = std::move(recorder.get_sources());
    messages_ = std::move(log.get_messages());
    take_faults(recorder.get_faults());
    if (!read_ && faults_.empty() && !failed_directive_) {
        refuse_text();
    }
}

void Document::refuse_text() {
    if (messages_.empty()) { // the library says why, but for a version that is none
        refusal_ = get_name() + ": its version line, or that of an included file, gives no number above 0";
        return;
    }
    refusal_ = messages_.front();
    if (get_form() == DocumentForm::enciphered) {
        refusal_ += " The key is another one, or the file is damaged.";
    }
}

// Faults are told in the order of the text, wherever the reading noticed them.
void Document::take_faults(std::vector<DocumentFault>& faults) {
    faults_ = std::move(faults);
    std::stable_sort(faults_.begin(), faults_.end(),
                     [](const DocumentFault& a, const DocumentFault& b) { return a.expanded < b.expanded; });
}

} // namespace bkdoc
