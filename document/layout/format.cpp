#include "document/format.h"

#include "document/layout/layout_printer_impl.h"
#include "document/layout/source_tokens_impl.h"
#include "document/load.h"
#include "document/load/form_impl.h"
#include "document/save/proof/same_tree_impl.h"

#include <algorithm>
#include <utility>

namespace bk_parser {

namespace {

LoadResult read_alone(std::string_view text) {
    LoadOptions options;
    options.follow_includes = false;
    return parse(text, options);
}

bool have_same_words(std::string_view left_text, const SourceTokens& left, std::string_view right_text,
                     const SourceTokens& right) {
    return !right.has_cut_words &&
           std::equal(left.tokens.begin(), left.tokens.end(), right.tokens.begin(), right.tokens.end(),
                      [&](const SourceToken& ours, const SourceToken& theirs) {
                          return ours.kind == theirs.kind &&
                                 text_of(left_text, ours) == text_of(right_text, theirs);
                      });
}

bool read_alike(const LoadResult& left, const LoadResult& right) {
    const auto have_same_name = [](const Include& ours, const Include& theirs) {
        return ours.name == theirs.name;
    };
    const std::vector<Include>& ours = left.document.includes();
    const std::vector<Include>& theirs = right.document.includes();
    return left.document.version() == right.document.version() &&
           std::equal(ours.begin(), ours.end(), theirs.begin(), theirs.end(), have_same_name) &&
           first_difference(left.document.root(), right.document.root()) == nullptr;
}

FormatResult refused(std::string reason, std::vector<Problem> problems = {}) {
    FormatResult result;
    result.reason = std::move(reason);
    result.problems = std::move(problems);
    return result;
}

std::vector<Problem> errors_of(std::vector<Problem> problems) {
    std::erase_if(problems, [](const Problem& problem) { return problem.severity != Severity::error; });
    return problems;
}

} // namespace

FormatResult format_text(std::string_view text, const FormatOptions& options) {
    if (form_of(text) != Form::text) {
        return refused("is not text");
    }
    LoadResult before = read_alone(text);
    if (!before.ok()) {
        return refused("has errors", errors_of(std::move(before.problems)));
    }
    const SourceTokens tokens = find_tokens(text);
    if (tokens.has_cut_words) {
        return refused("a comment or a directive touches a word; put a blank between them");
    }
    LayoutPrinter printer(text, tokens, options);
    if (!printer.run()) {
        return refused("would be larger than 4 GiB");
    }
    FormatResult result;
    result.text = std::move(printer.text());
    const LoadResult after = read_alone(result.text);
    if (!after.ok() || !have_same_words(text, tokens, result.text, find_tokens(result.text)) ||
        !read_alike(before, after)) {
        return refused("would be read differently once formatted");
    }
    return result;
}

} // namespace bk_parser
