#include "document/save.h"

#include "core/files/sys_filesystem_impl.h"
#include "core/reports/core_diagnostic_impl.h"
#include "document/load/document_state_impl.h"
#include "document/save/file_set_impl.h"
#include "document/save/keep_layout_impl.h"
#include "document/save/losses_impl.h"
#include "document/save/read_back_impl.h"
#include "document/save/same_file_impl.h"
#include "document/save/stored_form_impl.h"
#include "document/sources/byte_hash_impl.h"
#include "document/sources/path_text_impl.h"
#include "parser/files/parser_document_impl.h"

#include <new>
#include <stdexcept>
#include <utility>

namespace bk_parser {

namespace {

std::string absolute_text(const std::filesystem::path& path) {
    return std::string(bk::absolute_path(CoreString(std::string_view(path_text(path)))).get_view());
}

const char* form_name(Form form) noexcept {
    switch (form) {
    case Form::binary:
        return "binary";
    case Form::enciphered:
        return "enciphered";
    case Form::archive:
        return "archive";
    default:
        return "text";
    }
}

/// A save that lays the whole document out anew, in one file.
class NewSave {
public:
    NewSave(DocumentState& state, std::filesystem::path path, Form form, const SaveOptions& options)
        : state_(state), path_(std::move(path)), shown_(path_text(path_)), form_(form), options_(options),
          key_(options.key.empty() ? state.key : options.key) {}

    SaveResult run() {
        if (check() && compose()) {
            write();
        }
        return std::move(result_);
    }

private:
    bool fail(std::string reason) {
        result_.reason = shown_ + ": " + std::move(reason);
        return false;
    }

    bool check() {
        if (form_ == Form::enciphered && key_.empty()) {
            return fail("the enciphered form needs a key");
        }
        result_.losses = find_losses(*state_.root, form_, true);
        if (state_.files.empty() && !state_.path.empty() &&
            absolute_text(path_) == absolute_text(state_.path) && bk::is_file(shown_)) {
            Problem lost;
            lost.code = "not-read-whole";
            lost.message = "the file holds more than could be read of it";
            lost.file = path_;
            result_.losses.push_back(std::move(lost));
        }
        if (result_.losses.empty() || options_.lossy) {
            return true;
        }
        return fail(std::string("the ") + form_name(form_) + " form cannot carry everything, see the losses");
    }

    bool compose() {
        if (!store(*state_.root, form_, key_, stored_)) {
            return fail(std::string("too large for the ") + form_name(form_) + " form");
        }
        std::string difference;
        if (!result_.losses.empty() || reads_back(stored_, form_, *state_.root, key_, difference)) {
            return true;
        }
        return fail("entry '" + difference + "' would not read back as it is");
    }

    /// What may run out of memory comes before the first file is replaced.
    void write() {
        ByteHash hash;
        hash.add(stored_.head);
        hash.add(stored_.body(form_));
        const std::uint64_t size = stored_.head.size() + stored_.body(form_).size();
        std::vector<ReadFile> read{{absolute_text(path_), size, hash.finish(), form_ == Form::enciphered}};
        std::filesystem::path path = path_;
        result_.written.push_back(path_);
        PlaceShifts shifts;
        if (form_ == Form::text) {
            ReadBack back(stored_.text.get_view(), *state_.root, true);
            if (back.run()) {
                shifts = back.shifts();
                shifts.set_range(*state_.root, 0, state_.root->get_entries().get_count());
            }
        }
        FileSet files;
        files.add(shown_, stored_.head, stored_.body(form_));
        result_.reason = files.replace();
        if (!result_.reason.empty()) {
            result_.written.clear();
            return;
        }
        state_.files = std::move(read);
        state_.dependencies.clear();
        state_.version = CoreVersion(bk::written_version);
        state_.form = form_;
        state_.path = std::move(path);
        if (form_ == Form::enciphered) {
            state_.key = std::move(key_);
        }
        shifts.apply();
    }

    DocumentState& state_;
    std::filesystem::path path_;
    std::string shown_;
    Form form_;
    const SaveOptions& options_;
    std::string key_;
    SaveResult result_;
    StoredForm stored_;
};

SaveResult save_document(DocumentState& state, const std::filesystem::path& path,
                         const SaveOptions& options) {
    SaveResult result;
    const std::filesystem::path target = path.empty() ? state.path : path;
    if (target.empty()) {
        result.reason = "there is no path to save to";
        return result;
    }
    if (is_included_file(state, absolute_text(target))) {
        result.reason = path_text(target) + ": is included by the document";
        return result;
    }
    const Form form = options.form.value_or(state.form);
    const bool has_layout = options.keep_layout && !state.files.empty() && form == state.form;
    if (has_layout && form == Form::text) {
        return save_keeping_layout(state, absolute_text(target), options);
    }
    if (has_layout && state.files.size() > 1) {
        result.reason = path_text(target) + ": its includes can be kept in the text form alone";
        return result;
    }
    return NewSave(state, target, form, options).run();
}

} // namespace

SaveResult save(Document& document, const std::filesystem::path& path, const SaveOptions& options) {
    const bk::KeptErrno kept;
    SaveResult failed;
    try {
        return save_document(DocumentState::of(document), path, options);
    } catch (const std::bad_alloc&) {
        failed.reason = "out of memory"; // short enough to need none
    } catch (const std::length_error&) {
        failed.reason = "out of memory";
    }
    return failed;
}

} // namespace bk_parser
