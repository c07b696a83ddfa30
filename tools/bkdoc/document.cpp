#include "document.h"

#include "core/sys_device.h"
#include "core/sys_file.h"
#include "stream_device.h"

#include <algorithm>

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

std::string why_missing(const std::string& path) {
    switch (SysDevice::get().inspect(path).kind) {
    case SysPathKind::directory:
        return "is a directory";
    case SysPathKind::missing:
        return "no such file";
    default:
        return "cannot be read";
    }
}

} // namespace

std::string candidate_path(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.empty() && path.back() != '/') {
        path += '/';
    }
    return path.append(name);
}

Document::Document(const std::string& argument, const OpenOptions& options, StreamDevice& device)
    : options_(options), name_(argument == "-" ? "<stdin>" : argument), file_(CoreString()) {
    if (find_file(argument, device)) {
        read();
    }
}

// An argument names a file as it stands: its absolute path keeps the search folders out of it.
bool Document::find_file(const std::string& argument, StreamDevice& device) {
    if (argument == "-") {
        path_ = SysFilesystem::get_full_file_path(StreamDevice::input_path).get_view();
        if (!device.load_input()) {
            refusal_ = "standard input cannot be read";
        }
    } else if (argument.empty() || !SysFilesystem::file_exists(core(argument))) {
        refusal_ = (argument.empty() ? "''" : argument) + ": " +
                   (argument.empty() ? "no such file" : why_missing(argument));
    } else {
        path_ = SysFilesystem::get_full_file_path(core(argument)).get_view();
    }
    return refusal_.empty();
}

void Document::read() {
    ReadRecorder recorder([this](const CoreString& name, const CoreString& path) {
        return path.get_view() == path_ ? SourceName{name_, {}}
                                        : name_of(options_.search_paths, name.get_view(), path);
    });
    LogCollector log;
    file_.set_search_paths(core(options_.search_paths));
    file_.set_read_observer(&recorder);
    read_ = file_.read(core(path_), CoreString(), nullptr);
    file_.set_read_observer(nullptr);

    failed_directive_ = recorder.get_open_directive();
    sources_ = std::move(recorder.get_sources());
    messages_ = std::move(log.get_messages());
    take_faults(recorder.get_faults());
    if (!read_ && faults_.empty() && !failed_directive_) {
        refusal_ = messages_.empty() ? name_ + ": cannot be read" : messages_.front();
    }
}

// Faults are told in the order of the text, wherever the reading noticed them.
void Document::take_faults(std::vector<DocumentFault>& faults) {
    faults_ = std::move(faults);
    std::stable_sort(faults_.begin(), faults_.end(),
                     [](const DocumentFault& a, const DocumentFault& b) { return a.expanded < b.expanded; });
}

} // namespace bkdoc
