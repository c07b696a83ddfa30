#pragma once

#include "verbs/check/check_summary.h"

#include <memory>
#include <string_view>

namespace bkdoc {

/// Reports the results of a check in one of the formats of --format.
class CheckReport {
public:
    virtual ~CheckReport() = default;
    /// Called for each checked document. `problems` are those to report now.
    virtual void file(const std::string& name, const std::vector<ToldProblem>& problems,
                      std::size_t most_problems) = 0;
    /// Called for each document or operand that could not be read.
    virtual void refusal(const std::string& reason) = 0;
    virtual void end(const std::vector<IncludedProblem>& included, std::size_t most_problems,
                     const CheckCounts& counts) = 0;
};

/// `format` is text, json, sarif or gcc.
std::unique_ptr<CheckReport> make_check_report(std::string_view format, Streams& streams);

std::unique_ptr<CheckReport> make_text_report(Streams& streams);
std::unique_ptr<CheckReport> make_gcc_report(Streams& streams);
std::unique_ptr<CheckReport> make_json_report(Streams& streams);
std::unique_ptr<CheckReport> make_sarif_report(Streams& streams);

} // namespace bkdoc
