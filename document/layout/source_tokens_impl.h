#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace bk_parser {

enum class TokenKind : std::uint8_t {
    name, ///< begins an entry
    value,
    equals_sign,
    comma,
    open_brace,
    close_brace,
    open_arguments,
    close_arguments,
    comment, ///< from "//" on, without the line end and the blanks before it
    include, ///< up to the closing quote
    version  ///< a whole line, without its end
};

/// A part of a source that is not white space.
struct SourceToken {
    std::uint32_t begin = 0;
    std::uint32_t length = 0;
    TokenKind kind = TokenKind::value;

    std::uint32_t end() const noexcept { return begin + length; }
};

inline bool is_directive(TokenKind kind) noexcept {
    return kind == TokenKind::include || kind == TokenKind::version;
}

/// The tokens of the text of one file, in order. Between two tokens there is only white space. Included files are not read.
struct SourceTokens {
    std::vector<SourceToken> tokens;
    /// Whether a comment or directive is inside a word, or a directive touches one. The parser then reads another word than the one that
    /// the file shows.
    bool has_cut_words = false;
    /// Whether the text has faults, or may have some that depend on its includes.
    bool has_faults = false;
    /// Whether the text ends with a name without values. Then more than one white character must follow the name.
    bool ends_with_name = false;
};

/// Finds the tokens of a source by the library's scanner and grammar. Linear.
SourceTokens find_tokens(std::string_view source);

inline std::string_view text_of(std::string_view source, const SourceToken& token) noexcept {
    return source.substr(token.begin, token.length);
}

} // namespace bk_parser
