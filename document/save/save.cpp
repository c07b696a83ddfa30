#include "document/save.h"

#include "core/files/sys_filesystem_impl.h"
#include "core/reports/core_diagnostic_impl.h"
#include "document/load/document_state_impl.h"
#include "document/load/entry_places_impl.h"
#include "document/save/files/file_change_impl.h"
#include "document/save/files/file_set_impl.h"
#include "document/save/files/same_file_impl.h"
#include "document/save/forms/losses_impl.h"
#include "document/save/forms/restored_version_impl.h"
#include "document/save/forms/stored_form_impl.h"
#include "document/save/keep_layout_impl.h"
#include "document/save/proof/found_places_impl.h"
#include "document/save/proof/read_back_impl.h"
#include "document/sources/byte_hash_impl.h"
#include "document/sources/file_bytes_impl.h"
#include "document/sources/path_text_impl.h"
#include "parser/files/parser_document_impl.h"

#include <functional>
#include <new>
#include <optional>
#include <stdexcept>
#include <utility>

namespace bk_parser {

namespace {

std::string absolute_text(const std::filesystem::path& path) {
    return std::string(bk::opened_path(CoreString(std::string_view(path_text(path)))).get_view());
}

const char* form_name(Form form) noexcept {
    switch (form) {
    case Form::binary:
        return "binary";
    case Form::enciphered:
        return "encrypted";
    case Form::archive:
        return "archive";
    default:
        return "text";
    }
}

/// A save that prints the whole document anew into one file.
class NewSave {
public:
    NewSave(DocumentState& state, std::filesystem::path path, const std::filesystem::path& given, Form form,
            const SaveOptions& options, std::vector<FileChange>* preview)
        : state_(state), path_(std::move(path)), given_(given), shown_(path_text(path_)), form_(form),
          options_(options), preview_(preview), key_(options.key.empty() ? state.key : options.key) {}

    SaveResult run() {
        if (check() && compose()) {
            preview_ == nullptr ? write() : tell();
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
            return fail("the encrypted form needs a key");
        }
        result_.losses = find_losses(*state_.root, form_, true);
        changes_ = !result_.losses.empty();
        const bool is_own = is_own_file(state_, absolute_text(path_)) && bk::is_regular_file(shown_);
        add_unread(state_.lost);
        add_unread(state_.left_out);
        add_unread(state_.unread_words);
        if (is_own && (!state_.lost.empty() || !state_.left_out.empty())) {
            return fail("the file holds more than could be read of it, see the losses");
        }
        if (is_own && has_changed_on_disk()) {
            return fail("has changed on the disk since it was loaded");
        }
        if (is_own) {
            known_ = KnownFile{true, state_.files.front().size, state_.files.front().hash};
        }
        const bool loses_comments =
            state_.has_hidden_comments && options_.keep_layout && form_ == state_.form;
        if (loses_comments) {
            Problem lost;
            lost.code = "comments-lost";
            lost.message = "the comments of the encrypted text, which is laid out anew";
            lost.file = state_.path;
            result_.losses.push_back(std::move(lost));
        }
        if (result_.losses.empty() || options_.lossy) {
            return true;
        }
        if (loses_comments && result_.losses.size() == 1) {
            return fail("the comments of the encrypted text would be lost; without keep_layout, or lossy, "
                        "it is saved");
        }
        return fail(changes_ ? std::string("the ") + form_name(form_) +
                                   " form cannot carry everything, see the losses"
                             : std::string("the document was not read whole, see the losses"));
    }

    void add_unread(const std::vector<std::string>& parts) {
        for (const std::string& part : parts) {
            Problem lost;
            lost.code = "not-read-whole";
            lost.message = part;
            lost.file = state_.path;
            result_.losses.push_back(std::move(lost));
        }
    }

    bool has_changed_on_disk() const {
        const std::function<bool(double)> nobody;
        Meter meter(nobody);
        const FileBytes now = read_file(shown_, CoreString::max_length, {}, meter);
        return state_.files.empty() || !now.reason.empty() || now.is_too_large ||
               now.bytes.get_length() != state_.files.front().size || now.hash != state_.files.front().hash;
    }

    bool compose() {
        VersionPlace version;
        version.is_at_begin = state_.has_version_header;
        version.entry = state_.version_entry.value_or(version.entry);
        const RestoredVersion restored(state_, form_);
        if (!store(*state_.root, form_, key_, version, stored_)) {
            return fail(std::string("too large for the ") + form_name(form_) + " form");
        }
        std::string reason;
        return changes_ || reads_back(stored_, form_, *state_.root, key_, reason) || fail(reason);
    }

    void tell() {
        std::string bytes = stored_.head;
        bytes += stored_.body(form_);
        FileChange change{{}, state_.memory_text, std::move(bytes), false};
        if (!path_.empty()) {
            change = change_of_file(absolute_text(path_), std::move(change.after), result_.reason);
        }
        if (result_.reason.empty() && change.before != change.after) {
            preview_->push_back(std::move(change));
        }
    }

    /// Allocates everything before the first file is replaced, so that the state cannot be left half updated.
    void write() {
        ByteHash hash;
        hash.add(stored_.head);
        hash.add(stored_.body(form_));
        const std::uint64_t size = stored_.head.size() + stored_.body(form_).size();
        std::vector<ReadFile> read{{absolute_text(path_), size, hash.finish(), form_ == Form::enciphered}};
        std::filesystem::path absolute = path_of_text(absolute_text(path_));
        const bool is_unchanged = known_ && known_->size == size && known_->hash == read.front().hash;
        if (!is_unchanged) {
            result_.written.push_back(path_);
        }
        std::filesystem::path given = given_;
        PlaceShifts shifts;
        std::optional<FoundPlaces> found;
        if (form_ == Form::text) {
            ReadBack back(stored_.text.get_view(), *state_.root, true);
            if (back.run()) {
                shifts = back.shifts();
                shifts.set_range(*state_.root, 0, state_.root->get_entries().get_count());
            } else {
                found.emplace(stored_.text.get_view(), *state_.root);
            }
        }
        FileSet files;
        if (!is_unchanged) {
            files.add(shown_, stored_.head, stored_.body(form_), known_);
        }
        result_.reason = files.replace();
        if (!result_.reason.empty()) {
            result_.written.clear();
            return;
        }
        state_.files = std::move(read);
        state_.places.reset();
        state_.memory_text.clear();
        state_.dependencies.clear();
        state_.lost.clear();
        state_.left_out.clear();
        state_.unread_words.clear();
        state_.has_hidden_comments = false;
        state_.inclusion_count = 1;
        state_.version = CoreVersion(bk::written_version);
        if (form_ != state_.form) {
            state_.kept_version.reset();
        }
        state_.form = form_;
        state_.path = std::move(given);
        state_.absolute = std::move(absolute);
        if (form_ == Form::enciphered) {
            state_.key = std::move(key_);
        }
        shifts.apply();
        if (found) {
            found->apply();
        }
    }

    DocumentState& state_;
    std::filesystem::path path_;
    const std::filesystem::path& given_; // becomes the document's path
    std::string shown_;
    Form form_;
    const SaveOptions& options_;
    std::vector<FileChange>* preview_;
    std::string key_;
    std::optional<KnownFile> known_; // of the document's own file
    SaveResult result_;
    StoredForm stored_;
    bool changes_ = false; // the form loses something of the tree
};

/// Whether the document itself is a file. When it was parsed from memory, the first file is an include.
bool comes_from_file(const DocumentState& state) {
    return !state.files.empty() && !state.absolute.empty() &&
           state.files.front().path == path_text(state.absolute);
}

/// Whether there is a text whose layout can be kept: a file, or a parsed text whose source was kept.
bool has_own_text(const DocumentState& state) {
    return comes_from_file(state) || !state.memory_text.empty();
}

SaveResult save_document(DocumentState& state, const std::filesystem::path& path, const SaveOptions& options,
                         std::vector<FileChange>* preview) {
    SaveResult result;
    const std::filesystem::path target = path.empty() ? state.absolute : path;
    if (!target.empty() || preview == nullptr) {
        result.reason = why_no_name(path_text(target));
        if (!result.reason.empty()) {
            return result;
        }
    }
    if (!target.empty() && is_included_file(state, absolute_text(target))) {
        result.reason = path_text(target) + ": is included by the document";
        return result;
    }
    const Form form = options.form.value_or(state.form);
    const std::filesystem::path given = path.empty() ? state.path : path;
    const bool has_layout =
        options.keep_layout && state.lost.empty() && has_own_text(state) && form == state.form;
    if (has_layout && form == Form::text) {
        return save_keeping_layout(state, target.empty() ? std::string() : absolute_text(target), given,
                                   options, preview);
    }
    if (has_layout && state.files.size() > 1) {
        result.reason = path_text(target) + ": its includes can be kept in the text form alone";
        return result;
    }
    return NewSave(state, target, given, form, options, preview).run();
}

SaveResult save_or_preview(Document& document, const std::filesystem::path& path, const SaveOptions& options,
                           std::vector<FileChange>* preview) {
    const bk::KeptErrno kept;
    SaveResult failed;
    try {
        return save_document(DocumentState::of(document), path, options, preview);
    } catch (const std::bad_alloc&) {
        failed.reason = "out of memory"; // fits the string's own buffer, so allocates nothing
    } catch (const std::length_error&) {
        failed.reason = "out of memory";
    }
    return failed;
}

} // namespace

SaveResult save(Document& document, const std::filesystem::path& path, const SaveOptions& options) {
    return save_or_preview(document, path, options, nullptr);
}

SavePreview preview_save(Document& document, const std::filesystem::path& path, const SaveOptions& options) {
    SavePreview preview;
    SaveResult result = save_or_preview(document, path, options, &preview.changes);
    preview.reason = std::move(result.reason);
    preview.losses = std::move(result.losses);
    if (!preview.ok()) {
        preview.changes.clear();
    }
    return preview;
}

} // namespace bk_parser
