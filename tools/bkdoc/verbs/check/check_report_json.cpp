#include "output/json_writer.h"
#include "platform/paths.h"
#include "verbs/check/check_report.h"

#include <algorithm>

namespace bkdoc {

namespace {

std::string_view severity_word(bk_parser::Severity severity) noexcept {
    return severity == bk_parser::Severity::error ? "error" : "warning";
}

/// Writes an object with the problems of all files.
class JsonReport : public CheckReport {
public:
    explicit JsonReport(Streams& streams) : json_(streams.out) {
        json_.begin_object();
        json_.key("problems");
        json_.begin_array();
    }

    void file(const std::string&, const std::vector<ToldProblem>& problems,
              std::size_t most_problems) override {
        for (std::size_t i = 0; i < std::min(problems.size(), most_problems); ++i) {
            write(problems[i], {});
        }
        left_out_ += problems.size() - std::min(problems.size(), most_problems);
    }

    void refusal(const std::string& reason) override { refusals_.push_back(reason); }

    void end(const std::vector<IncludedProblem>& included, std::size_t, const CheckCounts& counts) override {
        for (const IncludedProblem& problem : included) {
            write(problem.told, problem.documents);
        }
        json_.end_array();
        json_.key("unread");
        json_.begin_array();
        for (const std::string& refusal : refusals_) {
            json_.string(refusal);
        }
        json_.end_array();
        json_.member("files", counts.files);
        json_.member("files_with_problems", counts.files_with_problems);
        json_.member("errors", counts.errors);
        json_.member("warnings", counts.warnings);
        json_.member("left_out", left_out_);
        json_.end_object();
        json_.finish();
    }

private:
    void write(const ToldProblem& told, const std::vector<std::string>& documents) {
        const bk_parser::Problem& problem = told.problem;
        json_.begin_object();
        json_.member("severity", severity_word(problem.severity));
        json_.member("code", problem.code);
        json_.member("message", tool_message(problem, {}));
        json_.member("file", text_of(problem.file));
        if (problem.line != 0) {
            json_.member("line", problem.line);
            json_.member("column", problem.column);
            json_.member("offset", problem.offset);
            json_.member("length", problem.length);
        }
        if (!told.chain.empty()) {
            write_chain(told.chain);
        }
        if (!documents.empty()) {
            json_.key("documents");
            json_.begin_array();
            for (const std::string& document : documents) {
                json_.string(document);
            }
            json_.end_array();
        }
        json_.end_object();
    }

    void write_chain(const std::vector<InclusionPlace>& chain) {
        json_.key("included_from");
        json_.begin_array();
        for (const InclusionPlace& place : chain) {
            json_.begin_object();
            json_.member("file", text_of(place.file));
            if (place.line != 0) {
                json_.member("line", place.line);
                json_.member("column", place.column);
            }
            json_.end_object();
        }
        json_.end_array();
    }

    JsonWriter json_;
    std::vector<std::string> refusals_;
    std::size_t left_out_ = 0;
};

} // namespace

std::unique_ptr<CheckReport> make_json_report(Streams& streams) {
    return std::make_unique<JsonReport>(streams);
}

} // namespace bkdoc
