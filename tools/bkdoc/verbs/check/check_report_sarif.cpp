#include "output/display/text_display.h"
#include "output/json_writer.h"
#include "platform/paths.h"
#include "verbs/check/check_report.h"

#include <algorithm>
#include <set>

namespace bkdoc {

namespace {

/// The URI of a file: relative for a relative path, with the scheme "file" for an absolute one.
std::string uri_of(const std::filesystem::path& file) {
    const std::string path = slashed(file);
    std::string uri = file.is_absolute() ? (path.starts_with('/') ? "file://" : "file:///") : "";
    for (const char character : path) {
        const auto byte = static_cast<unsigned char>(character);
        const bool is_plain = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                              (byte >= '0' && byte <= '9') ||
                              std::string_view("-._~/").find(character) != std::string_view::npos ||
                              (character == ':' && file.is_absolute());
        if (is_plain) {
            uri += character;
        } else {
            uri += {'%', hexadecimal_digits[byte >> 4], hexadecimal_digits[byte & 15]};
        }
    }
    return uri;
}

/// Writes SARIF 2.1.0, the interchange format of static analysis.
class SarifReport : public CheckReport {
public:
    explicit SarifReport(Streams& streams) : streams_(streams), json_(streams.out) {
        json_.begin_object();
        json_.member("$schema", "https://json.schemastore.org/sarif-2.1.0.json");
        json_.member("version", "2.1.0");
        json_.key("runs");
        json_.begin_array();
        json_.begin_object();
        json_.member("columnKind", "unicodeCodePoints");
        json_.key("results");
        json_.begin_array();
    }

    void file(const std::string&, const std::vector<ToldProblem>& problems,
              std::size_t most_problems) override {
        for (std::size_t i = 0; i < std::min(problems.size(), most_problems); ++i) {
            write(problems[i].problem);
        }
    }

    void refusal(const std::string& reason) override { complain(streams_, reason); }

    void end(const std::vector<IncludedProblem>& included, std::size_t, const CheckCounts&) override {
        for (const IncludedProblem& problem : included) {
            write(problem.told.problem);
        }
        json_.end_array();
        write_tool();
        json_.end_object();
        json_.end_array();
        json_.end_object();
        json_.finish();
    }

private:
    void write(const bk_parser::Problem& problem) {
        codes_.insert(problem.code);
        json_.begin_object();
        json_.member("ruleId", problem.code);
        json_.member("level", problem.severity == bk_parser::Severity::error ? "error" : "warning");
        json_.key("message");
        json_.begin_object();
        json_.member("text", tool_message(problem, {}));
        json_.end_object();
        json_.key("locations");
        json_.begin_array();
        json_.begin_object();
        json_.key("physicalLocation");
        json_.begin_object();
        json_.key("artifactLocation");
        json_.begin_object();
        json_.member("uri", uri_of(problem.file));
        json_.end_object();
        if (problem.line != 0) {
            write_region(problem);
        }
        json_.end_object();
        json_.end_object();
        json_.end_array();
        json_.end_object();
    }

    void write_region(const bk_parser::Problem& problem) {
        json_.key("region");
        json_.begin_object();
        json_.member("startLine", problem.line);
        json_.member("startColumn", problem.column);
        json_.member("byteOffset", problem.offset);
        json_.member("byteLength", problem.length);
        json_.end_object();
    }

    void write_tool() {
        json_.key("tool");
        json_.begin_object();
        json_.key("driver");
        json_.begin_object();
        json_.member("name", "bkdoc");
        json_.member("version", BKDOC_VERSION);
        json_.key("rules");
        json_.begin_array();
        for (const std::string& code : codes_) {
            json_.begin_object();
            json_.member("id", code);
            json_.end_object();
        }
        json_.end_array();
        json_.end_object();
        json_.end_object();
    }

    Streams& streams_;
    JsonWriter json_;
    std::set<std::string> codes_;
};

} // namespace

std::unique_ptr<CheckReport> make_sarif_report(Streams& streams) {
    return std::make_unique<SarifReport>(streams);
}

} // namespace bkdoc
