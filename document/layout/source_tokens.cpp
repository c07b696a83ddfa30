#include "document/layout/source_tokens_impl.h"

#include "core/core_string.h"
#include "parser/files/parser_source_scanner_impl.h"
#include "parser/text/parser_grammar_impl.h"

#include <algorithm>
#include <string>

namespace bk_parser {

namespace {

/// The beginning of a range of the source that is also a range of the text that the grammar reads.
struct Piece {
    std::uint32_t expanded;
    std::uint32_t offset;
};

bool is_blank(char character) noexcept {
    return bk::is_char(character, bk::CHAR_BLANK);
}

std::uint32_t trimmed_end(std::string_view source, std::size_t begin, std::size_t end) noexcept {
    while (end > begin && is_blank(source[end - 1])) {
        --end;
    }
    return static_cast<std::uint32_t>(end);
}

/// A source without its comments and directives, and the list of these.
class CutSource {
public:
    explicit CutSource(std::string_view source) : source_(source) {
        bk::SourceScanner scanner(source, bk::Progress(nullptr));
        text_.reserve(source.size());
        bk::SourcePiece piece;
        do {
            piece = scanner.next();
            pieces_.push_back({static_cast<std::uint32_t>(text_.size()), piece.offset});
            text_ += piece.text;
            take_end(piece);
        } while (piece.then != bk::SourcePiece::Then::end);
    }

    std::string_view text() const noexcept { return text_; }
    const std::vector<Piece>& pieces() const noexcept { return pieces_; }
    const std::vector<SourceToken>& others() const noexcept { return others_; }

private:
    void take_end(const bk::SourcePiece& piece) {
        using Then = bk::SourcePiece::Then;
        const std::uint32_t begin = piece.directive_offset;
        if (piece.then == Then::comment) {
            const std::size_t line_end = std::min(source_.find('\n', begin), source_.size());
            others_.push_back({begin, trimmed_end(source_, begin, line_end) - begin, TokenKind::comment});
        } else if (piece.then == Then::include) {
            others_.push_back({begin, piece.directive_length, TokenKind::include});
        } else if (piece.then == Then::open_include) {
            others_.push_back(
                {begin, static_cast<std::uint32_t>(source_.size()) - begin, TokenKind::include});
        } else if (piece.then == Then::version) {
            const std::uint32_t end = trimmed_end(source_, begin, begin + piece.directive_length);
            others_.push_back({begin, end - begin, TokenKind::version});
        }
    }

    std::string_view source_;
    std::string text_;
    std::vector<Piece> pieces_;
    std::vector<SourceToken> others_;
};

/// A sink of the grammar that records the words.
class WordRecorder {
public:
    WordRecorder(std::string_view source, const CutSource& cut, SourceTokens& out)
        : source_(source), cut_(cut), out_(out) {}

    void run() {
        bk::Grammar<WordRecorder> grammar(cut_.text(), *this);
        grammar.run([](const auto&...) {});
        put_others(static_cast<std::uint32_t>(source_.size()));
    }

    void see_word(std::string_view word) { put(word, kind_of(word)); }
    bool begin_entry(const bk::EntryHead& head, const bk::Token&) {
        if (head.had_suffix && !bk::is_name_by_itself(head.name)) {
            out_.has_faults = true;
            return false;
        }
        out_.tokens.back().kind = TokenKind::name;
        out_.ends_with_name = true;
        return true;
    }
    void add_value(ParserWord::Type, std::string_view word) {
        if (word.data() != last_word_) { // of a row of numbers
            put(word, TokenKind::value);
        }
    }
    void make_function_call() noexcept {}
    bool open_group(const bk::Token&) noexcept { return true; }
    void close_group() noexcept {}
    void report_fault(ParserReadObserver::Fault, const bk::Token&, std::string_view) noexcept {
        out_.has_faults = true;
    }

private:
    static TokenKind kind_of(std::string_view word) noexcept {
        switch (word[0]) {
        case '=':
            return TokenKind::equals_sign;
        case ',':
            return TokenKind::comma;
        case '{':
            return TokenKind::open_brace;
        case '}':
            return TokenKind::close_brace;
        case '(':
            return TokenKind::open_arguments;
        case ')':
            return TokenKind::close_arguments;
        default:
            return TokenKind::value;
        }
    }

    void put(std::string_view word, TokenKind kind) {
        last_word_ = word.data();
        const auto expanded = static_cast<std::uint32_t>(word.data() - cut_.text().data());
        const std::vector<Piece>& pieces = cut_.pieces();
        while (piece_ + 1 < pieces.size() && pieces[piece_ + 1].expanded <= expanded) {
            ++piece_;
        }
        const std::uint32_t begin = pieces[piece_].offset + (expanded - pieces[piece_].expanded);
        const auto length = static_cast<std::uint32_t>(word.size());
        if (piece_ + 1 < pieces.size() && pieces[piece_ + 1].expanded < expanded + length) {
            out_.has_cut_words = true;
        }
        put_others(begin);
        out_.tokens.push_back({begin, length, kind});
        out_.ends_with_name = false;
    }

    /// Puts the comments and directives before this place.
    void put_others(std::uint32_t before) {
        const std::vector<SourceToken>& others = cut_.others();
        for (; other_ < others.size() && others[other_].begin < before; ++other_) {
            out_.tokens.push_back(others[other_]);
        }
    }

    std::string_view source_;
    const CutSource& cut_;
    SourceTokens& out_;
    const char* last_word_ = nullptr;
    std::size_t piece_ = 0;
    std::size_t other_ = 0;
};

bool is_word(TokenKind kind) noexcept {
    return kind == TokenKind::name || kind == TokenKind::value;
}

/// Whether a directive touches a word. The text that replaces the directive may then become a part of the word.
bool touches_a_word(const std::vector<SourceToken>& tokens) noexcept {
    for (std::size_t i = 1; i < tokens.size(); ++i) {
        const SourceToken& left = tokens[i - 1];
        const SourceToken& right = tokens[i];
        if (left.end() == right.begin && ((is_directive(left.kind) && is_word(right.kind)) ||
                                          (is_word(left.kind) && is_directive(right.kind)))) {
            return true;
        }
    }
    return false;
}

} // namespace

SourceTokens find_tokens(std::string_view source) {
    SourceTokens found;
    const CutSource cut(source);
    WordRecorder(source, cut, found).run();
    found.has_cut_words = found.has_cut_words || touches_a_word(found.tokens);
    return found;
}

} // namespace bk_parser
