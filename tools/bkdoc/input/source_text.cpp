#include "input/source_text.h"

#include "output/text_display.h"

#include <algorithm>

namespace bkdoc {

void SourceText::find_lines() const {
    if (!starts_.empty()) {
        return;
    }
    starts_.push_back(0);
    const std::string_view text = text_;
    for (std::size_t i = text.find_first_of("\r\n"); i != std::string_view::npos;
         i = text.find_first_of("\r\n", i)) {
        i += text.substr(i, 2) == "\r\n" ? 2 : 1;
        starts_.push_back(i);
    }
}

std::size_t SourceText::get_line_count() const {
    find_lines();
    const bool ends_with_line_end = starts_.back() == text_.size();
    return starts_.size() - (ends_with_line_end ? 1 : 0);
}

std::size_t SourceText::line_index(std::size_t offset) const {
    find_lines();
    const auto after = std::upper_bound(starts_.begin(), starts_.end(), offset);
    return static_cast<std::size_t>(after - starts_.begin()) - 1;
}

Place SourceText::place_of(std::size_t offset) const {
    const std::size_t line = line_index(offset);
    if (line != counted_line_ || offset < counted_offset_) {
        counted_line_ = line;
        counted_offset_ = starts_[line];
        counted_column_ = 1;
    }
    const std::string_view passed = std::string_view(text_).substr(counted_offset_, offset - counted_offset_);
    counted_column_ += count_characters(passed);
    counted_offset_ = offset;
    return {line + 1, counted_column_};
}

std::size_t SourceText::line_begin(std::size_t offset) const {
    return starts_[line_index(offset)];
}

std::size_t SourceText::line_end(std::size_t offset) const {
    const std::size_t next = line_index(offset) + 1;
    std::size_t end = next < starts_.size() ? starts_[next] : text_.size();
    const std::size_t begin = starts_[next - 1];
    while (end > begin && (text_[end - 1] == '\n' || text_[end - 1] == '\r')) {
        --end;
    }
    return end;
}

} // namespace bkdoc
