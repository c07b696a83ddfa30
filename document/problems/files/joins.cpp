#include "document/problems/files/joins_impl.h"

#include "document/problems/files/line_reader_impl.h"
#include "document/problems/list/problem_codes_impl.h"
#include "document/problems/list/shown_word_impl.h"
#include "parser/files/parser_document_impl.h"
#include "parser/words/parser_characters_impl.h"

#include <algorithm>

namespace bk_parser {

namespace {

using Piece = SourceMap::Piece;

bool ends_word(char character) noexcept {
    return bk::is_char(character, bk::CHAR_BLANK | bk::CHAR_DELIMITER);
}

/// The word of the expanded text that ends before `end`, or that begins there.
std::string_view word_before(std::string_view text, std::size_t end) noexcept {
    std::size_t begin = end;
    while (begin != 0 && !ends_word(text[begin - 1])) {
        --begin;
    }
    return text.substr(begin, end - begin);
}
std::string_view word_from(std::string_view text, std::size_t begin) noexcept {
    std::size_t end = begin;
    while (end != text.size() && !ends_word(text[end])) {
        ++end;
    }
    return text.substr(begin, end - begin);
}

std::string_view text_of(const SourceMap& sources, std::size_t inclusion) {
    return sources.get_files()[sources.file_of_inclusion(inclusion)]->text.get_text();
}

/// A comment or directive that was removed before a piece.
struct Taken {
    Spot spot;
    bool is_comment;
};

Taken taken_before(const SourceMap& sources, const Piece& before, const Piece& piece) {
    const std::size_t end = std::size_t{before.offset} + before.length;
    if (text_of(sources, before.inclusion).substr(end).starts_with("//")) {
        return {{before.inclusion, end, 2, piece.expanded}, true};
    }
    if (before.inclusion == piece.inclusion) {
        const std::size_t line_end = sources.file_of({before.inclusion}).text.line_end(end);
        return {{before.inclusion, end, std::min<std::size_t>(piece.offset, line_end) - end, piece.expanded},
                false};
    }
    const bool is_begin = piece.inclusion > before.inclusion && piece.offset == 0;
    Spot directive = sources.inclusion(is_begin ? piece.inclusion : before.inclusion).directive;
    directive.expanded = piece.expanded;
    return {directive, false};
}

} // namespace

Joins::Joins(std::string_view expanded, const SourceMap& sources) {
    const SourceMap::Pieces& pieces = sources.get_pieces();
    LineReaders lines(sources);
    for (const std::size_t i : sources.get_joints()) {
        const std::size_t at = pieces[i].expanded;
        if (at < expanded.size() && !expanded.substr(0, at).ends_with(bk::byte_order_mark)) {
            const Taken taken = taken_before(sources, pieces[i - 1], pieces[i]);
            const bool in_string = lines.state_at(taken.spot) == LineReader::State::string;
            if (!in_string || !taken.is_comment) {
                joins_.push_back({taken.spot, taken.is_comment, in_string});
                offsets_.push_back(pieces[i].expanded);
            }
        }
    }
}

const Spot* Joins::find_inside(std::size_t start, std::size_t length) const noexcept {
    const auto first = std::upper_bound(offsets_.begin(), offsets_.end(), start);
    const bool is_found = first != offsets_.end() && *first < start + length;
    return is_found ? &joins_[static_cast<std::size_t>(first - offsets_.begin())].taken : nullptr;
}

void Joins::lose(std::size_t start, std::size_t length, Losses& losses) const {
    const auto first = std::upper_bound(offsets_.begin(), offsets_.end(), start);
    for (auto at = first; at != offsets_.end() && *at < start + length; ++at) {
        losses.add(joins_[static_cast<std::size_t>(at - offsets_.begin())].taken);
    }
}

void Joins::tell(std::string_view expanded, const Losses& losses, ProblemList& problems) const {
    for (std::size_t i = 0; i < joins_.size(); ++i) {
        const Join& join = joins_[i];
        if (join.is_in_string) {
            continue;
        }
        const std::string_view code = join.is_comment ? codes::comment_joins_line : codes::include_joins_word;
        const auto compose = [&] {
            return shown(word_from(expanded, offsets_[i])) + " joins " +
                   shown(word_before(expanded, offsets_[i])) +
                   (join.is_comment ? ": put a blank before the comment"
                                    : ": put a blank or a line end before and after the directive");
        };
        problems.add(losses.severity(code, join.taken), code, compose, join.taken);
    }
}

} // namespace bk_parser
