#include "document/load/form_impl.h"

#include <algorithm>
#include <array>

namespace bk_parser {

namespace {

constexpr std::size_t sample_size = 4096;
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

struct Mark {
    std::string_view bytes;
    std::string_view kind;
    bool may_be_text; // a document may begin with these bytes too
};

using namespace std::string_view_literals;

constexpr Mark marks[] = {
    {"\x7F"
     "ELF"sv,
     "an ELF program", false},
    {"MZ"sv, "a Windows program", true},
    {"\xCA\xFE\xBA\xBE"sv, "a compiled program", false},
    {"\xCF\xFA\xED\xFE"sv, "a compiled program", false},
    {"\x89PNG\r\n\x1A\n"sv, "a PNG image", false},
    {"\xFF\xD8\xFF"sv, "a JPEG image", false},
    {"GIF87a"sv, "a GIF image", true},
    {"GIF89a"sv, "a GIF image", true},
    {"BM"sv, "a BMP image", true},
    {"II*\0"sv, "a TIFF image", false},
    {"MM\0*"sv, "a TIFF image", false},
    {"RIFF"sv, "a RIFF file", true},
    {"v/1\x01"sv, "an OpenEXR image", false},
    {"\0\0\1\0"sv, "an icon", false},
    {"PK\x03\x04"sv, "a ZIP archive", false},
    {"\x1F\x8B"sv, "gzip data", false},
    {"BZh"sv, "bzip2 data", true},
    {"\xFD"
     "7zXZ\0"sv,
     "xz data", false},
    {"\x28\xB5\x2F\xFD"sv, "Zstandard data", false},
    {"7z\xBC\xAF\x27\x1C"sv, "a 7z archive", false},
    {"%PDF-"sv, "a PDF document", false},
    {"%!PS"sv, "a PostScript document", false},
    {"SQLite format 3\0"sv, "an SQLite database", false},
    {"\0asm"sv, "a WebAssembly module", false},
};

bool is_blank(char byte) noexcept {
    return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
}

/// Whether the character is a control character other than white space, which no text has. Without branches, so that the compiler
/// vectorises it.
bool is_control(char byte) noexcept {
    const auto code = static_cast<unsigned char>(byte);
    const auto from_tab = static_cast<unsigned char>(code - '\t');
    return ((code < 0x20) & (from_tab > '\r' - '\t')) | (code == 0x7F);
}

/// Counts the control characters of at most 255 bytes.
unsigned char count_in_block(const char* text, std::size_t size) noexcept {
    unsigned char controls = 0;
    for (std::size_t i = 0; i < size; ++i) {
        controls = static_cast<unsigned char>(controls + (is_control(text[i]) ? 1 : 0));
    }
    return controls;
}

/// Counts in blocks of one size, for which the compiler makes a third as many instructions as for blocks of any size.
std::size_t count_controls(std::string_view sample) noexcept {
    constexpr std::size_t block = 128;
    std::size_t count = 0;
    std::size_t begin = 0;
    for (; sample.size() - begin >= block; begin += block) {
        count += count_in_block(sample.data() + begin, block);
    }
    return count + count_in_block(sample.data() + begin, sample.size() - begin);
}

std::string_view kind_of_mark(std::string_view sample, bool has_controls) noexcept {
    for (const Mark& mark : marks) {
        if (sample.starts_with(mark.bytes) && (!mark.may_be_text || has_controls)) {
            return mark.kind;
        }
    }
    return {};
}

/// Text of 16 or 32 bits a character with a byte order mark.
std::string_view kind_of_wide_mark(std::string_view sample) noexcept {
    if (sample.starts_with("\xFF\xFE\0\0"sv) || sample.starts_with("\0\0\xFE\xFF"sv)) {
        return "UTF-32 text";
    }
    if (sample.starts_with("\xFF\xFE"sv) || sample.starts_with("\xFE\xFF"sv)) {
        return "UTF-16 text";
    }
    return {};
}

/// Text of 16 or 32 bits a character without a byte order mark. Most of it is Latin, so every other byte, or three of four, are
/// NUL.
std::string_view kind_of_wide_text(std::string_view sample) noexcept {
    std::array<std::size_t, 4> nuls{}; // by the place in four bytes
    for (std::size_t i = 0; i < sample.size(); ++i) {
        nuls[i % 4] += sample[i] == '\0' ? 1 : 0;
    }
    const std::size_t quarter = sample.size() / 4;
    if (quarter == 0) {
        return {};
    }
    const auto is_full = [&](std::size_t i) { return nuls[i] * 10 >= quarter * 7; };
    const auto is_bare = [&](std::size_t i) { return nuls[i] * 10 <= quarter; };
    if ((is_bare(0) && is_full(1) && is_full(2) && is_full(3)) ||
        (is_full(0) && is_full(1) && is_full(2) && is_bare(3))) {
        return "UTF-32 text";
    }
    if ((is_bare(0) && is_full(1) && is_bare(2) && is_full(3)) ||
        (is_full(0) && is_bare(1) && is_full(2) && is_bare(3))) {
        return "UTF-16 text";
    }
    return {};
}

std::string_view behind_blanks(std::string_view text) noexcept {
    const auto first = std::find_if_not(text.begin(), text.end(), is_blank);
    return text.substr(static_cast<std::size_t>(first - text.begin()));
}

/// The text from its first word on: after a byte order mark, blanks and comments.
std::string_view from_first_word(std::string_view text) noexcept {
    if (text.starts_with(byte_order_mark)) {
        text.remove_prefix(byte_order_mark.size());
    }
    text = behind_blanks(text);
    while (text.starts_with("//")) {
        text = behind_blanks(text.substr(std::min(text.find('\n'), text.size())));
    }
    return text;
}

/// The text from its first word on, after comments of both kinds that JSON may have.
std::string_view from_first_json_word(std::string_view text) noexcept {
    text = from_first_word(text);
    while (text.starts_with("/*")) {
        const std::size_t end = text.find("*/", 2);
        text = from_first_word(end == std::string_view::npos ? std::string_view() : text.substr(end + 2));
    }
    return text;
}

char next_but_blanks(std::string_view text) noexcept {
    const auto next = std::find_if_not(text.begin(), text.end(), is_blank);
    return next == text.end() ? '\0' : *next;
}

/// `{ "name":` or `{}`: a document that begins with a brace by mistake does not go on so.
bool is_json_object(std::string_view text) noexcept {
    text = from_first_json_word(text.substr(1));
    if (text.starts_with('}')) {
        return from_first_word(text.substr(1)).empty();
    }
    if (!text.starts_with('"')) {
        return false;
    }
    text.remove_prefix(1);
    const std::size_t quote = text.find('"');
    return quote != std::string_view::npos && next_but_blanks(text.substr(quote + 1)) == ':';
}

/// A word of JSON and nothing else. A string or a number alone may be a value that a document includes.
bool is_json_word(std::string_view text) noexcept {
    const std::size_t end =
        static_cast<std::size_t>(std::find_if(text.begin(), text.end(), is_blank) - text.begin());
    const std::string_view word = text.substr(0, end);
    return (word == "null" || word == "true" || word == "false") && behind_blanks(text.substr(end)).empty();
}

/// What follows a string that a text begins with; npos when it does not end.
std::size_t end_of_json_string(std::string_view text) noexcept {
    std::size_t at = 1;
    while (at < text.size() && text[at] != '"') {
        at += text[at] == '\\' ? 2 : 1;
    }
    return at < text.size() ? at + 1 : std::string_view::npos;
}

/// No word of a document begins with a bracket.
std::string_view kind_of_bracket(std::string_view text) noexcept {
    const char first = next_but_blanks(text.substr(1));
    constexpr std::string_view value_starts = "{[]\"-0123456789";
    if (value_starts.find(first) != std::string_view::npos) {
        return "JSON";
    }
    const std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    return line.find(']') == std::string_view::npos ? std::string_view() : "an INI file";
}

bool is_markup(std::string_view text) noexcept {
    if (text.starts_with("<?xml") || text.starts_with("<!")) {
        return true;
    }
    const auto is_letter = [](char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; };
    return text.size() > 1 && is_letter(text[1]) && !text.starts_with("<empty>") &&
           (text.find("</") != std::string_view::npos || text.find("/>") != std::string_view::npos);
}

std::string_view kind_of_other_syntax(std::string_view sample) noexcept {
    const std::string_view text = from_first_word(sample);
    if (sample.size() < sample_size && is_json_word(text)) {
        return "JSON";
    }
    if (text.starts_with('{')) {
        return is_json_object(text) ? "JSON" : std::string_view();
    }
    if (text.starts_with('[')) {
        return kind_of_bracket(text);
    }
    return text.starts_with('<') && is_markup(text) ? "XML or HTML" : std::string_view();
}

/// A text may hold a stray control character, and a file that was cut by a crash may end with NULs.
bool is_binary(std::string_view sample) noexcept {
    constexpr std::size_t least = 4;
    const std::size_t end = sample.find_last_not_of('\0');
    const std::string_view body = sample.substr(0, end == std::string_view::npos ? 0 : end + 1);
    const std::size_t controls = count_controls(body);
    return (body.empty() && sample.size() >= least) || (controls >= least && controls * 20 >= body.size());
}

} // namespace

bool is_json_value(std::string_view bytes) noexcept {
    const std::string_view text = from_first_word(bytes);
    std::size_t end = 0;
    if (text.starts_with('"')) {
        end = end_of_json_string(text);
    } else if (!text.empty() && (text[0] == '-' || (text[0] >= '0' && text[0] <= '9'))) {
        end = std::min(text.find_first_not_of("+-.0123456789Ee"), text.size());
    }
    return end != 0 && end != std::string_view::npos && behind_blanks(text.substr(end)).empty();
}

std::string_view foreign_kind(std::string_view bytes) noexcept {
    const std::string_view sample = bytes.substr(0, sample_size);
    const bool has_controls = count_controls(sample) != 0;
    std::string_view kind = kind_of_mark(sample, has_controls);
    if (kind.empty()) {
        kind = kind_of_other_syntax(sample);
    }
    if (kind.empty()) {
        kind = kind_of_wide_mark(sample);
    }
    if (kind.empty() && has_controls) {
        kind = kind_of_wide_text(sample);
    }
    if (kind.empty() && has_controls && is_binary(sample)) {
        kind = "binary data of another kind";
    }
    return kind;
}

} // namespace bk_parser
