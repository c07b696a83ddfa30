#include "parser/files/parser_source_scanner_impl.h"

#include "parser/files/parser_document_impl.h"
#include "parser/text/parser_text_scan_impl.h"
#include "parser/words/parser_characters_impl.h"

#include <algorithm>

namespace bk {

SourcePiece SourceScanner::next() {
    SourcePiece piece;
    piece_begin_ = position_;
    if (skips_directive_) {
        skips_directive_ = false;
        step_to(position_ + 1);
    }
    const std::size_t left = source_.size() - piece_begin_;
    const std::size_t end = piece_begin_ + std::min(left, longest_piece_);
    for (;;) {
        step_to(find_special(position_, std::max(position_, end)));
        if (position_ == source_.size()) {
            finish_piece(piece, SourcePiece::Then::end, position_);
            return piece;
        }
        if (position_ >= end) {
            finish_piece(piece, SourcePiece::Then::pause, position_);
            return piece;
        }
        if (take_special(piece)) {
            return piece;
        }
    }
}

std::size_t SourceScanner::find_special(std::size_t from, std::size_t end) const noexcept {
    const char* const begin = source_.data();
    return static_cast<std::size_t>(find_directive(begin + from, begin + end) - begin);
}

/// True when the piece ends here.
bool SourceScanner::take_special(SourcePiece& piece) {
    switch (source_[position_]) {
    case '#':
        if (take_directive(piece)) {
            return true;
        }
        break;
    case '/':
        if (!in_string_ && looking_at("//")) {
            finish_piece(piece, SourcePiece::Then::comment, after_line(position_));
            return true;
        }
        break;
    case '0':
        if (!in_string_ && looking_at("0x")) {
            copy_hexadecimal();
            return false;
        }
        break;
    case '"':
        take_quote();
        break;
    default:
        break;
    }
    step_to(position_ + 1);
    return false;
}

bool SourceScanner::take_directive(SourcePiece& piece) noexcept {
    if (looking_at(include_directive)) {
        take_include(piece);
        return true;
    }
    if (looking_at(version_directive)) {
        take_version(piece);
        return true;
    }
    return false;
}

void SourceScanner::take_include(SourcePiece& piece) noexcept {
    const std::size_t name = position_ + include_directive.size();
    const std::size_t quote = source_.find('"', name);
    if (quote == std::string_view::npos) {
        piece.directive_length = static_cast<unsigned int>(include_directive.size());
        finish_piece(piece, SourcePiece::Then::open_include, source_.size());
        return;
    }
    piece.argument = source_.substr(name, quote - name);
    piece.directive_length = static_cast<unsigned int>(quote + 1 - position_);
    finish_piece(piece, SourcePiece::Then::include, quote + 1);
}

void SourceScanner::take_version(SourcePiece& piece) noexcept {
    const std::size_t number = position_ + version_directive.size();
    if (line_end_ < number) { // found once a line: one line may hold many version lines that are kept
        line_end_ = std::min(source_.find('\n', number), source_.size());
    }
    piece.argument = source_.substr(number, line_end_ - number);
    piece.directive_length = static_cast<unsigned int>(line_end_ - position_);
    if (keeps_later_version_lines_ && position_ != begin_) {
        // The next piece begins with this line, and does not test its first byte again.
        finish_piece(piece, SourcePiece::Then::version, position_);
        skips_directive_ = true;
    } else {
        finish_piece(piece, SourcePiece::Then::version, after_line(number));
    }
}

/// A quote is escaped when an odd number of backslashes is before it.
void SourceScanner::take_quote() noexcept {
    std::size_t run_begin = position_;
    while (run_begin != begin_ && source_[run_begin - 1] == '\\') {
        --run_begin;
    }
    if (position_ != begin_ && (position_ - run_begin) % 2 == 0) {
        in_string_ = !in_string_;
    }
}

void SourceScanner::copy_hexadecimal() {
    position_ += 2;
    std::size_t end = position_;
    while (end != source_.size() && is_char(source_[end], CHAR_HEX_DIGIT)) {
        ++end;
    }
    step_to(end);
}

std::size_t SourceScanner::after_line(std::size_t from) const noexcept {
    const std::size_t line_feed = source_.find('\n', from);
    return line_feed == std::string_view::npos ? source_.size() : line_feed + 1;
}

void SourceScanner::step_to(std::size_t end) {
    if (progress_) {
        for (std::size_t i = position_; i < end; ++i) {
            progress_.step(static_cast<unsigned int>(i + 1));
        }
    }
    position_ = end;
}

void SourceScanner::finish_piece(SourcePiece& piece, SourcePiece::Then then, std::size_t resume_at) noexcept {
    piece.then = then;
    piece.text = source_.substr(piece_begin_, position_ - piece_begin_);
    piece.offset = static_cast<unsigned int>(piece_begin_);
    piece.directive_offset = static_cast<unsigned int>(position_);
    position_ = resume_at;
}

} // namespace bk
