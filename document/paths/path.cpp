#include "document/path.h"

#include "core/text/core_utf8_impl.h"
#include "document/paths/path_steps_impl.h"
#include "document/problems/list/problem_codes_impl.h"

#include <algorithm>
#include <utility>

namespace bk_parser {

namespace {

/// The path on one line, so that a caret can be drawn below: shows control characters as "?".
std::string on_one_line(std::string_view path) {
    std::string line(path);
    std::replace_if(
        line.begin(), line.end(),
        [](char character) { return static_cast<unsigned char>(character) < ' ' || character == '\x7F'; },
        '?');
    return line;
}

} // namespace

Path::Path(TextRef text) {
    ParsedPath parsed = parse_path(text.view());
    parsed.text = text.view();
    parsed_ = std::make_shared<const ParsedPath>(std::move(parsed));
}
Path::Path(const Path& other) noexcept = default;
// A move copies, so that a moved-from path can be used as before.
Path::Path(Path&& other) noexcept
    : Path(static_cast<const Path&>(other)) {} // NOLINT(performance-move-constructor-init)
Path& Path::operator=(const Path& other) noexcept = default;
Path& Path::operator=(Path&& other) noexcept {
    parsed_ = other.parsed_;
    return *this;
}
Path::~Path() = default;

bool Path::ok() const noexcept {
    return !parsed_->error;
}

const PathError* Path::error() const& noexcept {
    return parsed_->error ? &*parsed_->error : nullptr;
}

std::string_view Path::text() const& noexcept {
    return parsed_->text;
}

std::optional<PathError> path_error(TextRef path) {
    return parse_path(path.view()).error;
}

std::string to_text(const PathError& error, TextRef text) {
    const std::string_view path = text.view();
    const std::string_view before = path.substr(0, std::min(error.offset, path.size()));
    const std::string_view meant = path.substr(before.size(), error.length);
    return error.message + "\n" + on_one_line(path) + "\n" + std::string(bk::count_characters(before), ' ') +
           std::string(std::max<std::size_t>(bk::count_characters(meant), 1), '^') + "\n";
}

Problem to_problem(const PathError& error, TextRef text) {
    const std::string_view path = text.view();
    Problem problem;
    problem.code = codes::malformed_path;
    problem.message = error.message;
    problem.line = 1;
    problem.column = static_cast<unsigned int>(
        bk::count_characters(path.substr(0, std::min(error.offset, path.size()))) + 1);
    problem.offset = error.offset;
    problem.length = error.length;
    problem.source_line = path;
    return problem;
}

} // namespace bk_parser
