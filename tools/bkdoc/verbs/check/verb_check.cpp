#include "input/files/file_list.h"
#include "input/options/config.h"
#include "input/options/problem_code.h"
#include "output/display/text_display.h"
#include "output/progress_line.h"
#include "platform/interruption.h"
#include "platform/paths.h"
#include "verbs/check/check_pool.h"
#include "verbs/check/check_report.h"
#include "verbs/check/shared_files.h"
#include "verbs/check/watch.h"
#include "verbs/verbs.h"

#include <limits>
#include <thread>

namespace bkdoc {

namespace {

constexpr std::size_t most_threads = 256;

/// The options of a check.
struct Request {
    CheckRules rules;
    FileListOptions list;
    std::size_t threads = 1;
    std::string format;
};

std::size_t thread_count(const Arguments& arguments) {
    const std::size_t processors = std::max(1u, std::thread::hardware_concurrency());
    const std::size_t asked = arguments.number_or("--jobs", 0);
    return asked == 0 ? std::min(processors, most_threads) : asked;
}

class FileProgress {
public:
    FileProgress(Streams& streams, const std::vector<std::string>& files)
        : line_(streams.err, "checking " + (files.size() == 1 ? shown_operand(files.front())
                                                              : counted(files.size(), "file", "files"))),
          count_(files.size()) {}

    void step() {
        ++done_;
        show(0);
    }
    /// The progress within the next file.
    void show(double part) { line_.show((static_cast<double>(done_) + part) / static_cast<double>(count_)); }

private:
    ProgressLine line_;
    std::size_t count_;
    std::size_t done_ = 0;
};

/// Where a configuration may be created: in the given folders and in the current one.
void add_config_places(const std::vector<std::string>& operands, std::vector<std::filesystem::path>& places) {
    places.emplace_back(config_name);
    for (const std::string& operand : operands) {
        std::error_code error;
        if (std::filesystem::is_directory(path_of(operand), error)) {
            places.push_back(path_of(operand) / config_name);
        }
    }
}

/// Checks all files once.
WatchRound check_once(const Request& request, Streams& streams) {
    const Interruption interruption;
    forget_configs();
    const FileList list = list_files(request.list);
    const auto report = make_check_report(request.format, streams);
    CheckSummary summary(list.files.size() == 1);
    WatchRound round;
    for (const std::string& fault : list.faults) {
        report->refusal(fault);
        summary.fail(EXIT_UNREADABLE);
    }
    if (request.rules.open.use_config) {
        add_config_places(request.list.operands, round.sources);
    }
    FileProgress progress(streams, list.files);
    const SharedFiles shared;
    const auto take = [&](CheckedFile&& file) {
        progress.step();
        if (file.refusal) {
            report->refusal(*file.refusal);
        }
        round.sources.insert(round.sources.end(), file.sources.begin(), file.sources.end());
        const std::string name = file.name;
        const std::size_t most = file.most_problems;
        report->file(name, summary.add(std::move(file)), most);
    };
    check_files(list.files, request.rules, request.threads, take,
                [&progress](double part) { progress.show(part); });
    const std::size_t most = request.rules.max_problems.value_or(usual_most_problems);
    const auto included = summary.take_included();
    report->end(included, most == 0 ? std::numeric_limits<std::size_t>::max() : most, summary.counts());
    if (Interruption::is_wanted()) {
        complain(streams, "interrupted");
        summary.fail(EXIT_INTERRUPTED);
    }
    round.code = summary.counts().code;
    return round;
}

bool take_request(const Arguments& arguments, Request& request, Streams& streams) {
    request.rules.strict = arguments.has("--strict");
    if (arguments.has("--max-problems")) {
        request.rules.max_problems = arguments.number_or("--max-problems", usual_most_problems);
    }
    request.list.operands = arguments.operands();
    request.list.files_from = arguments.value("--files-from");
    request.list.is_nul_separated = arguments.has("-0");
    request.list.extensions = arguments.values("--ext");
    if (arguments.number_or("--jobs", 0) > most_threads) {
        complain(streams, "--jobs takes at most " + grouped(most_threads));
        return false;
    }
    request.threads = thread_count(arguments);
    request.format = arguments.value_or("--format", arguments.has("--json") ? "json" : "text");
    if (request.list.operands.empty() && !request.list.files_from) {
        complain(streams, "check needs FILE; bkdoc check --help shows an example");
        return false;
    }
    const bool is_opened = take_opening(arguments, request.rules.open, streams);
    request.list.use_config = request.rules.open.use_config;
    request.rules.open.allow = arguments.values("--allow");
    for (const std::string& code : request.rules.open.allow) {
        if (const std::string reason = unknown_code(code); !reason.empty()) {
            complain(streams, "--allow: " + reason);
            return false;
        }
    }
    return is_opened;
}

} // namespace

ExitCode run_check(const Arguments& arguments, Streams& streams) {
    Request request;
    if (!take_request(arguments, request, streams)) {
        return EXIT_UNREADABLE;
    }
    if (arguments.has("--watch")) {
        return watch(request.list, streams, [&] { return check_once(request, streams); });
    }
    return check_once(request, streams).code;
}

} // namespace bkdoc
