#include "output/problems/report.h"

#include "output/display/text_display.h"
#include "output/problems/snippet.h"
#include "platform/paths.h"

#include <algorithm>
#include <string_view>

namespace bkdoc {

namespace {

constexpr std::size_t problem_limit = 600; // characters; words may be of any length

/// Replacements of the library's option names by those of the tool.
struct Wording {
    std::string_view library;
    std::string_view tool;
};
constexpr Wording wordings[] = {
    {"; a search folder adds a place", "; -I adds a folder"},
    {": ParserLimits::source_size", "; --trusted reads on"},
    {": ParserLimits::expanded_size", ""},
    {": ParserLimits::include_depth", "; --trusted reads on"},
    {": ParserLimits::include_count", "; --trusted reads on"},
    {": ParserLimits::archive_ratio and archive_size", "; --trusted reads it"},
    {", and no key is given", ", and no key is given: --key, --key-file or BKDOC_KEY gives one"},
    {" is JSON, not a document", " is JSON, not a document; bkdoc convert reads it"},
};

std::string_view severity_word(bk_parser::Severity severity) noexcept {
    return severity == bk_parser::Severity::error ? "error:" : "warning:";
}

std::string place_text(const std::string& file, unsigned int line, unsigned int column) {
    std::string text = shown(file, file_name_limit) + ":";
    if (line != 0) {
        text += std::to_string(line) + ":" + std::to_string(column) + ":";
    }
    return text;
}

} // namespace

std::string shown_file(const std::filesystem::path& file, const std::string& memory_name) {
    return file.empty() ? memory_name : text_of(file);
}

std::string tool_message(const bk_parser::Problem& problem, const std::string& name) {
    std::string message = problem.message;
    for (const Wording& wording : wordings) {
        if (message.ends_with(wording.library)) {
            message.replace(message.size() - wording.library.size(), wording.library.size(), wording.tool);
        }
    }
    if (!name.empty() && message.starts_with(name)) {
        const std::string_view rest = std::string_view(message).substr(name.size());
        for (const std::string_view link : {": ", " is "}) {
            if (rest.starts_with(link)) {
                return std::string(rest.substr(link.size()));
            }
        }
    }
    return message;
}

std::vector<InclusionPlace> chain_of(const bk_parser::Problem& problem,
                                     const std::vector<bk_parser::Include>& includes) {
    std::vector<InclusionPlace> chain;
    std::filesystem::path included = problem.file;
    for (const std::filesystem::path& file : problem.included_from) {
        const auto found =
            std::find_if(includes.begin(), includes.end(), [&](const bk_parser::Include& include) {
                return include.file == file && include.found == included;
            });
        chain.push_back(found == includes.end() ? InclusionPlace{file}
                                                : InclusionPlace{file, found->line, found->column});
        included = file;
    }
    return chain;
}

void ProblemWriter::write(const bk_parser::Problem& problem, const std::vector<InclusionPlace>& chain) {
    if (chain.empty()) {
        last_file_.clear();
    } else if (problem.file != last_file_) {
        write_chain(chain);
        last_file_ = problem.file;
    }
    write_line(problem);
    write_snippet(problem, out_);
}

void ProblemWriter::write_line(const bk_parser::Problem& problem) {
    const std::string file = shown_file(problem.file, memory_name_);
    const std::string message = tool_message(problem, problem.line == 0 ? file : std::string());
    out_.paint(Tone::strong, place_text(file, problem.line, problem.column));
    out_ << " ";
    out_.paint(problem.severity == bk_parser::Severity::error ? Tone::error : Tone::warning,
               severity_word(problem.severity));
    out_ << " ";
    out_.paint(Tone::strong, shown(message, problem_limit));
    out_.paint(Tone::dim, " [" + problem.code + "]");
    out_ << "\n";
}

void ProblemWriter::write_chain(const std::vector<InclusionPlace>& chain) {
    for (std::size_t i = 0; i < chain.size(); ++i) {
        out_ << (i == 0 ? "in file included from " : "                 from ");
        out_.paint(Tone::strong,
                   place_text(shown_file(chain[i].file, memory_name_), chain[i].line, chain[i].column));
        out_ << "\n";
    }
}

std::string place_key(const bk_parser::Problem& problem) {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::absolute(problem.file, error).lexically_normal();
    return text_of(path) + '\n' + std::to_string(problem.offset) + '\n' + problem.code;
}

bool ReportedProblems::has(const bk_parser::Problem& problem) const {
    return !known_.empty() && known_.contains(place_key(problem));
}

// A document in memory has no file, and is read once.
void ReportedProblems::add(const OpenedDocument& document) {
    for (const bk_parser::Problem& problem : document.problems()) {
        if (!problem.file.empty() && problem.line != 0) {
            known_.insert(place_key(problem));
        }
    }
}

void report(const OpenedDocument& document, Output& out, ReportedProblems& reported) {
    ProblemWriter writer(out, document.name());
    for (const bk_parser::Problem& problem : document.problems()) {
        if (out.has_failed()) {
            return;
        }
        if (&problem != document.refusal() && !reported.has(problem)) {
            writer.write(problem, chain_of(problem, document.document().includes()));
        }
    }
    reported.add(document);
}

ExitCode report_aside(const OpenedDocument& document, Streams& streams, ReportedProblems& reported) {
    if (document.is_cancelled()) {
        complain(streams, "interrupted");
    } else if (const bk_parser::Problem* const refusal = document.refusal()) {
        complain(streams, tool_message(*refusal, {}));
    }
    report(document, streams.err, reported);
    streams.err.flush();
    return document.exit_code();
}

ExitCode report_aside(const OpenedDocument& document, Streams& streams) {
    ReportedProblems reported;
    return report_aside(document, streams, reported);
}

} // namespace bkdoc
