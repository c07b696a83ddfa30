#include "document/format.h"
#include "document/save.h"
#include "document/text_diff.h"
#include "input/files/file_list.h"
#include "input/files/input.h"
#include "input/opened_document.h"
#include "output/diff/diff_text.h"
#include "output/diff/patch_name.h"
#include "output/display/text_display.h"
#include "output/hard_links.h"
#include "output/problems/report.h"
#include "platform/paths.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <utility>

namespace bkdoc {

namespace {

constexpr unsigned int most_indent = 100;
constexpr unsigned int most_width = 1'000'000;

unsigned int number_of(const Arguments& arguments, std::string_view option, unsigned int usual) {
    return static_cast<unsigned int>(arguments.number_or(option, usual));
}

/// One run of the verb over all its files.
class Formatting {
public:
    Formatting(const Arguments& arguments, Streams& streams)
        : streams_(streams), writes_(arguments.has("--write")), checks_(arguments.has("--check")),
          shows_(arguments.has("--diff")) {
        options_.indent = number_of(arguments, "--indent", options_.indent);
        options_.width = number_of(arguments, "--width", options_.width);
    }

    ExitCode run(const FileList& list) {
        for (const std::string& fault : list.faults) {
            fail(fault);
        }
        for (const std::string& file : list.files) {
            if (streams_.out.has_failed()) {
                break;
            }
            take(file);
        }
        if ((writes_ || checks_) && list.files.size() > 1) {
            streams_.err << counted(list.files.size(), "file", "files") + ", " + grouped(changed_) +
                                (writes_ ? " formatted\n" : " not formatted\n");
        }
        const bool is_asked = checks_ || (shows_ && !writes_);
        return std::max(worst_, is_asked && changed_ != 0 ? EXIT_FAULTS : EXIT_CLEAN);
    }

private:
    void fail(const std::string& reason) {
        complain(streams_, reason);
        worst_ = EXIT_UNREADABLE;
    }

    void take(const std::string& file) {
        if (file == "-" && writes_) {
            fail("-w cannot write to standard input");
            return;
        }
        const Input input(file);
        if (!input.refusal.empty()) {
            fail(input.refusal);
            return;
        }
        const bk_parser::FormatResult result = bk_parser::format_text(input.bytes, options_);
        if (!result.ok()) {
            refuse(file, result);
            return;
        }
        const bool has_changed = result.text != input.bytes;
        answer(file, input.bytes, result.text);
        changed_ += has_changed && (!writes_ || store(file, input.bytes, result.text)) ? 1 : 0;
    }

    void answer(const std::string& file, const std::string& before, const std::string& after) {
        const std::string name = shown(shown_operand(file), file_name_limit);
        if (checks_ && before != after) {
            streams_.out << name << "\n";
        }
        if (shows_) {
            const std::string label = file == "-" ? name : patch_name(file);
            write_diff(bk_parser::unified_diff(before, after, label, label), streams_.out);
        }
        if (!checks_ && !shows_ && !writes_) {
            streams_.out << after;
        }
    }

    void refuse(const std::string& file, const bk_parser::FormatResult& result) {
        const std::string name = shown_operand(file);
        ProblemWriter writer(streams_.err, name);
        for (const bk_parser::Problem& problem : result.problems) {
            writer.write(problem, {});
        }
        fail(shown(name, file_name_limit) + ": " + result.reason + "; it is left as it is");
    }

    bool store(const std::string& path, const std::string& before, const std::string& after) {
        const bk_parser::FileChange change{path_of(path), before, after, true};
        HardLinks links;
        links.note(path, path);
        const std::string reason = bk_parser::replace_files({&change, 1});
        if (!reason.empty()) {
            fail(reason);
            return false;
        }
        links.tell(streams_, true);
        return true;
    }

    Streams& streams_;
    bk_parser::FormatOptions options_;
    bool writes_;
    bool checks_;
    bool shows_;
    std::size_t changed_ = 0;
    ExitCode worst_ = EXIT_CLEAN;
};

} // namespace

ExitCode run_fmt(const Arguments& arguments, Streams& streams) {
    FileListOptions options;
    options.operands = arguments.operands();
    if (options.operands.empty()) {
        options.operands.emplace_back("-");
    }
    options.extensions = arguments.values("--ext");
    options.use_config = !arguments.has("--no-config");
    for (const auto& [option, most] :
         {std::pair{"--indent", most_indent}, std::pair{"--width", most_width}}) {
        if (arguments.number_or(option, 0) > most) {
            complain(streams, std::string(option) + " takes at most " + grouped(most));
            return EXIT_UNREADABLE;
        }
    }
    return Formatting(arguments, streams).run(list_files(options));
}

} // namespace bkdoc
