#include "document/recover.h"
#include "input/files/input.h"
#include "input/options/config.h"
#include "output/display/text_display.h"
#include "output/problems/report.h"
#include "output/progress_line.h"
#include "output/stored_file.h"
#include "platform/interruption.h"
#include "platform/paths.h"
#include "platform/platform.h"
#include "tree/tree_walk.h"
#include "verbs/draft.h"
#include "verbs/verbs.h"

#include <algorithm>

namespace bkdoc {

namespace {

using bk_parser::Form;
using bk_parser::LostPart;

constexpr std::size_t most_shown_lost = 50;

std::size_t count_entries(const ParserGroup& root) {
    std::size_t count = 0;
    for (TreeWalk walk(root); walk.next();) {
        count += walk.is_at_group() ? 0 : 1;
    }
    return count;
}

bool is_cut_off(const LostPart& part) noexcept {
    return part.what == "cut off";
}

std::string range_text(const LostPart& part) {
    if (is_cut_off(part)) {
        return "from byte " + grouped(part.offset) + " on: cut off" +
               (part.length == 0 ? "" : ", " + counted(part.length, "byte is", "bytes are") + " missing");
    }
    return part.length < 2
               ? "byte " + grouped(part.offset)
               : "bytes " + grouped(part.offset) + " to " + grouped(part.offset + part.length - 1);
}

/// One run of the verb.
class Recovery {
public:
    Recovery(const Arguments& arguments, Streams& streams)
        : streams_(streams), source_(arguments.operands().front()), target_(arguments.value("--output")),
          storage_(storage_named(arguments.value("--to").value_or("text"))) {}

    ExitCode run(const Arguments& arguments) {
        if (!take_opening(arguments, open_, streams_) || !may_begin()) {
            return EXIT_UNREADABLE;
        }
        bk_parser::RecoverResult result = read();
        const bool is_whole = result.is_whole();
        OpenedDocument document(source_, std::move(result.loaded));
        if (!document.is_read()) {
            return report_aside(document, streams_);
        }
        if (document.form() == Form::text) {
            complain(streams_, shown(document.name(), file_name_limit) +
                                   " is text; recover reads binary, encrypted and archive files; check "
                                   "shows what is wrong with a text");
            return EXIT_UNREADABLE;
        }
        tell_lost(document, result.lost);
        if (!result.lost.empty() && document.root().get_entries().is_empty()) {
            complain(streams_, "nothing is left of " + shown(document.name(), file_name_limit) +
                                   "; nothing is written");
            return EXIT_UNREADABLE;
        }
        return write(document, is_whole);
    }

private:
    bool refuse(const std::string& reason) {
        complain(streams_, reason);
        return false;
    }

    bool may_begin() {
        const std::string reason =
            why_not_stored(storage_, !open_.key.empty(), !target_ && streams_.out.is_terminal());
        if (!reason.empty()) {
            return refuse(reason);
        }
        if (target_ && source_ != "-" && are_same_file(source_, *target_)) {
            return refuse(*target_ + ": is the damaged file; recover writes to another one");
        }
        return true;
    }

    bk_parser::RecoverResult read() {
        const Interruption interruption;
        ProgressLine line(streams_.err, "reading " + shown_operand(source_));
        bk_parser::LoadOptions options = open_.load_options();
        if (open_.use_config) {
            add_config_search(source_, options.search);
        }
        options.progress = [&line](double done) {
            line.show(done);
            return !Interruption::is_wanted();
        };
        if (source_ != "-") {
            return bk_parser::recover(path_of(source_), options);
        }
        options.search.emplace_back();
        std::string bytes;
        read_standard_input(bytes);
        return bk_parser::recover_bytes(bytes, options);
    }

    /// A damaged cipher gives a text of the right length, with errors where it is damaged.
    static std::string summary(const OpenedDocument& document, const std::vector<LostPart>& lost) {
        const auto& problems = document.problems();
        const auto errors = std::count_if(problems.begin(), problems.end(), [](const auto& problem) {
            return problem.line != 0 && problem.severity == bk_parser::Severity::error;
        });
        return !lost.empty() ? counted(lost.size(), "part is lost", "parts are lost")
               : errors == 0 ? "nothing is lost"
                             : "no part is missing, but it has " +
                                   counted(static_cast<std::size_t>(errors), "error", "errors");
    }

    void tell_lost(const OpenedDocument& document, const std::vector<LostPart>& lost) {
        const std::string name = shown(document.name(), file_name_limit);
        const std::size_t entries = count_entries(document.root());
        Output& err = streams_.err;
        err << name << ": " << form_word(document.form()) << ", " << counted(entries, "entry", "entries")
            << " read, " << summary(document, lost) << "\n";
        for (std::size_t i = 0; i < lost.size() && i < most_shown_lost; ++i) {
            err << "  " << range_text(lost[i])
                << (is_cut_off(lost[i]) ? "" : ": " + shown(lost[i].what, file_name_limit)) << "\n";
        }
        if (lost.size() > most_shown_lost) {
            err << "  and " << counted(lost.size() - most_shown_lost, "more part", "more parts") << "\n";
        }
        ProblemWriter writer(err, document.name());
        for (const bk_parser::Problem& problem : document.problems()) {
            if (problem.line != 0 || &problem != document.damage()) {
                writer.write(problem, chain_of(problem, document.document().includes()));
            }
        }
        err.flush();
    }

    ExitCode write(OpenedDocument& document, bool is_whole) {
        const Draft draft = make_draft(document, storage_, open_.key);
        if (!draft.refusal.empty()) {
            refuse(draft.refusal + "; nothing is written");
            return EXIT_UNREADABLE;
        }
        const DraftProof proof = prove_draft(document, draft, storage_, open_);
        bool is_kept = true;
        if (!proof.refusal.empty()) {
            is_kept = refuse("warning: what is written cannot be read back: " + proof.refusal);
        } else if (proof.loss) {
            is_kept =
                refuse("warning: this form cannot hold all of it: first at " + proof.loss->path + ", " +
                       proof.loss->what + ": " + proof.loss->first + " reads back as " + proof.loss->second);
        }
        if (target_) {
            const std::string reason = store_file(*target_, draft.bytes, streams_);
            if (!reason.empty()) {
                refuse(reason);
                return EXIT_UNREADABLE;
            }
        } else {
            streams_.out << draft.bytes << (streams_.out.is_terminal() ? "\n" : "");
        }
        return is_whole && is_kept ? EXIT_CLEAN : EXIT_FAULTS;
    }

    Streams& streams_;
    std::string source_;
    std::optional<std::string> target_;
    Storage storage_;
    OpenOptions open_;
};

} // namespace

ExitCode run_recover(const Arguments& arguments, Streams& streams) {
    return Recovery(arguments, streams).run(arguments);
}

} // namespace bkdoc
