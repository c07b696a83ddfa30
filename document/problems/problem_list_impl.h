#pragma once

#include "document/problem.h"
#include "document/sources/source_map_impl.h"

#include <string>
#include <string_view>
#include <vector>

namespace bk_parser {

/// The problems of one load, collected as they are noticed, by place. Their lines and columns are worked out when the
/// load is over: a document without problems costs nothing.
class ProblemList {
public:
    /// A problem at a place of a file.
    void add(Severity severity, std::string_view code, std::string message, const Spot& spot);
    /// The same; the severity is that of the table.
    void add(std::string_view code, std::string message, const Spot& spot);
    /// A problem of a whole file, or of none.
    void add(Severity severity, std::string_view code, std::string message, std::filesystem::path file);

    bool is_empty() const noexcept { return noticed_.empty(); }
    bool has_errors() const noexcept;
    /// What was not read, in the words of the problems: parts of the document, and includes that were left out alone.
    void find_unread(std::vector<std::string>& parts, std::vector<std::string>& includes) const;
    /// Takes back the problems of a code.
    void forget(std::string_view code);
    /// In the order of the expanded text, those of allowed codes left out. What is wrong in a file that is included more than
    /// once is told at the first place.
    std::vector<Problem> take(const SourceMap& sources, const std::vector<std::string>& allow);

private:
    struct Noticed {
        Severity severity;
        std::string_view code; // one of document/problems/problem_codes_impl.h
        std::string message;
        std::filesystem::path file; // when it has no spot
        Spot spot;
        bool has_spot;
    };

    std::vector<Noticed> noticed_;
};

} // namespace bk_parser
