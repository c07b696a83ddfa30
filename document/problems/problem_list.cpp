#include "document/problems/problem_list_impl.h"

#include "document/sources/path_text_impl.h"

#include <algorithm>
#include <utility>

namespace bk_parser {

namespace {

constexpr std::size_t longest_line = 4096;

void add_place(Problem& problem, const SourceMap& sources, const Spot& spot) {
    const SourceFile& file = sources.file_of(spot);
    const Place place = file.text.place_of(spot.offset);
    const std::size_t begin = file.text.line_begin(spot.offset);
    const std::size_t end = file.text.line_end(spot.offset);
    problem.file = path_of_text(file.name.shown);
    problem.line = static_cast<unsigned int>(place.line);
    problem.column = static_cast<unsigned int>(place.column);
    problem.offset = spot.offset;
    problem.length = spot.length;
    problem.source_line = file.text.get_text().substr(begin, std::min(end - begin, longest_line));
    for (std::size_t inclusion = spot.inclusion; inclusion != 0;) {
        const Spot& directive = sources.inclusion(inclusion).directive;
        problem.included_from.push_back(path_of_text(sources.file_of(directive).name.shown));
        inclusion = directive.inclusion;
    }
}

} // namespace

void ProblemList::add(Severity severity, std::string_view code, std::string message, const Spot& spot) {
    noticed_.push_back({severity, code, std::move(message), {}, spot, true});
}

void ProblemList::add(Severity severity, std::string_view code, std::string message,
                      std::filesystem::path file) {
    noticed_.push_back({severity, code, std::move(message), std::move(file), {}, false});
}

bool ProblemList::has_errors() const noexcept {
    return std::any_of(noticed_.begin(), noticed_.end(),
                       [](const Noticed& noticed) { return noticed.severity == Severity::error; });
}

void ProblemList::forget(std::string_view code) {
    std::erase_if(noticed_, [code](const Noticed& noticed) { return noticed.code == code; });
}

std::vector<Problem> ProblemList::take(const SourceMap& sources, const std::vector<std::string>& allow) {
    std::stable_sort(noticed_.begin(), noticed_.end(),
                     [](const Noticed& a, const Noticed& b) { return a.spot.expanded < b.spot.expanded; });
    std::vector<Problem> problems;
    for (Noticed& noticed : noticed_) {
        if (std::find(allow.begin(), allow.end(), noticed.code) != allow.end()) {
            continue;
        }
        Problem& problem = problems.emplace_back();
        problem.severity = noticed.severity;
        problem.code = noticed.code;
        problem.message = std::move(noticed.message);
        if (noticed.has_spot && !sources.is_empty()) {
            add_place(problem, sources, noticed.spot);
        } else {
            problem.file = std::move(noticed.file);
        }
    }
    noticed_.clear();
    return problems;
}

} // namespace bk_parser
