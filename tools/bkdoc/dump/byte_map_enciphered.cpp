#include "dump/byte_map.h"
#include "dump/little_cursor.h"
#include "input/form_mark.h"
#include "output/display/text_display.h"

namespace bkdoc {

namespace {

constexpr std::size_t length_width = 8;
constexpr std::size_t word_width = 4;
constexpr std::size_t preview_lines = 8;
constexpr std::size_t preview_width = 72; // characters

void preview(std::string_view text, ByteMapWriter& map) {
    for (std::size_t i = 0; i < preview_lines && !text.empty(); ++i) {
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        map.remark(line.empty() ? "|" : "| " + shown(line, preview_width));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    if (!text.empty()) {
        map.remark("\xE2\x80\xA6 and " + counted(text.size(), "byte", "bytes") + " more");
    }
}

std::optional<Unexplained> map_text(LittleCursor& cursor, std::string_view text, ByteMapWriter& map) {
    map.row(cursor, text.size(), 0, "text", "enciphered; it begins:");
    preview(text, map);
    const std::size_t padding = (word_width - text.size() % word_width) % word_width;
    if (padding != 0) {
        map.row(cursor, padding, 0, "padding", "up to a word of 4 bytes", Tone::dim);
    }
    if (cursor.left() != 0) {
        return Unexplained{cursor.position(), "expected the end of the file, found " +
                                                  counted(cursor.left(), "byte", "bytes") +
                                                  " behind the text"};
    }
    return std::nullopt;
}

} // namespace

std::optional<Unexplained> map_enciphered(std::string_view bytes, std::optional<std::string_view> text,
                                          ByteMapWriter& map) {
    LittleCursor cursor(bytes);
    map.row(cursor, form_mark_size, 0, "magic", "a text enciphered under a key");
    if (cursor.left() < length_width) {
        return Unexplained{cursor.position(),
                           "expected the 8 bytes of the enciphered length, but the file has only " +
                               counted(cursor.left(), "byte", "bytes") + " left"};
    }
    if (cursor.left() % word_width != 0) {
        const std::size_t stray = cursor.left() % word_width;
        return Unexplained{bytes.size() - stray, "expected a word of 4 bytes, but the file has only " +
                                                     counted(stray, "byte", "bytes") + " left"};
    }
    if (!text) {
        map.row(cursor, length_width, 0, "length", "enciphered");
        if (cursor.left() != 0) {
            const std::string size = counted(cursor.left(), "byte", "bytes");
            map.row(cursor, cursor.left(), 0, "text", size + ", enciphered and padded");
        }
        return std::nullopt;
    }
    map.row(cursor, length_width, 0, "length",
            "enciphered; " + counted(text->size(), "byte", "bytes") + " of text");
    return map_text(cursor, *text, map);
}

} // namespace bkdoc
