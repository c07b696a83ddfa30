#include "core/core_string.h"
#include "dump/byte_map.h"
#include "dump/little_cursor.h"
#include "input/form_mark.h"
#include "output/display/text_display.h"
#include "output/display/value_display.h"
#include "parser/parser_value.h"

#include <bit>
#include <limits>
#include <vector>

namespace bkdoc {

namespace {

constexpr std::size_t size_width = 8;

std::string double_text(std::uint64_t bits) {
    CoreString text;
    text += std::bit_cast<double>(bits);
    return std::string(text.get_view());
}

std::string char_text(char value) {
    return std::to_string(static_cast<int>(value)) + " '" + shown({&value, 1}, 4) + "'";
}

/// Walks nested groups and entries with an explicit stack. Each must lie inside the one around it.
class BinaryMap {
public:
    BinaryMap(std::string_view bytes, ByteMapWriter& map) : cursor_(bytes), size_(bytes.size()), map_(map) {}

    void run() {
        map_.row(cursor_, form_mark_size, 0, "tag", "a document in the binary form");
        frames_.push_back({size_, Inside::file});
        if (take_group()) {
            walk();
        }
        if (cursor_.left() != 0 && !map_.has_failed()) {
            stop("expected the end of the file, found " + counted(cursor_.left(), "byte", "bytes") +
                 " after the document");
        }
    }

private:
    enum class Inside { file, group, entry };

    struct Frame {
        std::size_t end;
        Inside inside;
    };

    void walk() {
        while (frames_.size() > 1 && !map_.has_failed()) {
            if (cursor_.position() == frames_.back().end) {
                frames_.pop_back();
            } else if (frames_.back().inside == Inside::group) {
                take_entry();
            } else {
                take_value();
            }
        }
    }

    /// Gives up on the rest of the innermost group or entry.
    bool stop(std::string reason) {
        map_.unexplained(cursor_, left(), where(), std::move(reason));
        return false;
    }

    std::size_t depth() const noexcept { return frames_.size() - 1; }
    /// The bytes left in the innermost group or entry.
    std::size_t left() const noexcept { return frames_.back().end - cursor_.position(); }

    std::string where() const {
        switch (frames_.back().inside) {
        case Inside::group:
            return "the group";
        case Inside::entry:
            return "the entry";
        case Inside::file:
            break;
        }
        return "the file";
    }

    bool has(std::uint64_t size, const std::string& what) {
        return size <= left() || stop("expected " + what + ", but " + where() + " has only " +
                                      counted(left(), "byte", "bytes") + " left");
    }

    /// Reads a size and checks that as many bytes follow. A size that is too large is cut to the bytes that are left.
    bool take_size(const std::string& what, std::uint64_t& size, std::string (*meaning)(std::uint64_t)) {
        if (!has(size_width, "the 8 bytes of the size of " + what)) {
            return false;
        }
        size = little_number(cursor_.rest().substr(0, size_width));
        const std::size_t rest = left() - size_width;
        if (size > rest) {
            map_.unexplained(cursor_, size_width, where(),
                             "expected the size of " + what + ", found " + grouped(size) + ", but " +
                                 where() + " has only " + counted(rest, "byte", "bytes") + " after it");
            size = rest; // try to go on with the bytes that are there
            return true;
        }
        map_.row(cursor_, size_width, depth(), "size", meaning(size), Tone::dim);
        return true;
    }

    bool take_group() {
        std::uint64_t size = 0;
        if (!take_size("a group", size,
                       [](std::uint64_t count) { return counted(count, "byte", "bytes") + " of entries"; })) {
            return false;
        }
        frames_.push_back({cursor_.position() + static_cast<std::size_t>(size), Inside::group});
        return true;
    }

    bool take_entry() {
        const std::string_view rest = cursor_.rest().substr(0, left());
        const std::size_t length = rest.find('\0');
        if (length == std::string_view::npos) {
            return stop("expected the name of an entry, but no 00 byte ends it inside " + where());
        }
        if (length == 0) {
            return stop("expected the name of an entry, found an empty one");
        }
        map_.row(cursor_, length + 1, depth() - 1, "entry", shown(rest.substr(0, length), row_text_limit),
                 Tone::name);
        return take_entry_head();
    }

    bool take_entry_head() {
        std::uint64_t size = 0;
        if (left() >= size_width && little_number(cursor_.rest().substr(0, size_width)) == 0) {
            return stop("expected the size of an entry, found 0, which leaves no room for its reserved byte");
        }
        const auto meaning = [](std::uint64_t count) {
            return counted(count, "byte", "bytes") + ", the next one and the values";
        };
        if (!take_size("an entry", size, meaning) || size == 0) {
            return false;
        }
        const std::size_t end = cursor_.position() + static_cast<std::size_t>(size);
        const bool is_usual = cursor_.rest().front() == '\0';
        map_.row(cursor_, 1, depth(), "reserved", is_usual ? "" : "ignored; 00 as a rule", Tone::dim);
        frames_.push_back({end, Inside::entry});
        return true;
    }

    bool take_value() {
        const char tag = cursor_.rest().front();
        switch (static_cast<ParserValue::Type>(static_cast<unsigned char>(tag))) {
        case ParserValue::TYPE_GROUP:
            map_.row(cursor_, 1, depth() - 1, "group", "");
            return take_group();
        case ParserValue::TYPE_BOOL:
        case ParserValue::TYPE_CHAR:
            return take_scalar(1);
        case ParserValue::TYPE_INT:
            return take_scalar(sizeof(std::uint32_t));
        case ParserValue::TYPE_DOUBLE:
            return take_scalar(sizeof(std::uint64_t));
        case ParserValue::TYPE_STRING:
            return take_string();
        case ParserValue::TYPE_BINARY_DATA:
            return take_data();
        default:
            return stop("expected the type of a value, 00 to 06, found " + shown_byte(tag));
        }
    }

    void value_row(std::size_t size, const std::string& meaning) {
        const auto type = static_cast<ParserValue::Type>(cursor_.rest().front());
        map_.row(cursor_, size, depth() - 1, type_word(type), meaning, tone_of(type));
    }

    bool take_scalar(std::size_t width) {
        const auto type = static_cast<ParserValue::Type>(cursor_.rest().front());
        if (!has(1 + width, counted(1 + width, "byte", "bytes") + " of a value of type " +
                                std::string(type_word(type)))) {
            return false;
        }
        value_row(1 + width, scalar_text(type, cursor_.rest().substr(1, width)));
        return true;
    }

    static std::string scalar_text(ParserValue::Type type, std::string_view bytes) {
        const std::uint64_t bits = little_number(bytes);
        switch (type) {
        case ParserValue::TYPE_BOOL:
            return bits != 0 ? "yes" : "no";
        case ParserValue::TYPE_CHAR:
            return char_text(bytes.front());
        case ParserValue::TYPE_INT:
            return std::to_string(static_cast<std::int32_t>(static_cast<std::uint32_t>(bits)));
        default:
            return double_text(bits);
        }
    }

    bool take_string() {
        const std::string_view rest = cursor_.rest().substr(1, left() - 1);
        const std::size_t length = rest.find('\0');
        if (length == std::string_view::npos) {
            return stop("expected a string, but no 00 byte ends it inside " + where());
        }
        value_row(1 + length + 1, shown_quoted(rest.substr(0, length), row_text_limit));
        return true;
    }

    // Readers use only the low 32 bits, so a size with higher bits is meaningless.
    bool take_data() {
        if (!has(1 + size_width, "the 8 bytes of the size of data")) {
            return false;
        }
        const std::uint64_t size = little_number(cursor_.rest().substr(1, size_width));
        if (size > std::numeric_limits<std::uint32_t>::max() || size > left() - 1 - size_width) {
            return stop("expected the size of data, found " + grouped(size) + ", but " + where() +
                        " has only " + counted(left() - 1 - size_width, "byte", "bytes") + " after it");
        }
        value_row(1 + size_width, counted(size, "byte", "bytes"));
        if (size != 0) {
            map_.row(cursor_, static_cast<std::size_t>(size), depth(), "bytes", "");
        }
        return true;
    }

    LittleCursor cursor_;
    std::size_t size_;
    ByteMapWriter& map_;
    std::vector<Frame> frames_;
};

} // namespace

void map_binary(std::string_view bytes, ByteMapWriter& map) {
    BinaryMap(bytes, map).run();
}

} // namespace bkdoc
