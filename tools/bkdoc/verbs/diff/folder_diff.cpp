#include "verbs/diff/folder_diff.h"

#include <algorithm>
#include <utility>

namespace bkdoc {

namespace {

bool is_own(const ToldDifference& difference, const FolderPair& pair) {
    return difference.file == pair.before || difference.file == pair.after;
}

/// A key of a difference that does not depend on how its file was included.
std::string key_of(const ToldDifference& difference) {
    std::string key;
    for (const std::string& part :
         {difference.file, std::to_string(difference.line), std::to_string(difference.column),
          std::string(word_of(difference.change.kind)), std::to_string(difference.change.value_before),
          std::to_string(difference.change.value_after), difference.before, difference.after}) {
        key += part;
        key += '\0';
    }
    return key;
}

/// Removes the differences that were reported before.
void tell_once(std::vector<FolderDiff::Row>& rows) {
    std::set<std::string> known;
    for (const FolderDiff::Row& row : rows) {
        for (const ToldDifference& difference : row.differences) {
            if (is_own(difference, row.pair)) {
                known.insert(key_of(difference));
            }
        }
    }
    for (FolderDiff::Row& row : rows) {
        std::erase_if(row.differences, [&](const ToldDifference& difference) {
            return !is_own(difference, row.pair) && !known.insert(key_of(difference)).second;
        });
    }
    std::erase_if(rows, [](const FolderDiff::Row& row) {
        return row.differences.empty() && !row.pair.before.empty() && !row.pair.after.empty();
    });
}

} // namespace

FolderDiff compare_folders(const std::vector<FolderPair>& pairs, const OpenOptions& open,
                           const bk_parser::CompareOptions& options, Streams& streams) {
    FolderDiff result;
    ReportedProblems reported;
    for (const FolderPair& pair : pairs) {
        if (pair.before.empty() || pair.after.empty()) {
            (pair.after.empty() ? result.one_sided.before : result.one_sided.after).push_back(pair.name);
            result.rows.push_back({pair, {}});
            continue;
        }
        Comparison comparison = compare_files(pair.before, pair.after, open, options, streams, reported);
        result.trouble = std::max(result.trouble, comparison.trouble);
        if (comparison.trouble == EXIT_INTERRUPTED) {
            break;
        }
        ++result.compared;
        result.rows.push_back({pair, std::move(comparison.differences)});
    }
    tell_once(result.rows);
    return result;
}

} // namespace bkdoc
