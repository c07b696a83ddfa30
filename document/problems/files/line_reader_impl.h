#pragma once

#include "document/sources/source_map_impl.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace bk_parser {

/// Reads the lines of a source as their author sees them: a string ends with its line, and so does a comment. Asking for places from
/// left to right walks the text only once.
class LineReader {
public:
    enum class State { outside, string, comment };

    explicit LineReader(std::string_view text) noexcept : text_(text) {}

    /// Whether the character at `offset` is in a string, in a comment or outside. Quotes and the slashes of a comment belong to these.
    State state_at(std::size_t offset) noexcept {
        if (offset + 1 == position_) {
            return state_of_last_;
        }
        go_near(offset);
        while (position_ <= offset && position_ < text_.size()) {
            take();
        }
        return state_of_last_;
    }

private:
    /// Goes to the beginning of the offset's line, unless the position is already in that line and not after the offset.
    void go_near(std::size_t offset) noexcept {
        const std::size_t floor = offset < position_ ? 0 : position_;
        const std::string_view passed = text_.substr(floor, offset - floor);
        const std::size_t line_break = passed.find_last_of("\r\n");
        if (line_break != std::string_view::npos || offset < position_) {
            position_ = line_break == std::string_view::npos ? 0 : floor + line_break + 1;
            state_ = State::outside;
        }
    }

    void take() noexcept {
        const char character = text_[position_];
        if (character == '\n' || character == '\r') {
            state_ = State::outside;
            state_of_last_ = state_;
            ++position_;
            return;
        }
        if (state_ == State::outside && character == '/' && text_.substr(position_, 2) == "//") {
            state_ = State::comment;
        }
        const bool is_quote = character == '"' && (position_ == 0 || text_[position_ - 1] != '\\');
        if (is_quote && state_ == State::outside) {
            state_ = State::string;
            state_of_last_ = state_;
        } else {
            state_of_last_ = state_;
            if (is_quote && state_ == State::string) {
                state_ = State::outside;
            }
        }
        ++position_;
    }

    std::string_view text_;
    std::size_t position_ = 0; // the next character to take
    State state_ = State::outside;
    State state_of_last_ = State::outside;
};

/// One reader for each file that is asked about.
class LineReaders {
public:
    explicit LineReaders(const SourceMap& sources)
        : sources_(sources), readers_(sources.get_files().size()) {}

    LineReader::State state_at(const Spot& spot) {
        std::optional<LineReader>& reader = readers_[sources_.file_of_inclusion(spot.inclusion)];
        if (!reader) {
            reader.emplace(sources_.file_of(spot).text.get_text());
        }
        return reader->state_at(spot.offset);
    }

private:
    const SourceMap& sources_;
    std::vector<std::optional<LineReader>> readers_;
};

} // namespace bk_parser
