#include "document/save/keep_layout_impl.h"

#include "document/load/entry_places_impl.h"
#include "document/path.h"
#include "document/problems/faults/unread_words_impl.h"
#include "document/problems/list/shown_word_impl.h"
#include "document/save/apply/file_edits_impl.h"
#include "document/save/apply/text_splice_impl.h"
#include "document/save/files/file_change_impl.h"
#include "document/save/files/file_set_impl.h"
#include "document/save/files/same_file_impl.h"
#include "document/save/forms/losses_impl.h"
#include "document/save/proof/found_places_impl.h"
#include "document/save/proof/proof_impl.h"
#include "document/save/proof/read_back_impl.h"
#include "document/save/record/layout_record_impl.h"
#include "document/save/record/save_sources_impl.h"
#include "document/sources/path_text_impl.h"
#include "parser/words/parser_word_rules_impl.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace bk_parser {

namespace {

NewBytes memory_of(const DocumentState& state) {
    NewBytes bytes;
    if (state.files.front().path.empty()) {
        bytes.emplace(std::string(), state.memory_text);
    }
    return bytes;
}

/// The state of the document as if its own file were at `path`, without its tree.
DocumentState moved_to(const DocumentState& state, const std::string& path) {
    DocumentState moved;
    moved.search = state.search;
    moved.beside = state.beside;
    moved.working_folder = state.working_folder;
    moved.follow_includes = state.follow_includes;
    moved.key = state.key;
    moved.limits = state.limits;
    moved.files = state.files;
    moved.files.front().path = path;
    return moved;
}

class LayoutSave {
public:
    LayoutSave(DocumentState& state, const std::string& path, const std::filesystem::path& given,
               const SaveOptions& options, std::vector<FileChange>* preview, bool may_splice)
        : state_(state), given_(given), options_(options), preview_(preview), may_splice_(may_splice),
          is_elsewhere_(path != state.files.front().path && !is_own_file(state, path)),
          path_(is_elsewhere_ ? path : state.files.front().path), memory_(memory_of(state)),
          old_(std::in_place, state, memory_) {}

    SaveResult run() {
        if (!compose()) {
            return std::move(result_);
        }
        if (bytes_.empty() && !splice_) {
            return std::move(result_); // nothing changed
        }
        if (is_proven()) {
            if (preview_ != nullptr) {
                tell();
            } else {
                record_.reset();
                old_.reset(); // the kernel can then reuse the pages for the new file
                write();
            }
        }
        return std::move(result_);
    }

    /// Whether the new text was made in place of the old one and could not be proven. The reason cannot be found without the old text, so
    /// the caller must save again with a copy.
    bool needs_old_text() const noexcept { return splice_ && !is_spliced_proven_; }

private:
    bool fail(std::string reason) {
        result_.reason = std::move(reason);
        return false;
    }

    /// Computes the new bytes of the files that change.
    bool compose() {
        if (!old_->read(state_.files.front().path)) {
            return fail(old_->reason());
        }
        if (old_->map().get_inclusion_count() != state_.inclusion_count) {
            return fail(path_ + ": its includes lead to other files than when it was loaded");
        }
        has_escapes_ = bk::has_escapes(CoreVersion(old_->version()));
        record_.emplace(old_->text(), *state_.root, has_escapes_);
        record_->run();
        if (record_->has_changes()) {
            const FileNames names(old_->map());
            LayoutEdits edits(*old_, *record_, names, has_escapes_);
            if (!edits.run()) {
                return fail(path_ + ": " + edits.reason() + ": the layout cannot be kept");
            }
            dropped_ = edits.dropped_files();
            prints_quotes_ = edits.prints_quotes();
            if (!may_edit(edits.edits())) {
                return false;
            }
            if (can_splice(edits.edits(), names)) {
                splice_document(edits.edits());
                return true;
            }
            std::string reason;
            if (!apply_edits(*old_, names, edits.edits(), state_.key, bytes_, reason)) {
                return fail(std::move(reason));
            }
        }
        if (is_elsewhere_) {
            move_document();
        }
        return true;
    }

    /// Whether the edits may change included files.
    bool may_edit(const std::vector<Edit>& edits) {
        const auto inside =
            std::find_if(edits.begin(), edits.end(), [](const Edit& edit) { return edit.inclusion != 0; });
        if (inside == edits.end() || (options_.into_includes && !is_elsewhere_)) {
            return true;
        }
        Spot spot;
        spot.inclusion = inside->inclusion;
        return fail(old_->map().file_of(spot).path + ": holds entry '" + inside->about +
                    "', which has changed, and " +
                    (is_elsewhere_ ? "is included by " + state_.files.front().path + ", too"
                                   : "is not to be changed"));
    }

    /// Whether the new text can be made in place of the old one: all edits are in the document's own file, whose old text is not needed if
    /// the save succeeds. With a copy the save of 99.9 MB with one changed value takes 16% longer.
    bool can_splice(const std::vector<Edit>& edits, const FileNames& names) const {
        const std::string_view text = old_->map().get_files().front()->text.get_text();
        const bool may_change_end = !text.ends_with('\n'); // see keep_last_line
        return may_splice_ && preview_ == nullptr && !is_elsewhere_ && memory_.empty() && !edits.empty() &&
               !names.has_several_names() && !old_->is_enciphered(path_) &&
               std::all_of(edits.begin(), edits.end(),
                           [&](const Edit& edit) {
                               return edit.inclusion == 0 && !(may_change_end && edit.end == text.size());
                           }) &&
               !breaks_returns(text, edits);
    }

    void splice_document(const std::vector<Edit>& edits) {
        const std::string_view file = old_->map().get_files().front()->text.get_text();
        if (old_->shows_document()) {
            head_size_ = static_cast<std::size_t>(old_->text().data() - file.data());
            window_ = find_window(old_->text(), *record_);
        }
        spliced_ = old_->take_document();
        splice_ = splice(spliced_, edits);
    }

    /// Moves the document's own file to another path. Its includes stay where they are.
    void move_document() {
        const auto changed = bytes_.find(state_.files.front().path);
        std::string bytes;
        if (changed == bytes_.end()) {
            bytes = old_->map().get_files().front()->text.get_text();
        } else {
            bytes = std::move(changed->second);
            bytes_.erase(changed);
        }
        bytes_[path_] = std::move(bytes);
    }

    /// Reads the new files as a load would, and compares the result with the tree.
    bool is_proven() {
        for (const auto& [path, text] : memory_) {
            bytes_.try_emplace(path_, text);
        }
        DocumentState moved = moved_to(state_, path_);
        std::erase_if(moved.files, [this](const ReadFile& file) {
            return std::find(dropped_.begin(), dropped_.end(), file.path) != dropped_.end();
        });
        SaveSources fresh(moved, bytes_);
        if (splice_) {
            fresh.replace(path_, spliced_.get_view());
        }
        if (!fresh.read(path_)) {
            return fail(fresh.reason());
        }
        if (is_elsewhere_ && !carries_includes(fresh)) {
            return false;
        }
        const bool is_same_syntax = bk::has_escapes(CoreVersion(fresh.version())) == has_escapes_;
        const Proof proof = proof_of(fresh.text());
        is_spliced_proven_ = proof.is_equal && is_same_syntax;
        if (needs_old_text()) {
            return false;
        }
        files_ = fresh.files();
        inclusion_count_ = fresh.map().get_inclusion_count();
        included_ = fresh.included();
        shifts_ = proof.shifts;
        note_unread_words(fresh);
        return proof.is_equal && is_same_syntax ? carries_quotes() : explain(proof.difference, fresh);
    }

    /// Reports as losses the strings that a version without escapes cannot spell, when the save printed some of them.
    bool carries_quotes() {
        if (!prints_quotes_) {
            return true;
        }
        for (Problem& loss : find_losses(*state_.root, Form::text, has_escapes_)) {
            if (loss.code == "string-needs-escapes") {
                result_.losses.push_back(std::move(loss));
            }
        }
        return options_.lossy || fail(path_ + ": the text form cannot carry everything, see the losses");
    }

    Proof proof_of(std::string_view now) {
        if (!window_) {
            return prove(old_->text(), *record_, now, *state_.root, has_escapes_);
        }
        const bool shows_same = now.data() == spliced_.get_data() + head_size_ &&
                                now.size() + head_size_ == spliced_.get_length() &&
                                splice_->begin >= head_size_;
        const TextSplice splice{splice_->begin - head_size_, splice_->old_end - head_size_,
                                splice_->new_end - head_size_};
        return shows_same ? prove_spliced(std::move(*window_), splice, now, has_escapes_) : Proof();
    }

    /// Reports as losses the includes that only the working folder provides: in another folder they would be missing.
    bool carries_includes(const SaveSources& fresh) {
        for (const std::string& what : fresh.found_from_working_folder()) {
            Problem loss;
            loss.code = "include-not-carried";
            loss.message = what;
            loss.file = path_of_text(path_);
            result_.losses.push_back(std::move(loss));
        }
        return result_.losses.empty() || options_.lossy ||
               fail(path_ + ": an include would be found from the working folder alone, see the losses");
    }

    /// Notes the unread words anew, because their lines may have changed and some words may be gone.
    void note_unread_words(const SaveSources& fresh) {
        if (state_.unread_words.empty()) {
            return;
        }
        LayoutRecord now(fresh.text(), *state_.root, has_escapes_);
        now.run();
        const std::vector<TextRange>& words = now.unread_words();
        for (const TextRange& word : words) {
            if (unread_words_.size() == most_unread_words) {
                unread_words_.push_back(more_unread_words(words.size() - most_unread_words));
                return;
            }
            unread_words_.push_back(unread_word(fresh.text().substr(word.begin, word.end - word.begin),
                                                fresh.place_of(word.begin)));
        }
    }

    /// Called when the new text does not read back as the tree. Returns true when the text form cannot carry the difference and
    /// the host accepts the loss.
    bool explain(const ParserEntry* difference, const SaveSources& fresh) {
        std::vector<Problem> losses = find_losses(*state_.root, Form::text, has_escapes_);
        const bool is_carried = !losses.empty();
        result_.losses.insert(result_.losses.end(), std::make_move_iterator(losses.begin()),
                              std::make_move_iterator(losses.end()));
        if (!is_carried) {
            const std::string what =
                difference == nullptr ? "more" : "entry '" + path_of(*state_.root, *difference) + "'";
            return fail(
                path_ + ": the layout cannot be kept: " + what +
                (difference == nullptr ? " would be read than there is" : " would not read back as it is") +
                likely_cause());
        }
        if (!options_.lossy) {
            return fail(path_ + ": the text form cannot carry everything, see the losses");
        }
        ParserGroup expected{CoreString()};
        CoreString text;
        state_.root->get_text(text, false, true, 1);
        expected.set_text(text, CoreVersion(has_escapes_ ? 1.2 : 1.0), nullptr);
        shifts_ = PlaceShifts();
        found_.emplace(fresh.text(), *state_.root);
        ReadBack lossy(fresh.text(), expected, has_escapes_);
        return lossy.run() || fail(path_ + ": the layout cannot be kept with these losses");
    }

    /// Names a mistake of the old text that may swallow what is put beside it.
    std::string likely_cause() const {
        const auto word = [this](TextRange range) {
            return shown(old_->text().substr(range.begin, range.end - range.begin));
        };
        const TextRange open = record_->open_group_name();
        if (open.end != 0) {
            return ", because group " + word(open) + " at " + old_->place_of(open.begin) +
                   " is not closed: put its '}' where it ends, and load the document again";
        }
        if (!record_->unread_words().empty()) {
            const TextRange unread = record_->unread_words().front();
            return ", perhaps because of the word " + word(unread) + " at " + old_->place_of(unread.begin) +
                   ", which was not read: mend it and load the document again";
        }
        return {};
    }

    /// Fills in the preview. Leaves out files that stay the same.
    void tell() {
        const auto own = bytes_.find(path_);
        for (auto file = bytes_.begin(); file != bytes_.end(); ++file) {
            if (file != own) {
                tell_file(file->first, std::move(file->second));
            }
        }
        if (own != bytes_.end()) {
            tell_file(own->first, std::move(own->second));
        }
    }

    void tell_file(const std::string& path, std::string&& bytes) {
        const auto in_memory = memory_.find(path);
        FileChange change = in_memory == memory_.end()
                                ? change_of_file(path, std::move(bytes), result_.reason)
                                : FileChange{{}, in_memory->second, std::move(bytes), false};
        if (result_.reason.empty() && change.before != change.after) {
            preview_->push_back(std::move(change));
        }
    }

    /// The file as it was when the document was read from it; nothing for any other file.
    std::optional<KnownFile> known(const std::string& path) const {
        const ReadFile* const then = find_file(state_.files, path);
        return then == nullptr ? std::nullopt : std::optional(KnownFile{true, then->size, then->hash});
    }

    /// Writes included files first, so that the document's own file is the old one until all of them are replaced.
    void write() {
        std::filesystem::path path = path_of_text(path_);
        std::filesystem::path given = given_;
        std::vector<std::filesystem::path> dependencies;
        for (const std::string& included : included_) {
            dependencies.push_back(path_of_text(included));
        }
        FileSet files;
        if (splice_) {
            files.add_spent(path_, spliced_.get_view(), known(path_));
            result_.written.push_back(path_of_text(path_));
        }
        const auto own = bytes_.find(path_);
        for (auto file = bytes_.begin(); file != bytes_.end(); ++file) {
            if (file != own) {
                files.add(file->first, {}, file->second, known(file->first));
                result_.written.push_back(path_of_text(file->first));
            }
        }
        if (own != bytes_.end()) {
            files.add(own->first, {}, own->second, known(own->first));
            result_.written.push_back(path_of_text(own->first));
        }
        result_.reason = files.replace();
        if (!result_.reason.empty()) {
            result_.written.clear();
            return;
        }
        state_.files = std::move(files_);
        state_.places.reset();
        state_.memory_text.clear();
        state_.inclusion_count = inclusion_count_;
        state_.unread_words = std::move(unread_words_);
        shifts_.apply();
        if (found_) {
            found_->apply();
        }
        if (is_elsewhere_) {
            state_.absolute = std::move(path);
            state_.path = std::move(given);
        }
        state_.dependencies = std::move(dependencies);
    }

    DocumentState& state_;
    const std::filesystem::path& given_; // becomes the document's path
    const SaveOptions& options_;
    std::vector<FileChange>* preview_;
    bool may_splice_;
    bool is_elsewhere_;
    std::string path_;
    bool has_escapes_ = true;
    bool prints_quotes_ = false;
    const NewBytes memory_; // the text of a document in memory
    std::optional<SaveSources> old_;
    std::optional<LayoutRecord> record_;
    SaveResult result_;
    NewBytes bytes_;
    CoreString spliced_; // the new bytes of the document's own file, made in place
    std::optional<TextSplice> splice_;
    bool is_spliced_proven_ = false;
    std::size_t head_size_ = 0;         // how many bytes are before the expanded text in the file
    std::optional<ProofWindow> window_; // set when the expanded text is a part of the file's text
    std::vector<ReadFile> files_;
    std::vector<std::string> included_;
    std::vector<std::string> dropped_; // files that are no longer included
    std::size_t inclusion_count_ = 0;
    std::vector<std::string> unread_words_;
    PlaceShifts shifts_;
    std::optional<FoundPlaces> found_; // set when something is lost
};

} // namespace

SaveResult save_keeping_layout(DocumentState& state, const std::string& path,
                               const std::filesystem::path& given, const SaveOptions& options,
                               std::vector<FileChange>* preview) {
    {
        LayoutSave save(state, path, given, options, preview, true);
        SaveResult result = save.run();
        if (!save.needs_old_text()) {
            return result;
        }
    }
    return LayoutSave(state, path, given, options, preview, false).run();
}

} // namespace bk_parser
