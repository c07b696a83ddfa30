#include "verbs/check/check_report.h"

#include "output/display/screen_column.h"
#include "output/display/text_display.h"
#include "platform/paths.h"

#include <algorithm>
#include <set>

namespace bkdoc {

namespace {

/// A faulty configuration is the reason for each document below its folder.
void complain_once(const std::string& reason, std::set<std::string>& told, Streams& streams) {
    if (told.insert(reason).second) {
        complain(streams, reason);
    }
}

/// Writes for people: source lines with carets, and a closing line.
class TextReport : public CheckReport {
public:
    explicit TextReport(Streams& streams) : streams_(streams), writer_(streams.out, {}) {}

    void file(const std::string& name, const std::vector<ToldProblem>& problems,
              std::size_t most_problems) override {
        for (std::size_t i = 0; i < std::min(problems.size(), most_problems); ++i) {
            writer_.write(problems[i].problem, problems[i].chain);
        }
        write_rest(name, problems.size(), most_problems);
    }

    void refusal(const std::string& reason) override { complain_once(reason, told_, streams_); }

    void end(const std::vector<IncludedProblem>& included, std::size_t most_problems,
             const CheckCounts& counts) override {
        for (std::size_t begin = 0; begin < included.size();) {
            std::size_t stop = begin;
            while (stop < included.size() &&
                   included[stop].told.problem.file == included[begin].told.problem.file) {
                ++stop;
            }
            write_included(included, begin, stop, most_problems);
            begin = stop;
        }
        write_closing_line(counts);
    }

private:
    void write_rest(const std::string& name, std::size_t count, std::size_t most_problems) {
        if (count > most_problems) {
            streams_.out << shown(name, file_name_limit) << ": "
                         << counted(count - most_problems, "more problem", "more problems")
                         << "; --max-problems 0 shows all\n";
        }
    }

    /// The problems of one included file.
    void write_included(const std::vector<IncludedProblem>& included, std::size_t begin, std::size_t stop,
                        std::size_t most_problems) {
        const std::string name = text_of(included[begin].told.problem.file);
        std::size_t last_count = 0;
        for (std::size_t i = begin; i < std::min(stop, begin + std::min(most_problems, stop - begin)); ++i) {
            const std::size_t count = included[i].documents.size();
            if (count != last_count) {
                streams_.out << "in " << shown(name, file_name_limit) << ", included by "
                             << (count == 1 ? shown(included[i].documents.front(), file_name_limit)
                                            : grouped(count) + " documents")
                             << ":\n";
                last_count = count;
            }
            writer_.write(included[i].told.problem, {});
        }
        write_rest(name, stop - begin, most_problems);
    }

    void write_closing_line(const CheckCounts& counts) {
        std::string found;
        if (counts.errors != 0) {
            found = counted(counts.errors, "error", "errors");
        }
        if (counts.warnings != 0) {
            found += (found.empty() ? "" : ", ") + counted(counts.warnings, "warning", "warnings");
        }
        if (counts.files > 1) {
            const std::string with = counts.files_with_problems == 0
                                         ? "no problems"
                                         : grouped(counts.files_with_problems) + " with problems";
            const std::string unread = counts.unread == 0 ? "" : ", " + grouped(counts.unread) + " unread";
            streams_.out << grouped(counts.files) << " files, " << with << unread
                         << (found.empty() ? "" : " (" + found + ")") << "\n";
        } else if (!found.empty()) {
            streams_.out << found << "\n";
        }
    }

    Streams& streams_;
    ProblemWriter writer_;
    std::set<std::string> told_; // reasons
};

/// Writes for editors: one line for each problem.
class GccReport : public CheckReport {
public:
    explicit GccReport(Streams& streams) : streams_(streams), writer_(streams.out, {}) {}

    void file(const std::string&, const std::vector<ToldProblem>& problems,
              std::size_t most_problems) override {
        for (std::size_t i = 0; i < std::min(problems.size(), most_problems); ++i) {
            write(problems[i].problem);
        }
    }
    void refusal(const std::string& reason) override { complain_once(reason, told_, streams_); }
    void end(const std::vector<IncludedProblem>& included, std::size_t, const CheckCounts&) override {
        for (const IncludedProblem& problem : included) {
            write(problem.told.problem);
        }
    }

private:
    void write(bk_parser::Problem problem) {
        problem.column = screen_column(problem);
        writer_.write_line(problem);
    }

    Streams& streams_;
    ProblemWriter writer_;
    std::set<std::string> told_; // reasons
};

} // namespace

std::unique_ptr<CheckReport> make_text_report(Streams& streams) {
    return std::make_unique<TextReport>(streams);
}

std::unique_ptr<CheckReport> make_gcc_report(Streams& streams) {
    return std::make_unique<GccReport>(streams);
}

std::unique_ptr<CheckReport> make_check_report(std::string_view format, Streams& streams) {
    return format == "json"    ? make_json_report(streams)
           : format == "sarif" ? make_sarif_report(streams)
           : format == "gcc"   ? make_gcc_report(streams)
                               : make_text_report(streams);
}

} // namespace bkdoc
