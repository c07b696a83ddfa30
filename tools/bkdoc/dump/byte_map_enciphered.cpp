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

void map_text(LittleCursor& cursor, std::string_view text, ByteMapWriter& map) {
    map.row(cursor, text.size(), 0, "text", "encrypted; it begins:");
    preview(text, map);
    const std::size_t padding = (word_width - text.size() % word_width) % word_width;
    if (padding != 0) {
        map.row(cursor, padding, 0, "padding", "up to a word of 4 bytes", Tone::dim);
    }
    if (cursor.left() != 0) {
        map.unexplained(cursor, cursor.left(), "the file",
                        "expected the end of the file, found " + counted(cursor.left(), "byte", "bytes") +
                            " after the text");
    }
}

/// Maps as much of the frame as the file has, without its content.
void map_frame(LittleCursor& cursor, ByteMapWriter& map) {
    map.row(cursor, length_width, 0, "length", "encrypted");
    const std::size_t stray = cursor.left() % word_width;
    const std::size_t whole = cursor.left() - stray;
    if (whole != 0) {
        map.row(cursor, whole, 0, "text", counted(whole, "byte", "bytes") + ", encrypted and padded");
    }
    if (stray != 0) {
        map.unexplained(cursor, stray, "the file",
                        "expected a word of 4 bytes, but the file has only " +
                            counted(stray, "byte", "bytes") + " left");
    }
}

} // namespace

void map_enciphered(std::string_view bytes, std::optional<std::string_view> text, ByteMapWriter& map) {
    LittleCursor cursor(bytes);
    map.row(cursor, form_mark_size, 0, "magic", "a text encrypted with a key");
    if (cursor.left() < length_width) {
        map.unexplained(cursor, cursor.left(), "the file",
                        "expected the 8 bytes of the encrypted length, but the file has only " +
                            counted(cursor.left(), "byte", "bytes") + " left");
    } else if (!text) {
        map_frame(cursor, map);
    } else {
        map.row(cursor, length_width, 0, "length",
                "encrypted; " + counted(text->size(), "byte", "bytes") + " of text");
        map_text(cursor, *text, map);
    }
}

} // namespace bkdoc
