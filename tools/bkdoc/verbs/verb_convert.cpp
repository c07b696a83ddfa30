#include "core/sys_device.h"
#include "core/sys_file.h"
#include "output/report.h"
#include "output/text_display.h"
#include "platform/platform.h"
#include "verbs/draft.h"
#include "verbs/verbs.h"

#include <algorithm>

namespace bkdoc {

namespace {

constexpr const char* standard_input = "-";
constexpr const char* standard_output = "-";

std::string place_of(const Difference& difference) {
    return (difference.path.empty() ? "the root" : difference.path) + ", " + difference.what + ": " +
           difference.first;
}

std::string change_of(const Difference& difference) {
    return place_of(difference) + " reads back as " + difference.second;
}

/// One conversion, up to the place where it fails.
class Conversion {
public:
    Conversion(const ConvertOptions& options, Streams& streams, StreamDevice& device)
        : options_(options), streams_(streams), device_(device) {}

    ExitCode run() {
        if (!may_begin()) {
            return EXIT_UNREADABLE;
        }
        Document document(options_.file, options_.open, device_);
        const ExitCode result = report_aside(document, streams_);
        if (!document.is_read() || !may_replace(document) || !write(document)) {
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
        if (options_.form == DocumentForm::enciphered && options_.open.key.empty()) {
            return refuse("--to cipher needs a key, given by --key, --key-file or BKDOC_KEY");
        }
        const bool is_text = options_.form == DocumentForm::text;
        if (!is_text && options_.target == standard_output && streams_.out.is_terminal()) {
            return refuse("standard output is a terminal, which shows text alone");
        }
        return true;
    }

    bool is_source(const std::string& path) const {
        return options_.file == standard_input ? is_standard_input(path) : are_same_file(options_.file, path);
    }

    // What a document with faults holds is not all that its file says.
    bool may_replace(const Document& document) {
        if (options_.target == standard_output) {
            return true;
        }
        if (document.has_faults() && is_source(options_.target)) {
            return refuse(options_.target + ": has faults, and would be written over itself");
        }
        const CoreSet<CoreString>& includes = document.get_file().get_dependencies();
        const bool is_include =
            std::any_of(includes.begin(), includes.end(), [this](const CoreString& include) {
                return are_same_file(std::string(include.get_view()), options_.target);
            });
        return !is_include || refuse(options_.target + ": is included by the document");
    }

    bool write(Document& document) {
        if (const auto reason = write_draft(document, options_.form, options_.open.key, device_)) {
            return refuse(*reason);
        }
        return accept(prove_draft(document, options_.open.key, device_)) && store(device_.get_draft());
    }

    bool accept(const DraftProof& proof) {
        if (!proof.refusal.empty()) {
            return refuse("this form cannot hold the document: " + proof.refusal);
        }
        if (proof.loss) {
            if (!options_.lossy) {
                return refuse("this form cannot hold the document (--lossy converts it all the same): at " +
                              change_of(*proof.loss));
            }
            complain(streams_, "warning: this form cannot hold the document: at " + change_of(*proof.loss));
            lossy_ = true;
        } else if (proof.leaving) {
            complain(streams_, note_on(*proof.leaving));
        }
        return true;
    }

    std::string note_on(const Difference& leaving) const {
        return options_.form == DocumentForm::binary
                   ? "note: the binary form keeps names and values only; kinds, templates and array counts "
                     "are left out, first at " +
                         place_of(leaving)
                   : "note: in text, kinds and types follow from the spelling; first at " +
                         change_of(leaving);
    }

    bool store(const std::string& bytes) {
        if (options_.target == standard_output) {
            streams_.out << bytes;
            if (streams_.out.is_terminal()) {
                streams_.out << "\n";
            }
            return true;
        }
        SysFile file;
        const auto size = static_cast<core_int64>(bytes.size());
        const CoreString target{std::string_view(options_.target)};
        if (!file.open(target, SysFile::MODE_WRITE, SysFile::TYPE_BINARY)) {
            return refuse(options_.target + ": cannot be opened for writing");
        }
        const bool taken = file.write(bytes.data(), size) == size;
        return (file.close() && taken) || refuse(options_.target + ": cannot be stored");
    }

    const ConvertOptions& options_;
    Streams& streams_;
    StreamDevice& device_;
    bool lossy_ = false;
};

} // namespace

ExitCode run_convert(const ConvertOptions& options, Streams& streams, StreamDevice& device) {
    return Conversion(options, streams, device).run();
}

} // namespace bkdoc
