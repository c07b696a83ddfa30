#include "dump/byte_map.h"
#include "dump/little_cursor.h"
#include "input/form_mark.h"
#include "output/display/text_display.h"

#include <algorithm>
#include <vector>

namespace bkdoc {

namespace {

constexpr std::size_t reserved_size = 8;
constexpr std::size_t count_width = 4;
constexpr std::size_t index_bytes_in_row = 10;
constexpr unsigned shift = 15;

std::string restored(std::string_view stored) {
    std::string text(stored);
    std::transform(text.begin(), text.end(), text.begin(), [](char character) {
        return static_cast<char>(static_cast<unsigned char>(character) + shift);
    });
    return text;
}

class ArchiveMap {
public:
    ArchiveMap(std::string_view bytes, ByteMapWriter& map) : cursor_(bytes), map_(map) {}

    void run() {
        map_.row(cursor_, form_mark_size, 0, "magic", "an archive of words");
        if (take_reserved() && take_strings() && take_indices() && cursor_.left() != 0) {
            stop("expected the end of the file, found " + counted(cursor_.left(), "byte", "bytes") +
                 " after the archive");
        }
    }

private:
    /// Ends the map: the rest of the file cannot be explained.
    bool stop(std::string reason) {
        map_.unexplained(cursor_, cursor_.left(), "the file", std::move(reason));
        return false;
    }

    bool has(std::size_t size, const std::string& what) {
        return size <= cursor_.left() || stop("expected " + what + ", but the file has only " +
                                              counted(cursor_.left(), "byte", "bytes") + " left");
    }

    bool take_reserved() {
        if (!has(reserved_size, "the 8 reserved bytes")) {
            return false;
        }
        const std::string_view bytes = cursor_.rest().substr(0, reserved_size);
        const bool is_usual = std::all_of(bytes.begin(), bytes.end(), [](char byte) { return byte == '\0'; });
        map_.row(cursor_, reserved_size, 0, "reserved", is_usual ? "" : "ignored; 00 as a rule", Tone::dim);
        return true;
    }

    bool take_count(const std::string& what, std::uint64_t& count) {
        if (!has(count_width, "the 4 bytes of the number of " + what)) {
            return false;
        }
        count = little_number(cursor_.rest().substr(0, count_width));
        return true;
    }

    bool take_strings() {
        std::uint64_t count = 0;
        if (!take_count("strings", count)) {
            return false;
        }
        map_.row(cursor_, count_width, 0, "count",
                 counted(count, "string", "strings") + ", each character stored less 15", Tone::dim);
        while (strings_.size() < count && !map_.has_failed()) {
            if (!take_string(count)) {
                return false;
            }
        }
        width_ = count < 256 ? 1 : count < 65536 ? 2 : 4;
        return !map_.has_failed();
    }

    bool take_string(std::uint64_t count) {
        const std::size_t length = cursor_.rest().find('\0');
        if (length == std::string_view::npos) {
            return stop("expected string " + grouped(strings_.size()) + " of " + grouped(count) +
                        " (from 0), " +
                        (cursor_.left() == 0 ? "but the file ends here" : "but no 00 byte ends it"));
        }
        strings_.push_back(cursor_.rest().substr(0, length));
        map_.row(cursor_, length + 1, 1, "string " + grouped(strings_.size() - 1),
                 shown(restored(strings_.back()), row_text_limit), Tone::text);
        return true;
    }

    bool take_indices() {
        std::uint64_t count = 0;
        if (!take_count("words", count)) {
            return false;
        }
        const std::uint64_t present = (cursor_.left() - count_width) / width_;
        if (count > present) {
            map_.unexplained(cursor_, count_width, "the file",
                             "expected the number of words, found " + grouped(count) +
                                 ", but the file has only " +
                                 counted(cursor_.left() - count_width, "byte", "bytes") + " after it");
            count = present; // go on with those that are there
        } else {
            map_.row(cursor_, count_width, 0, "count",
                     counted(count, "word", "words") + ", each the number of a string in " +
                         counted(width_, "byte", "bytes"),
                     Tone::dim);
        }
        for (std::uint64_t done = 0; done < count && !map_.has_failed();) {
            done += take_index_row(done, count - done);
        }
        return !map_.has_failed();
    }

    /// Shows as many words as fit on a line.
    std::uint64_t take_index_row(std::uint64_t done, std::uint64_t left) {
        const auto most =
            static_cast<std::size_t>(std::min<std::uint64_t>(left, index_bytes_in_row / width_));
        const std::string_view row = cursor_.rest().substr(0, most * width_);
        std::string words;
        std::size_t count = 0;
        for (; count < most; ++count) {
            const std::uint64_t index = little_number(row.substr(count * width_, width_));
            if (index >= strings_.size()) {
                break;
            }
            words += (count == 0 ? "" : " ") +
                     shown(restored(strings_[static_cast<std::size_t>(index)]), row_text_limit);
        }
        if (count != 0) {
            map_.row(cursor_, count * width_, 1, "word " + grouped(done), words);
        }
        if (count == most) {
            return count;
        }
        const std::uint64_t index = little_number(cursor_.rest().substr(0, width_));
        map_.unexplained(cursor_, width_, "the file",
                         "expected the number of a string, less than " + grouped(strings_.size()) +
                             ", found " + grouped(index));
        return count + 1;
    }

    LittleCursor cursor_;
    ByteMapWriter& map_;
    std::vector<std::string_view> strings_;
    std::size_t width_ = 1;
};

} // namespace

void map_archive(std::string_view bytes, ByteMapWriter& map) {
    ArchiveMap(bytes, map).run();
}

} // namespace bkdoc
