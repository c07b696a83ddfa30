#include "verbs/check/check_summary.h"

#include <algorithm>
#include <utility>

namespace bkdoc {

void CheckSummary::count(const bk_parser::Problem& problem) noexcept {
    if (problem.severity == bk_parser::Severity::error) {
        ++counts_.errors;
        fail(EXIT_FAULTS);
    } else {
        ++counts_.warnings;
    }
}

std::vector<ToldProblem> CheckSummary::add(CheckedFile&& file) {
    ++counts_.files;
    counts_.files_with_problems += file.problems.empty() ? 0 : 1;
    counts_.unread += file.refusal ? 1 : 0;
    fail(file.code);
    std::vector<ToldProblem> own;
    for (ToldProblem& told : file.problems) {
        if (has_one_document_ || told.chain.empty()) {
            count(told.problem);
            own_keys_.emplace(has_one_document_ ? std::string() : place_key(told.problem), true);
            own.push_back(std::move(told));
            continue;
        }
        const auto [known, is_new] = included_by_key_.try_emplace(place_key(told.problem), included_.size());
        if (is_new) {
            included_.push_back({std::move(told), {}});
        }
        std::vector<std::string>& documents = included_[known->second].documents;
        if (documents.empty() || documents.back() != file.name) {
            documents.push_back(file.name);
        }
    }
    return own;
}

std::vector<IncludedProblem> CheckSummary::take_included() {
    std::erase_if(included_, [this](const IncludedProblem& included) {
        return own_keys_.contains(place_key(included.told.problem));
    });
    std::map<std::filesystem::path, std::size_t> order;
    for (const IncludedProblem& included : included_) {
        order.try_emplace(included.told.problem.file, order.size());
        count(included.told.problem);
    }
    std::stable_sort(included_.begin(), included_.end(),
                     [&order](const IncludedProblem& a, const IncludedProblem& b) {
                         return order.at(a.told.problem.file) < order.at(b.told.problem.file);
                     });
    return std::move(included_);
}

} // namespace bkdoc
