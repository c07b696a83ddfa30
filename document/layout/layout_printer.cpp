#include "document/layout/layout_printer_impl.h"

#include "core/core_string.h"
#include "parser/files/parser_source_scanner_impl.h"

#include <algorithm>

namespace bk_parser {

namespace {

std::string_view line_end_of(std::string_view source) noexcept {
    const std::size_t line_feed = source.find('\n');
    const bool is_windows =
        line_feed != std::string_view::npos && line_feed != 0 && source[line_feed - 1] == '\r';
    return is_windows ? "\r\n" : "\n";
}

/// The number of UTF-8 characters. Bytes that are not UTF-8 may count too little, which is good enough for the width of a line.
std::size_t width_of(std::string_view text) noexcept {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0u) != 0x80u;
    }));
}

bool is_word_kind(TokenKind kind) noexcept {
    return kind != TokenKind::comment && !is_directive(kind);
}

} // namespace

LayoutPrinter::LayoutPrinter(std::string_view source, const SourceTokens& tokens,
                             const FormatOptions& options)
    : source_(source), tokens_(tokens.tokens), options_(options), ends_with_name_(tokens.ends_with_name),
      line_end_(line_end_of(source)), continues_(tokens.tokens.size()) {
    bool continues = false;
    for (std::size_t i = tokens_.size(); i-- > 0;) {
        const TokenKind kind = tokens_[i].kind;
        if (is_word_kind(kind)) {
            continues = kind != TokenKind::name && kind != TokenKind::close_brace;
            last_word_ = std::max(last_word_, i);
        }
        continues_[i] = continues;
    }
}

bool LayoutPrinter::run() {
    if (largest_size() > CoreString::max_length) {
        return false;
    }
    if (source_.starts_with(bk::byte_order_mark)) {
        out_ = bk::byte_order_mark;
    }
    for (std::size_t i = 0; i < tokens_.size(); ++i) {
        put(i);
    }
    if (!is_at_line_start_) {
        out_ += line_end_;
    }
    if (ends_with_name_ && last_word_ + 1 == tokens_.size()) {
        out_ += line_end_;
    }
    return true;
}

/// Limits the indentation. Otherwise the text of deep groups would grow with the square of the depth.
std::size_t LayoutPrinter::indentation_at(std::size_t depth) const noexcept {
    constexpr std::size_t indented_levels = 100;
    return std::min(depth, indented_levels) * options_.indent;
}

/// Indentation may make the output much larger than the text.
std::uint64_t LayoutPrinter::largest_size() const noexcept {
    std::uint64_t size = 0;
    std::uint64_t depth = 0;
    for (const SourceToken& token : tokens_) {
        depth += token.kind == TokenKind::open_brace ? 1 : 0;
        depth -= token.kind == TokenKind::close_brace && depth != 0 ? 1 : 0;
        const bool may_begin_line = token.kind != TokenKind::value && token.kind != TokenKind::comma;
        const std::uint64_t indentation = may_begin_line ? indentation_at(depth + 1) : 0;
        size += token.length + indentation + 2 * line_end_.size();
    }
    return size;
}

void LayoutPrinter::put(std::size_t i) {
    switch (tokens_[i].kind) {
    case TokenKind::name:
        put_name(i);
        break;
    case TokenKind::close_brace:
        put_close_brace(i);
        break;
    case TokenKind::comment:
        put_comment(i);
        break;
    case TokenKind::include:
    case TokenKind::version:
        put_directive(i);
        break;
    default:
        put_in_line(i);
        break;
    }
}

void LayoutPrinter::put_name(std::size_t i) {
    begin_line(i);
    append(text_of(source_, tokens_[i]));
    if (ends_with_name_ && i == last_word_ && i + 1 < tokens_.size()) {
        append(" "); // the name counts only when more follows than what ends the word
        const bool begins_line = tokens_[i + 1].kind == TokenKind::version; // wherever it stands now
        if (begins_line || line_breaks_before(i + 1) != 0) {
            append(" ");
        }
    }
}

/// Whether a token belongs to the entry before it: a value, a sign, or the brace that opens its group.
void LayoutPrinter::put_in_line(std::size_t i) {
    const SourceToken& token = tokens_[i];
    const bool is_attached = token.kind == TokenKind::comma || token.kind == TokenKind::open_arguments ||
                             token.kind == TokenKind::close_arguments ||
                             (i != 0 && tokens_[i - 1].kind == TokenKind::open_arguments);
    if (needs_line_break_ || (!is_attached && may_wrap(i) && !fits(i))) {
        break_line(depth_ + (token.kind == TokenKind::open_brace ? 0 : 1));
    } else if (!is_attached && !is_at_line_start_) {
        append(" ");
    }
    append(text_of(source_, token));
    if (token.kind == TokenKind::open_brace) {
        ++depth_;
        needs_line_break_ = true;
    }
}

void LayoutPrinter::put_close_brace(std::size_t i) {
    depth_ -= depth_ == 0 ? 0 : 1;
    if (i != 0 && tokens_[i - 1].kind == TokenKind::open_brace) {
        needs_line_break_ = false; // nothing is between the two
    } else {
        break_line(depth_);
    }
    append("}");
    needs_line_break_ = false;
}

void LayoutPrinter::put_comment(std::size_t i) {
    if (i != 0 && line_breaks_before(i) == 0) {
        append(" ");
    } else {
        begin_line(i);
    }
    append(text_of(source_, tokens_[i]));
    needs_line_break_ = true;
}

void LayoutPrinter::put_directive(std::size_t i) {
    const bool is_include = tokens_[i].kind == TokenKind::include;
    if (is_include && i != 0 && line_breaks_before(i) == 0 && !needs_line_break_) {
        append(is_at_line_start_ ? "" : " ");
    } else {
        begin_line(i);
    }
    append(text_of(source_, tokens_[i]));
    needs_line_break_ = !is_include || i + 1 == tokens_.size() || line_breaks_before(i + 1) != 0;
}

/// A new line, at the depth of entries or of what continues one, and the blank line before it if there was one.
void LayoutPrinter::begin_line(std::size_t i) {
    const bool is_first = i == 0 || tokens_[i - 1].kind == TokenKind::open_brace;
    if (!is_first && line_breaks_before(i) > 1 && !is_at_line_start_) {
        out_ += line_end_;
    }
    const bool is_inside = continues_entry(i);
    break_line(depth_ + (is_inside ? 1 : 0));
}

void LayoutPrinter::break_line(std::size_t depth) {
    if (!is_at_line_start_) {
        out_ += line_end_;
    }
    column_ = indentation_at(depth);
    out_.append(column_, ' ');
    is_at_line_start_ = true;
    needs_line_break_ = false;
}

void LayoutPrinter::append(std::string_view text) {
    out_ += text;
    column_ += width_of(text);
    is_at_line_start_ = false;
}

std::size_t LayoutPrinter::line_breaks_before(std::size_t i) const noexcept {
    const std::size_t begin = i == 0 ? 0 : tokens_[i - 1].end();
    const std::string_view gap = source_.substr(begin, tokens_[i].begin - begin);
    std::size_t count = 0;
    for (std::size_t k = 0; k < gap.size(); ++k) {
        const bool is_lone_return = gap[k] == '\r' && (k + 1 == gap.size() || gap[k + 1] != '\n');
        count += gap[k] == '\n' || is_lone_return ? 1 : 0;
    }
    return count;
}

/// Whether a comment or a directive is between the words of one entry.
bool LayoutPrinter::continues_entry(std::size_t i) const noexcept {
    return !is_word_kind(tokens_[i].kind) && continues_[i];
}

/// The first value stays with its name.
bool LayoutPrinter::may_wrap(std::size_t i) const noexcept {
    const TokenKind before = i == 0 ? TokenKind::name : tokens_[i - 1].kind;
    return tokens_[i].kind == TokenKind::value && before != TokenKind::name &&
           before != TokenKind::equals_sign;
}

bool LayoutPrinter::fits(std::size_t i) const noexcept {
    const bool has_sign = i + 1 < tokens_.size() && (tokens_[i + 1].kind == TokenKind::comma ||
                                                     tokens_[i + 1].kind == TokenKind::close_arguments);
    return column_ + 1 + width_of(text_of(source_, tokens_[i])) + (has_sign ? 1 : 0) <= options_.width;
}

} // namespace bk_parser
