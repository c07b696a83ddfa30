#pragma once

#include "dump/little_cursor.h"
#include "output/output.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Maps of the bytes of files: line by line what stands where, and what it means.
namespace bkdoc {

/// How many characters of a text in the file are shown in a line.
inline constexpr std::size_t row_text_limit = 60;

/// Bytes that could not be explained.
struct Unexplained {
    std::size_t offset;
    std::string reason; // what was expected there, and what was found
};

/// Writes the lines of a map: offset, bytes, field, meaning. Long runs of bytes are shortened.
class ByteMapWriter {
public:
    explicit ByteMapWriter(Output& out) : out_(out) {}

    void heading();
    /// A line about the next bytes, which are passed.
    void row(LittleCursor& cursor, std::size_t size, std::size_t depth, std::string_view field,
             std::string_view meaning, Tone tone = Tone::plain);
    /// A line without bytes, under the meaning of the last one.
    void remark(std::string_view text);
    /// A line about the next bytes, which cannot be explained and are passed. `where` has no more of them when there are none.
    void unexplained(LittleCursor& cursor, std::size_t size, std::string_view where, std::string reason);
    /// What has a line already and is wrong all the same.
    void reject(std::size_t offset, std::string reason) {
        unexplained_.push_back({offset, std::move(reason)});
    }
    /// What cannot be explained, and why.
    const std::vector<Unexplained>& unexplained() const noexcept { return unexplained_; }
    /// Nothing more can be written.
    bool has_failed() const noexcept { return out_.has_failed(); }

private:
    void line(std::size_t offset, std::string_view bytes, std::string_view field, std::string_view meaning,
              Tone tone);

    Output& out_;
    std::vector<Unexplained> unexplained_;
};

/// Each writes the map of a whole file. Sizes in the file are compared with the bytes that are there; any depth of groups will
/// do. Behind what cannot be explained it goes on where the entry, the group or the list around it ends.
void map_binary(std::string_view bytes, ByteMapWriter& map);
void map_archive(std::string_view bytes, ByteMapWriter& map);
/// `text` is the deciphered text; nothing when there was no key to decipher it.
void map_enciphered(std::string_view bytes, std::optional<std::string_view> text, ByteMapWriter& map);

/// "0x4B".
std::string shown_byte(char byte);

} // namespace bkdoc
