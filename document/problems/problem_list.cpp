#include "document/problems/problem_list_impl.h"

#include "document/problems/problem_codes_impl.h"
#include "document/sources/path_text_impl.h"

#include <algorithm>
#include <array>
#include <functional>
#include <unordered_set>
#include <utility>

namespace bk_parser {

namespace {

constexpr std::size_t longest_line = 4096;
/// Of all source lines together: a document of one line may have a million problems.
constexpr std::size_t most_line_bytes = std::size_t{64} << 20;

/// What is behind such a problem is not read.
constexpr std::string_view ends_reading[] = {
    codes::too_large,         codes::cut_off,        codes::damaged,          codes::bytes_after_end,
    codes::too_many_includes, codes::text_after_end, codes::nested_too_deeply};
/// A file that such a problem is told of is not read: an include, or the document itself.
constexpr std::string_view leaves_out[] = {
    codes::unreadable,        codes::not_a_document, codes::wrong_key,         codes::no_key,
    codes::include_not_found, codes::include_circle, codes::include_left_open, codes::included_too_deeply};

void add_place(Problem& problem, const SourceMap& sources, const Spot& spot, std::size_t& line_bytes) {
    const SourceFile& file = sources.file_of(spot);
    const Place place = file.text.place_of(spot.offset);
    const std::size_t begin = file.text.line_begin(spot.offset);
    const std::size_t end = file.text.line_end(spot.offset);
    problem.file = path_of_text(file.name.shown);
    problem.line = static_cast<unsigned int>(place.line);
    problem.column = static_cast<unsigned int>(place.column);
    problem.offset = spot.offset;
    problem.length = spot.length;
    const std::size_t shown = std::min(end - begin, longest_line);
    if (shown <= line_bytes) {
        problem.source_line = file.text.get_text().substr(begin, shown);
        line_bytes -= shown;
    }
    for (std::size_t inclusion = spot.inclusion; inclusion != 0;) {
        const Spot& directive = sources.inclusion(inclusion).directive;
        problem.included_from.push_back(path_of_text(sources.file_of(directive).name.shown));
        inclusion = directive.inclusion;
    }
}

/// Which problems were told already.
class ToldProblems {
public:
    explicit ToldProblems(const SourceMap& sources) noexcept : sources_(sources) {}

    /// False when the same was told of the same place of a file.
    bool add(const Spot& spot, std::string_view code, std::string_view message) {
        const std::size_t file = sources_.file_of_inclusion(spot.inclusion);
        const std::size_t what =
            std::hash<std::string_view>()(code) ^ std::hash<std::string_view>()(message) * 31;
        return told_.insert({file, spot.offset, what}).second;
    }

private:
    struct Hash {
        std::size_t operator()(const std::array<std::size_t, 3>& key) const noexcept {
            return (key[0] * 1000003 + key[1]) * 1000003 ^ key[2];
        }
    };

    const SourceMap& sources_;
    std::unordered_set<std::array<std::size_t, 3>, Hash> told_;
};

} // namespace

void ProblemList::add(Severity severity, std::string_view code, std::string message, const Spot& spot) {
    noticed_.push_back({severity, code, std::move(message), {}, spot, true});
}

void ProblemList::add(Severity severity, std::string_view code, std::string message,
                      std::filesystem::path file) {
    noticed_.push_back({severity, code, std::move(message), std::move(file), {}, false});
}

void ProblemList::add(std::string_view code, std::string message, const Spot& spot) {
    add(severity_of(code), code, std::move(message), spot);
}

bool ProblemList::has_errors() const noexcept {
    return std::any_of(noticed_.begin(), noticed_.end(),
                       [](const Noticed& noticed) { return noticed.severity == Severity::error; });
}

void ProblemList::forget(std::string_view code) {
    std::erase_if(noticed_, [code](const Noticed& noticed) { return noticed.code == code; });
}

void ProblemList::find_unread(std::vector<std::string>& parts, std::vector<std::string>& includes) const {
    for (const Noticed& noticed : noticed_) {
        if (std::find(std::begin(ends_reading), std::end(ends_reading), noticed.code) !=
            std::end(ends_reading)) {
            parts.push_back(noticed.message);
        } else if (std::find(std::begin(leaves_out), std::end(leaves_out), noticed.code) !=
                   std::end(leaves_out)) {
            (noticed.has_spot ? includes : parts).push_back(noticed.message);
        }
    }
}

std::vector<Problem> ProblemList::take(const SourceMap& sources, const std::vector<std::string>& allow) {
    std::stable_sort(noticed_.begin(), noticed_.end(),
                     [](const Noticed& a, const Noticed& b) { return a.spot.expanded < b.spot.expanded; });
    std::size_t line_bytes = most_line_bytes;
    const bool may_repeat = sources.get_inclusion_count() > sources.get_files().size();
    ToldProblems told(sources);
    std::vector<Problem> problems;
    for (Noticed& noticed : noticed_) {
        const bool has_place = noticed.has_spot && !sources.is_empty();
        if (may_repeat && has_place && !told.add(noticed.spot, noticed.code, noticed.message)) {
            continue;
        }
        if (std::find(allow.begin(), allow.end(), noticed.code) != allow.end()) {
            continue;
        }
        Problem& problem = problems.emplace_back();
        problem.severity = noticed.severity;
        problem.code = noticed.code;
        problem.message = std::move(noticed.message);
        if (has_place) {
            add_place(problem, sources, noticed.spot, line_bytes);
        } else {
            problem.file = std::move(noticed.file);
        }
    }
    noticed_.clear();
    return problems;
}

} // namespace bk_parser
