#pragma once

#include "document/document.h"
#include "tests/support/plain_text.h"
#include "tests/support/scratch_folder.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

using Lines = std::vector<std::string>;

/// The tree of a document on one line.
inline std::string tree_of(const bk_parser::Document& document) {
    CoreString text;
    document.root().get_text(text, false, false, 1);
    return plain(text);
}

inline std::string tree_of(const bk_parser::LoadResult& result) {
    return tree_of(result.document);
}

/// A problem as "main.bkd:1:2: error: message [code]", without the folder of the file.
inline std::string told(const bk_parser::Problem& problem) {
    std::string text = problem.file.filename().string();
    if (problem.line != 0) {
        text += ":" + std::to_string(problem.line) + ":" + std::to_string(problem.column);
    }
    text += problem.severity == bk_parser::Severity::error ? ": error: " : ": warning: ";
    return text + problem.message + " [" + problem.code + "]";
}

inline Lines told(const bk_parser::LoadResult& result) {
    Lines lines;
    for (const bk_parser::Problem& problem : result.problems) {
        lines.push_back(told(problem));
    }
    return lines;
}
