#include "document/problems/list/problem_list_impl.h"

#include "core/text/core_utf8_impl.h"
#include "document/load/failure_text_impl.h"
#include "document/problems/list/problem_codes_impl.h"
#include "document/problems/list/shown_word_impl.h"
#include "document/sources/path_text_impl.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace bk_parser {

namespace {

constexpr std::size_t longest_line = 4096;
constexpr std::size_t most_unread = 100; // messages of each kind that are kept
/// The bytes of all source lines together. Bounded, because a document of one long line may have a million problems.
constexpr std::size_t most_line_bytes = std::size_t{64} << 20;

/// Whether the text after such a problem is not read.
constexpr std::string_view ends_reading[] = {
    codes::too_large,         codes::cut_off,           codes::damaged,     codes::bytes_after_end,
    codes::too_many_includes, codes::nested_too_deeply, codes::json_syntax, codes::json_shape};
/// Whether such a problem means that something is not read: an include, the document itself, or the text after its end, which a kept
/// layout keeps.
constexpr std::string_view leaves_out[] = {
    codes::unreadable,        codes::not_a_document, codes::wrong_key,         codes::no_key,
    codes::include_not_found, codes::include_circle, codes::include_left_open, codes::included_too_deeply,
    codes::text_after_end};

/// Where to cut a long line: at the beginning of a character, a little before the place.
std::size_t shown_begin(const SourceText& text, std::size_t offset) {
    const std::size_t begin = text.line_begin(offset);
    if (offset < begin + longest_line / 2) {
        return begin;
    }
    std::size_t shown = offset - longest_line / 2;
    while (shown < offset && (static_cast<unsigned char>(text.get_text()[shown]) & 0xC0) == 0x80) {
        ++shown;
    }
    return shown;
}

bool says_what_is_unread(std::string_view code) noexcept {
    const auto is_in = [code](const auto& list) {
        return std::find(std::begin(list), std::end(list), code) != std::end(list);
    };
    return is_in(ends_reading) || is_in(leaves_out);
}

/// The part of a line to show. Cuts no character in two.
std::size_t shown_size(std::string_view line) noexcept {
    if (line.size() <= longest_line) {
        return line.size();
    }
    for (std::size_t begin = longest_line; begin-- > longest_line - 3;) {
        const std::size_t length = bk::utf8_length(line, begin);
        if (length != 0) {
            return begin + length > longest_line ? begin : longest_line;
        }
    }
    return longest_line;
}

void add_place(Problem& problem, const SourceMap& sources, const Spot& spot, std::size_t& line_bytes) {
    const SourceFile& file = sources.file_of(spot);
    const Place place = file.text.place_of(spot.offset);
    const std::size_t begin = shown_begin(file.text, spot.offset);
    const std::size_t end = file.text.line_end(spot.offset);
    problem.file = path_of_text(file.name.shown);
    problem.line = static_cast<unsigned int>(place.line);
    problem.column = static_cast<unsigned int>(place.column);
    problem.offset = spot.offset;
    problem.length = spot.length;
    const std::string_view text = file.text.get_text();
    const std::size_t shown = shown_size(text.substr(begin, end - begin));
    if (shown <= line_bytes) {
        problem.source_line_offset = begin;
        problem.source_line = text.substr(begin, shown);
        line_bytes -= shown;
    }
    for (std::size_t inclusion = spot.inclusion; inclusion != 0;) {
        const Spot& directive = sources.inclusion(inclusion).directive;
        problem.included_from.push_back(path_of_text(sources.file_of(directive).name.shown));
        inclusion = directive.inclusion;
    }
}

} // namespace

void ProblemList::add(Severity severity, std::string_view code, std::string message, const Spot& spot) {
    note_unread(code, message, true);
    if (is_allowed(severity, code) || is_told(spot, code, message)) {
        return;
    }
    if (has_room(severity)) {
        remember(spot, code, message);
        noticed_.push_back({severity, code, std::move(message), {}, spot, true});
    } else {
        leave_out(severity, code);
    }
}

void ProblemList::add(Severity severity, std::string_view code, std::string message,
                      std::filesystem::path file) {
    note_unread(code, message, false);
    if (is_allowed(severity, code)) {
        return;
    }
    if (has_room(severity)) {
        noticed_.push_back({severity, code, std::move(message), std::move(file), {}, false});
    } else {
        leave_out(severity, code);
    }
}

void ProblemList::add(std::string_view code, std::string message, const Spot& spot) {
    add(severity_of(code), code, std::move(message), spot);
}

bool ProblemList::is_allowed(Severity severity, std::string_view code) const {
    return severity == Severity::warning && std::find(allow_.begin(), allow_.end(), code) != allow_.end();
}

/// Whether to keep the problem: for the list, or because a save has to name what was not read.
bool ProblemList::keeps_message(Severity severity, std::string_view code) const {
    return !is_allowed(severity, code) && (kept(severity) < most_ || says_what_is_unread(code));
}

bool ProblemList::has_room(Severity severity) noexcept {
    std::size_t& kept = kept_[severity == Severity::error ? 1 : 0];
    return kept < most_ && ++kept != 0;
}

void ProblemList::leave_out(Severity severity, std::string_view code) {
    Left& left = left_[code];
    ++left.count;
    left.has_error = left.has_error || severity == Severity::error;
}

ProblemList::Told ProblemList::told_of(const Spot& spot, std::string_view code,
                                       std::string_view message) const noexcept {
    const std::hash<std::string_view> hash;
    return {sources_.file_of_inclusion(spot.inclusion), spot.offset, hash(code) ^ hash(message) * 31};
}

/// Whether the same problem was reported before at the same place of the file.
bool ProblemList::is_told(const Spot& spot, std::string_view code, std::string_view message) const {
    return sources_.get_inclusion_count() > sources_.get_files().size() &&
           told_.contains(told_of(spot, code, message));
}

void ProblemList::remember(const Spot& spot, std::string_view code, std::string_view message) {
    if (!sources_.is_empty()) {
        told_.insert(told_of(spot, code, message));
    }
}

void ProblemList::forget(std::string_view code) {
    std::erase_if(noticed_, [code](const Noticed& noticed) { return noticed.code == code; });
    left_.erase(code);
}

/// Notes what was not read, even when the list does not take the problem.
void ProblemList::note_unread(std::string_view code, const std::string& message, bool has_spot) {
    if (!says_what_is_unread(code)) {
        return;
    }
    const bool ends =
        std::find(std::begin(ends_reading), std::end(ends_reading), code) != std::end(ends_reading);
    std::vector<std::string>& unread = ends || !has_spot ? unread_parts_ : unread_includes_;
    if (unread.size() < most_unread) {
        unread.push_back(message);
    }
}

/// Problems without a place come first, and a problem of a directive before those in the included file.
bool ProblemList::is_before(const Noticed& a, const Noticed& b) const {
    if (!a.has_spot || !b.has_spot || sources_.is_empty()) {
        return !a.has_spot && b.has_spot;
    }
    const Spot* first = &a.spot;
    const Spot* second = &b.spot;
    while (first->inclusion != second->inclusion) { // an inclusion has a higher number than the one around it
        const Spot*& inner = first->inclusion > second->inclusion ? first : second;
        inner = &sources_.inclusion(inner->inclusion).directive;
    }
    if (first->offset != second->offset) {
        return first->offset < second->offset;
    }
    return first == &a.spot && second != &b.spot;
}

Problem ProblemList::problem_of(Noticed&& noticed, std::size_t& line_bytes) const {
    Problem problem;
    problem.severity = noticed.severity;
    problem.code = noticed.code;
    problem.message = on_one_line(noticed.message);
    if (noticed.has_spot && !sources_.is_empty()) {
        add_place(problem, sources_, noticed.spot, line_bytes);
    } else {
        problem.file = std::move(noticed.file);
    }
    return problem;
}

std::vector<Problem> ProblemList::take(const Meter::Range& range, Meter& meter) {
    std::stable_sort(noticed_.begin(), noticed_.end(),
                     [this](const Noticed& a, const Noticed& b) { return is_before(a, b); });
    for (std::size_t i = most_; i < noticed_.size(); ++i) {
        leave_out(noticed_[i].severity, noticed_[i].code);
    }
    const std::size_t count = std::min(most_, noticed_.size());
    std::size_t line_bytes = most_line_bytes;
    std::vector<Problem> problems;
    meter.start(range, count);
    for (std::size_t i = 0; i < count; ++i) {
        problems.push_back(problem_of(std::move(noticed_[i]), line_bytes));
        meter.reach(i);
    }
    meter.stop(count);
    noticed_.clear();
    add_left(problems);
    return problems;
}

void ProblemList::add_left(std::vector<Problem>& problems) const {
    std::size_t count = 0;
    bool has_error = false;
    for (const auto& [code, left] : left_) {
        count += left.count;
        has_error = has_error || left.has_error;
    }
    if (count != 0) {
        Problem& problem = problems.emplace_back();
        problem.severity = has_error ? Severity::error : Severity::warning;
        problem.code = codes::more_problems;
        problem.message = grouped_number(count) +
                          (count == 1 ? " more problem is not told" : " more problems are not told");
    }
}

} // namespace bk_parser
