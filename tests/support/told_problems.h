#pragma once

#include "document/document.h"
#include "tests/support/scratch_folder.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

/// A problem that a text should give.
struct ToldProblem {
    std::string code;
    bool is_error;
    unsigned int line;
    unsigned int column;
    std::size_t length;
    std::string message;

    bool operator==(const ToldProblem&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const ToldProblem& told) {
    return out << told.line << ":" << told.column << "+" << told.length << " "
               << (told.is_error ? "error" : "warning") << " [" << told.code << "] " << told.message;
}

inline std::vector<ToldProblem> told_of(const bk_parser::LoadResult& result) {
    std::vector<ToldProblem> told;
    for (const bk_parser::Problem& problem : result.problems) {
        told.push_back({problem.code, problem.severity == bk_parser::Severity::error, problem.line,
                        problem.column, problem.length, problem.message});
    }
    return told;
}

inline const std::string version_line = "#Brellwick_Serial_Version 1.2\n";

/// The problems of a text in memory that begins with a version line: its lines count from 2.
inline std::vector<ToldProblem> told_of(std::string_view text) {
    return told_of(bk_parser::parse(version_line + std::string(text)));
}

struct ToldRow {
    const char* name;
    std::string text;
    std::vector<ToldProblem> told;
};

inline std::ostream& operator<<(std::ostream& out, const ToldRow& row) {
    return out << row.text;
}

inline std::string name_of_row(const testing::TestParamInfo<ToldRow>& row) {
    return row.param.name;
}
