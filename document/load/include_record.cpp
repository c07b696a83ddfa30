#include "document/load/include_record_impl.h"

#include "document/sources/path_text_impl.h"
#include "document/sources/source_text_impl.h"

#include <algorithm>
#include <string>

namespace bk_parser {

namespace {

std::uint64_t count_line_ends(std::string_view text) noexcept {
    std::uint64_t count = count_line_feeds(text);
    if (text.find('\r') == std::string_view::npos) {
        return count;
    }
    for (std::size_t i = text.find('\r'); i != std::string_view::npos; i = text.find('\r', i + 1)) {
        count += i + 1 == text.size() || text[i + 1] != '\n' ? 1 : 0;
    }
    return count;
}

/// With the facts of the text, where they are known.
std::uint64_t count_lines(std::string_view text, const std::optional<ByteFacts>& facts) noexcept {
    const bool is_open = !text.empty() && text.back() != '\n' && text.back() != '\r';
    const std::uint64_t ends = facts && !facts->have_returns() ? facts->line_feeds() : count_line_ends(text);
    return ends + (is_open ? 1 : 0);
}

std::vector<std::filesystem::path> paths_of(const std::vector<CoreString>& texts) {
    std::vector<std::filesystem::path> paths;
    paths.reserve(texts.size());
    for (const CoreString& text : texts) {
        paths.push_back(path_of_text(text.get_view()));
    }
    return paths;
}

} // namespace

/// Null for a directive of a file that was listed before.
Include* IncludeRecord::pending() noexcept {
    return is_pending_ ? &state_.includes.back() : nullptr;
}

void IncludeRecord::entered(const bk::SourceEntered& file, const std::optional<ByteFacts>& facts) {
    const bool is_document = open_.empty();
    const bool is_new = known_.insert(std::string(file.path.get_view())).second;
    if (Include* const include = pending()) {
        include->found = path_of_text(file.found.get_view());
        include->path = path_of_text(file.path.get_view());
        include->tried = paths_of(file.tried);
        is_pending_ = false;
    }
    const std::string_view text = file.text.get_view();
    if (is_new) {
        if (!is_document) {
            state_.document_files.push_back({path_of_text(file.found.get_view()),
                                             path_of_text(file.path.get_view()), stored_size_, 0, 0});
        }
        DocumentFile& listed = state_.document_files.back();
        listed.text_size = text.size();
        listed.line_count = count_lines(text, facts);
    }
    Open& open = open_.emplace_back(Open{text, state_.document_files.size() - 1, is_new});
    open.line_begin = text.starts_with("\xEF\xBB\xBF") ? 3 : 0; // in no line
}

void IncludeRecord::found(const bk::SourcePiece& piece) {
    Open& open = open_.back();
    is_pending_ = open.is_new;
    if (!open.is_new) {
        return;
    }
    count_to(open, piece.directive_offset);
    Include& include = state_.includes.emplace_back();
    include.name = piece.argument;
    include.file = state_.document_files[open.file].file;
    include.line = static_cast<unsigned int>(open.line);
    include.offset = piece.directive_offset;
    include.length = piece.directive_length;
    const SourceText line(CoreString(open.text.substr(open.line_begin, include.offset - open.line_begin)));
    include.column = static_cast<unsigned int>(line.place_of(include.offset - open.line_begin).column);
}

/// A CR before the offset ends no line when its LF is at the offset.
void IncludeRecord::count_to(Open& open, std::size_t offset) noexcept {
    const std::string_view between = open.text.substr(open.counted, offset - open.counted);
    open.line += count_line_ends(between);
    const std::size_t end = between.find_last_of("\r\n");
    if (end != std::string_view::npos) {
        open.line_begin = open.counted + end + 1;
    }
    open.counted = offset;
}

void IncludeRecord::failed(const bk::SourceFailure& failure, std::string_view code) {
    Include* const include = pending();
    if (include == nullptr) {
        return;
    }
    include->problem = code;
    include->tried = paths_of(failure.tried);
    if (!failure.found.is_empty()) {
        include->found = path_of_text(failure.found.get_view());
    }
    is_pending_ = false;
}

} // namespace bk_parser
