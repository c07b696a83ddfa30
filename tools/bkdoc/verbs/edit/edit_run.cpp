#include "verbs/edit/edit_run.h"

#include "document/places.h"
#include "input/files/file_list.h"
#include "output/problems/report.h"
#include "platform/paths.h"
#include "verbs/edit/edit_output.h"

#include <algorithm>
#include <set>

namespace bkdoc {

namespace {

void replace_each(std::string& text, std::string_view old, std::string_view with) {
    for (std::size_t at = text.find(old); at != std::string::npos; at = text.find(old, at + with.size())) {
        text.replace(at, old.size(), with);
    }
}

/// Rewords the library's reason for the command line: with file names as the user spelled them, and without hints that only a
/// program can follow.
std::string tool_reason(std::string reason, const OpenedDocument& document) {
    for (const bk_parser::DocumentFile& file : document.document().files()) {
        replace_each(reason, text_of(file.path) + ":", shown_file(file.file, document.name()) + ":");
    }
    replace_each(reason, "the layout cannot be kept: more would be read than there is, because ", "");
    replace_each(reason, ", see the losses", "");
    replace_each(reason, "what came from it was not changed alike",
                 "this changes one place alone; change the file itself");
    replace_each(reason, ", and load the document again", "");
    replace_each(reason, " and load the document again", "");
    return reason;
}

/// Says what helps against a loss that a change makes.
std::string told_loss(const std::string& message) {
    return message.ends_with("texts of this version have no quotes and line ends in strings")
               ? message + "; they have with '#Brellwick_Serial_Version 1.2' as the first line"
               : message;
}

/// One run over all documents.
class EditRun {
public:
    EditRun(const Arguments& arguments, Streams& streams, const EditRequest& request)
        : streams_(streams), request_(request), force_(arguments.has("--force")),
          output_(arguments, streams, request) {}

    ExitCode run(const OpenOptions& open, const FileList& list) {
        for (const std::string& fault : list.faults) {
            refuse(fault);
        }
        for (const std::string& file : list.files) {
            OpenedDocument document = open_document(file, open, streams_);
            if (document.is_cancelled()) {
                complain(streams_, "interrupted; nothing is written");
                return EXIT_INTERRUPTED;
            }
            if (may_change(document)) {
                change(document);
            }
        }
        if (is_refused_) {
            complain(streams_, "nothing is written");
            return EXIT_UNREADABLE;
        }
        if (!is_found_) {
            complain(streams_, "nothing matches " + request_.sought);
            return EXIT_FAULTS;
        }
        return output_.finish();
    }

private:
    void refuse(const std::string& reason) {
        if (told_.insert(reason).second) { // one in a shared file comes from each document that includes it
            complain(streams_, reason);
        }
        is_refused_ = true;
    }

    // A document with errors may lack a part of its file. A save would then remove that part.
    bool may_change(const OpenedDocument& document) {
        if (!document.is_read()) {
            report_aside(document, streams_, reported_);
            is_refused_ = true;
            return false;
        }
        if (document.has_errors() && !force_) {
            report_aside(document, streams_, reported_);
            refuse(document.name() + ": has errors; --force changes it anyway");
            return false;
        }
        return true;
    }

    void change(OpenedDocument& document) {
        const EditOutcome outcome = request_.edit(document);
        if (!outcome.refusal.empty()) {
            refuse(outcome.refusal);
            return;
        }
        is_found_ = is_found_ || outcome.is_found;
        bk_parser::SavePreview preview;
        if (outcome.is_found) {
            preview = bk_parser::preview_save(document.document());
        }
        std::string reason = tool_reason(preview.reason, document);
        for (const bk_parser::Problem& loss : preview.losses) {
            complain(streams_, document.name() + ": " + told_loss(loss.message));
        }
        if (reason.empty()) {
            reason = output_.take(document, outcome, std::move(preview.changes));
        }
        if (!reason.empty()) {
            refuse(reason);
        }
    }

    Streams& streams_;
    const EditRequest& request_;
    bool force_;
    EditOutput output_;
    ReportedProblems reported_;
    std::set<std::string> told_;
    bool is_refused_ = false;
    bool is_found_ = false;
};

} // namespace

bool EditOutcome::is_new_place(const OpenedDocument& document, const ParserEntry& entry, unsigned int value) {
    const bk_parser::EntryPlace place = place_of(document.document(), entry);
    return !place.is_known() || places_.emplace(text_of(place.path), place.line, place.column, value).second;
}

ExitCode run_edit(const Arguments& arguments, Streams& streams, const EditRequest& request) {
    OpenOptions open;
    if (!take_opening(arguments, open, streams)) {
        return EXIT_UNREADABLE;
    }
    open.keep_sources = true;
    const bool has_input = std::find(request.files.begin(), request.files.end(), "-") != request.files.end();
    if (arguments.has("-w") && has_input) {
        complain(streams, "-w cannot change standard input; without -w the result is printed");
        return EXIT_UNREADABLE;
    }
    FileListOptions options;
    options.operands = request.files;
    options.use_config = open.use_config;
    return EditRun(arguments, streams, request).run(open, list_files(options));
}

std::string own_file(const OpenedDocument& document) {
    const auto& files = document.document().files();
    return files.empty() ? std::string() : text_of(files.front().path);
}

std::string home_of(const OpenedDocument& document, const ParserEntry& entry) {
    const bk_parser::EntryPlace place = place_of(document.document(), entry);
    return place.is_known() ? text_of(place.path) : own_file(document);
}

std::string told_place(const OpenedDocument& document, const ParserEntry& entry) {
    const bk_parser::EntryPlace place = place_of(document.document(), entry);
    std::string text = document.name();
    if (place.is_known()) {
        text = shown_file(place.file, document.name()) + ":" + std::to_string(place.line) + ":" +
               std::to_string(place.column);
    }
    return text + ": " + bk_parser::path_of(document.root(), entry);
}

std::vector<bk_parser::Visit> found_by(const OpenedDocument& document, const bk_parser::Path& path) {
    std::vector<bk_parser::Visit> visits;
    for (const bk_parser::Visit& visit : bk_parser::find_visits(document.root(), path)) {
        visits.push_back(visit);
    }
    return visits;
}

} // namespace bkdoc
