#pragma once

#include "dump/little_cursor.h"
#include "output/output.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Maps of files: line by line, which bytes stand where and what they mean.
namespace bkdoc {

/// How many characters of a text one line shows.
inline constexpr std::size_t row_text_limit = 60;

/// A place that could not be explained.
struct Unexplained {
    std::size_t offset;
    std::string reason; // what was expected there, and what was found
};

/// Writes the lines of a map: offset, bytes, field and meaning. Shortens long runs of bytes.
class ByteMapWriter {
public:
    explicit ByteMapWriter(Output& out) : out_(out) {}

    void heading();
    /// Writes a line about the next `size` bytes, and moves past them.
    void row(LittleCursor& cursor, std::size_t size, std::size_t depth, std::string_view field,
             std::string_view meaning, Tone tone = Tone::plain);
    /// Writes a line without bytes below the meaning of the last one.
    void remark(std::string_view text);
    /// Writes a line about `size` bytes that cannot be explained, and moves past them. `where` is what ends too early when
    /// there are no bytes.
    void unexplained(LittleCursor& cursor, std::size_t size, std::string_view where, std::string reason);
    /// Notes that bytes which already have a line are wrong.
    void reject(std::size_t offset, std::string reason) {
        unexplained_.push_back({offset, std::move(reason)});
    }
    /// The places that could not be explained, and why.
    const std::vector<Unexplained>& unexplained() const noexcept { return unexplained_; }
    /// Whether a write failed.
    bool has_failed() const noexcept { return out_.has_failed(); }

private:
    void line(std::size_t offset, std::string_view bytes, std::string_view field, std::string_view meaning,
              Tone tone);

    Output& out_;
    std::vector<Unexplained> unexplained_;
};

/// Each writes the map of a whole file. Checks sizes in the file against the bytes that are there. Depth costs no call stack.
/// After bytes that it cannot explain, it continues after the entry, group or list around them.
void map_binary(std::string_view bytes, ByteMapWriter& map);
void map_archive(std::string_view bytes, ByteMapWriter& map);
/// `text` is the decrypted text, or nothing without a key.
void map_enciphered(std::string_view bytes, std::optional<std::string_view> text, ByteMapWriter& map);

/// "0x4B".
std::string shown_byte(char byte);

} // namespace bkdoc
