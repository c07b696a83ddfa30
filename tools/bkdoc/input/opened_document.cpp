#include "input/opened_document.h"

#include "input/files/input.h"
#include "input/json_input.h"
#include "input/options/config.h"
#include "output/progress_line.h"
#include "platform/interruption.h"
#include "platform/paths.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace bkdoc {

namespace {

constexpr std::array<std::string_view, 5> refusals = {"unreadable", "not-a-document", "too-large",
                                                      "wrong-key", "no-key"};
constexpr std::array<std::string_view, 3> damages = {"cut-off", "damaged", "nested-too-deeply"};

/// The first problem of the whole document that has one of these codes, or null.
const bk_parser::Problem* find_whole(const std::vector<bk_parser::Problem>& problems,
                                     std::span<const std::string_view> codes) noexcept {
    const auto found = std::find_if(problems.begin(), problems.end(), [codes](const auto& problem) {
        return problem.line == 0 && std::find(codes.begin(), codes.end(), problem.code) != codes.end();
    });
    return found == problems.end() ? nullptr : &*found;
}

/// Text in memory has no folder, so names are relative to the current one.
OpenedDocument parse_bytes(std::string name, std::string_view bytes, bk_parser::LoadOptions options) {
    options.search.emplace_back();
    return {std::move(name), bk_parser::parse(bytes, options)};
}

OpenedDocument refused(std::string name, std::string reason) {
    bk_parser::LoadResult result;
    bk_parser::Problem& problem = result.problems.emplace_back();
    problem.code = refusals.front();
    problem.message = std::move(reason);
    return {std::move(name), std::move(result)};
}

OpenedDocument open_with(const std::string& operand, const OpenOptions& options,
                         std::function<bool(double)> progress) {
    bk_parser::LoadOptions load_options = options.load_options();
    if (options.use_config) {
        add_config_search(operand, load_options.search);
    }
    load_options.progress = std::move(progress);
    if (operand == "-") {
        std::string bytes;
        if (!read_standard_input(bytes)) {
            return refused(operand, "standard input cannot be read");
        }
        if (is_json_input(operand, bytes, options)) {
            return {operand, read_json("<stdin>", bytes, options, std::move(load_options.progress)), true};
        }
        return parse_bytes(operand, bytes, std::move(load_options));
    }
    if (is_json_file(operand, options)) {
        const Input input(operand);
        if (!input.refusal.empty()) {
            return refused(operand, input.refusal);
        }
        return {operand, read_json(operand, input.bytes, options, std::move(load_options.progress)), true};
    }
    if (operand.empty()) {
        return refused(operand, "'': no such file");
    }
    return {operand, bk_parser::load(path_of(operand), load_options)};
}

} // namespace

const bk_parser::Problem* OpenedDocument::refusal() const noexcept {
    return find_whole(result_.problems, refusals);
}

const bk_parser::Problem* OpenedDocument::damage() const noexcept {
    return find_whole(result_.problems, damages);
}

bool OpenedDocument::is_broken_json() const noexcept {
    return std::any_of(result_.problems.begin(), result_.problems.end(), [](const auto& problem) {
        return problem.code == "json-syntax" || problem.code == "json-shape";
    });
}

bool OpenedDocument::lacks_includes() const {
    const std::vector<bk_parser::Include>& includes = result_.document.includes();
    const bool is_left_open =
        std::any_of(result_.problems.begin(), result_.problems.end(),
                    [](const bk_parser::Problem& problem) { return problem.code == "include-left-open"; });
    return is_left_open ||
           std::any_of(includes.begin(), includes.end(),
                       [](const bk_parser::Include& include) { return !include.problem.empty(); });
}

ExitCode OpenedDocument::exit_code() const noexcept {
    return result_.cancelled      ? EXIT_INTERRUPTED
           : refusal() != nullptr ? EXIT_UNREADABLE
           : has_errors()         ? EXIT_FAULTS
                                  : EXIT_CLEAN;
}

OpenedDocument open_document(const std::string& operand, const OpenOptions& options, Streams& streams) {
    const Interruption interruption;
    ProgressLine line(streams.err, "reading " + shown_operand(operand));
    return open_with(operand, options, [&line](double done) {
        line.show(done);
        return !Interruption::is_wanted();
    });
}

OpenedDocument open_quietly(const std::string& operand, const OpenOptions& options,
                            std::function<void(double)> tell) {
    return open_with(operand, options, [tell = std::move(tell)](double done) {
        if (tell) {
            tell(done);
        }
        return !Interruption::is_wanted();
    });
}

OpenedDocument open_bytes(std::string name, std::string_view bytes, const OpenOptions& options) {
    if (options.json) {
        return {name, read_json(name, bytes, options, {}), true};
    }
    return parse_bytes(std::move(name), bytes, options.load_options());
}

std::string shown_operand(const std::string& operand) {
    return operand == "-" ? "<stdin>" : operand;
}

std::string_view form_word(bk_parser::Form form) noexcept {
    switch (form) {
    case bk_parser::Form::binary:
        return "binary";
    case bk_parser::Form::enciphered:
        return "encrypted text";
    case bk_parser::Form::archive:
        return "archive";
    case bk_parser::Form::text:
        break;
    }
    return "text";
}

} // namespace bkdoc
