#include "verbs/edit/edit_output.h"

#include "document/text_diff.h"
#include "input/files/input.h"
#include "output/diff/diff_text.h"
#include "output/diff/patch_name.h"
#include "output/display/text_display.h"
#include "output/hard_links.h"
#include "output/problems/report.h"
#include "platform/paths.h"
#include "platform/unfinished_file.h"

#include <algorithm>

namespace bkdoc {

namespace {

constexpr std::string_view backup_ending = ".bak";

/// As the document found the file.
std::string found_name(const OpenedDocument& document, const std::filesystem::path& path) {
    const auto& files = document.document().files();
    const auto found = std::find_if(files.begin(), files.end(), [&path](const bk_parser::DocumentFile& file) {
        return file.path == path;
    });
    return path.empty() || found == files.end() ? document.name() : shown_file(found->file, document.name());
}

bool is_text(std::string_view bytes) noexcept {
    return bytes.find('\0') == std::string_view::npos;
}

} // namespace

EditOutput::EditOutput(const Arguments& arguments, Streams& streams, const EditRequest& request)
    : streams_(streams), request_(request), is_dry_(arguments.has("--dry-run")),
      writes_(arguments.has("-w") && !is_dry_), keeps_old_(arguments.has("--backup")) {}

std::string EditOutput::take(const OpenedDocument& document, const EditOutcome& outcome,
                             std::vector<bk_parser::FileChange>&& changes) {
    notes_ += outcome.notes;
    if (!writes_ && !is_dry_) {
        take_result(document, changes);
    }
    for (bk_parser::FileChange& change : changes) {
        const std::string path = text_of(change.path);
        const std::string real = path.empty() ? path : real_file(path); // links give one file several names
        const auto [known, is_new] = by_path_.try_emplace(real, changed_.size());
        if (!is_new) {
            const Changed& other = changed_[known->second];
            if (other.change.after != change.after) {
                return other.name + ": would change in one way for " + other.document +
                       " and in another for " + document.name() + "; change this file on its own";
            }
            continue;
        }
        const auto there = outcome.counts.find(path);
        std::string name = found_name(document, change.path);
        change.path = path_of(real);
        changed_.push_back({std::move(change), std::move(name), document.name(),
                            there == outcome.counts.end() ? 0 : there->second});
    }
    if (!changes.empty() && outcome.anywhere != 0) {
        changed_.back().count += outcome.anywhere;
    }
    return {};
}

/// Takes the new bytes of the document's own file.
void EditOutput::take_result(const OpenedDocument& document,
                             const std::vector<bk_parser::FileChange>& changes) {
    const std::string own = own_file(document);
    if (!own.empty() && !given_.insert(real_file(own)).second) {
        return; // the same file under another name
    }
    const auto change =
        std::find_if(changes.begin(), changes.end(),
                     [&own](const bk_parser::FileChange& one) { return text_of(one.path) == own; });
    results_.push_back(change == changes.end() ? Input(document.operand()).bytes : change->after);
    has_bytes_ = has_bytes_ || document.form() != bk_parser::Form::text;
}

bool EditOutput::is_given(const Changed& changed) const {
    const std::string path = text_of(changed.change.path);
    return writes_ || is_dry_ || path.empty() || given_.contains(path);
}

ExitCode EditOutput::finish() {
    Output& aside = writes_ ? streams_.out : streams_.err;
    aside << notes_;
    if (writes_) {
        return write();
    }
    if (is_dry_) {
        write_diffs();
        close(streams_.err, "would be ");
        HardLinks links;
        for (const Changed& changed : changed_) {
            links.note(text_of(changed.change.path), changed.name);
        }
        links.tell(streams_, false);
        return EXIT_CLEAN;
    }
    return write_results();
}

/// A backup stands beside the real file, even when a link led there.
std::vector<bk_parser::FileChange> EditOutput::backups() const {
    std::vector<bk_parser::FileChange> backups;
    for (const Changed& changed : changed_) {
        if (keeps_old_ && changed.change.is_there) {
            const std::string path = text_of(changed.change.path) + std::string(backup_ending);
            Input old(path);
            backups.push_back(
                {path_of(path), std::move(old.bytes), changed.change.before, old.refusal.empty()});
        }
    }
    return backups;
}

ExitCode EditOutput::write() {
    std::vector<bk_parser::FileChange> changes = backups();
    HardLinks links;
    for (const Changed& changed : changed_) {
        links.note(text_of(changed.change.path), changed.name);
        changes.push_back(changed.change);
    }
    std::string reason;
    {
        const SignalsHeld held; // a signal must not stop between two files
        reason = bk_parser::replace_files(changes);
    }
    if (!reason.empty()) {
        complain(streams_, told_by_name(std::move(reason)) + "; nothing is written");
        return EXIT_UNREADABLE;
    }
    close(streams_.out, "");
    links.tell(streams_, true);
    return EXIT_CLEAN;
}

/// Replaces the path at the beginning of a reason, of a file or its backup, by the name that the user gave.
std::string EditOutput::told_by_name(std::string reason) const {
    for (const Changed& changed : changed_) {
        const std::string path = text_of(changed.change.path);
        std::error_code failure;
        const auto named = std::filesystem::absolute(path_of(changed.name), failure);
        const bool is_same_place = !failure && named.lexically_normal() == changed.change.path;
        const bool is_backup = reason.starts_with(path + std::string(backup_ending) + ":");
        if (reason.starts_with(path + ":") || (is_backup && is_same_place)) {
            return reason.replace(0, path.size(), changed.name);
        }
    }
    return reason;
}

void EditOutput::write_diffs() {
    for (const Changed& changed : changed_) {
        const bk_parser::FileChange& change = changed.change;
        if (is_text(change.before) && is_text(change.after)) {
            const std::string name = patch_name(changed.name);
            write_diff(bk_parser::unified_diff(change.before, change.after, name, name), streams_.out);
        } else {
            streams_.out << shown(changed.name, file_name_limit) << ": is not text; "
                         << counted(change.before.size(), "byte", "bytes") << " would become "
                         << grouped(change.after.size()) << "\n";
        }
    }
    streams_.out.flush();
}

ExitCode EditOutput::write_results() {
    if (has_bytes_ && streams_.out.is_terminal()) {
        complain(streams_, "refusing to write binary data to a terminal; -w changes the file");
        return EXIT_UNREADABLE;
    }
    for (const Changed& changed : changed_) {
        if (!is_given(changed)) {
            complain(streams_,
                     changed.name +
                         ": would change, too, and is not in the output; -w changes it, --dry-run shows it");
        }
    }
    for (const std::string& result : results_) {
        streams_.out << result;
    }
    streams_.out.flush();
    close(streams_.err, "");
    return EXIT_CLEAN;
}

/// Reports how many changes each file got.
void EditOutput::close(Output& out, std::string_view how) {
    const auto told = [&](std::size_t count) {
        return counted(count, request_.one, request_.many) + " " + std::string(how) +
               std::string(request_.done);
    };
    std::size_t total = 0;
    for (const Changed& changed : changed_) {
        total += changed.count;
        out << shown(changed.name, file_name_limit) << ": "
            << (changed.count == 0 ? std::string(how) + "changed, too" : told(changed.count))
            << (is_given(changed) ? "" : ", but not in the output") << "\n";
    }
    if (changed_.empty()) {
        out << "nothing to change\n";
    } else if (changed_.size() > 1) {
        out << told(total) << " in " << counted(changed_.size(), "file", "files") << "\n";
    }
}

} // namespace bkdoc
