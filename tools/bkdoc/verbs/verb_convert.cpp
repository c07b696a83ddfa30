#include "output/display/text_display.h"
#include "output/problems/report.h"
#include "output/stored_file.h"
#include "platform/paths.h"
#include "platform/platform.h"
#include "verbs/draft.h"
#include "verbs/verbs.h"

#include <algorithm>

namespace bkdoc {

namespace {

using bk_parser::Form;

constexpr const char* standard_input = "-";
constexpr const char* standard_output = "-";

std::string place_of(const Difference& difference) {
    return (difference.path.empty() ? "the root" : difference.path) + ", " + difference.what + ": " +
           difference.first;
}

std::string change_of(const Difference& difference) {
    return place_of(difference) + " reads back as " + difference.second;
}

/// The options of a conversion.
struct Request {
    OpenOptions open;
    std::string source;
    std::string target; // "-" is standard output
    Storage storage;
    bool lossy = false;
};

/// Runs one conversion. It stops at the first step that fails.
class Conversion {
public:
    Conversion(const Request& request, Streams& streams) : request_(request), streams_(streams) {}

    ExitCode run() {
        if (!may_begin()) {
            return EXIT_UNREADABLE;
        }
        OpenedDocument document = open_document(request_.source, request_.open, streams_);
        if (const bk_parser::Problem* const damage = document.damage()) {
            refuse(tool_message(*damage, {}));
            return EXIT_UNREADABLE;
        }
        const ExitCode result = report_aside(document, streams_);
        if (!document.is_read()) {
            return result;
        }
        if (document.is_broken_json()) {
            refuse(document.name() + ": could be read only up to this place");
            return EXIT_UNREADABLE;
        }
        if (is_stored_so(document)) {
            return result;
        }
        if (!may_replace(document) || !write(document)) {
            return EXIT_UNREADABLE;
        }
        return std::max(result, lossy_ ? EXIT_FAULTS : EXIT_CLEAN);
    }

private:
    bool refuse(const std::string& reason) {
        complain(streams_, reason + "; nothing is written");
        return false;
    }

    bool may_begin() {
        const bool to_terminal = request_.target == standard_output && streams_.out.is_terminal();
        const std::string reason = why_not_stored(request_.storage, !request_.open.key.empty(), to_terminal);
        return reason.empty() || refuse(reason);
    }

    /// A text that is saved to its own file keeps its comments, layout and includes.
    bool is_stored_so(const OpenedDocument& document) const {
        const bool is_text = document.form() == Form::text && !document.is_json();
        return is_text && request_.storage.form == Form::text && !request_.storage.json &&
               request_.target != standard_output && is_source(request_.target);
    }

    bool is_source(const std::string& path) const {
        return request_.source == standard_input ? is_standard_input(path)
                                                 : are_same_file(request_.source, path);
    }

    // A document with errors may lack a part of its file.
    bool may_replace(const OpenedDocument& document) {
        if (document.lacks_includes()) {
            return refuse(document.name() + ": an included file is missing");
        }
        if (request_.target == standard_output) {
            return true;
        }
        if (document.has_errors() && is_source(request_.target)) {
            return refuse(request_.target + ": has errors and would replace itself");
        }
        const auto& includes = document.document().dependencies();
        const bool is_include =
            std::any_of(includes.begin(), includes.end(), [this](const std::filesystem::path& include) {
                return are_same_file(text_of(include), request_.target);
            });
        return !is_include || refuse(request_.target + ": is included by the document");
    }

    bool write(OpenedDocument& document) {
        const Draft draft = make_draft(document, request_.storage, request_.open.key);
        if (!draft.refusal.empty()) {
            return refuse(draft.refusal);
        }
        return accept(prove_draft(document, draft, request_.storage, request_.open)) && store(draft.bytes);
    }

    bool accept(const DraftProof& proof) {
        if (!proof.refusal.empty()) {
            return refuse("this form cannot hold the document: " + proof.refusal);
        }
        if (proof.loss) {
            if (!request_.lossy) {
                return refuse("this form cannot hold the document (--lossy converts it anyway): at " +
                              change_of(*proof.loss));
            }
            complain(streams_, "warning: this form cannot hold the document: at " + change_of(*proof.loss));
            lossy_ = true;
        }
        return true;
    }

    bool store(const std::string& bytes) {
        if (request_.target == standard_output) {
            streams_.out << bytes;
            if (streams_.out.is_terminal()) {
                streams_.out << "\n";
            }
            return true;
        }
        const std::string reason = store_file(request_.target, bytes, streams_);
        return reason.empty() || refuse(reason);
    }

    const Request& request_;
    Streams& streams_;
    bool lossy_ = false;
};

} // namespace

ExitCode run_convert(const Arguments& arguments, Streams& streams) {
    const auto form = arguments.value("--to");
    if (!form) {
        complain(streams, "--to needs a form: " + storage_list());
        return EXIT_UNREADABLE;
    }
    Request request;
    request.source = arguments.operands().at(0);
    request.target = arguments.operands().at(1);
    request.storage = storage_named(*form);
    request.open.reads_json = true;
    if (const auto from = arguments.value("--from")) {
        request.open.json = storage_named(*from).json;
    }
    request.lossy = arguments.has("--lossy");
    return take_opening(arguments, request.open, streams) ? Conversion(request, streams).run()
                                                          : EXIT_UNREADABLE;
}

} // namespace bkdoc
