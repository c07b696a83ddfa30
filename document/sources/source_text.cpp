#include "document/sources/source_text_impl.h"

#include "core/text/core_utf8_impl.h"
#include "document/sources/byte_scan_impl.h"

#include <algorithm>

namespace bk_parser {

void SourceText::find_lines() const {
    if (!starts_.empty()) {
        return;
    }
    const std::string_view text = get_text();
    starts_.push_back(text.starts_with("\xEF\xBB\xBF") ? 3 : 0);
    counted_offset_ = starts_.front();
    for (std::size_t i = find_line_end(text, 0); i < text.size(); i = find_line_end(text, i)) {
        i += text.substr(i, 2) == "\r\n" ? 2 : 1;
        starts_.push_back(i);
    }
}

std::size_t SourceText::get_line_count() const {
    find_lines();
    const bool ends_with_line_end = starts_.back() == get_text().size();
    return starts_.size() - (ends_with_line_end ? 1 : 0);
}

std::size_t SourceText::line_index(std::size_t offset) const {
    find_lines();
    const auto after = std::upper_bound(starts_.begin() + 1, starts_.end(), offset);
    return static_cast<std::size_t>(after - starts_.begin()) - 1;
}

Place SourceText::place_of(std::size_t offset) const {
    const std::size_t line = line_index(offset);
    offset = std::max(offset, starts_.front());
    if (line != counted_line_ || offset < counted_offset_) {
        counted_line_ = line;
        counted_offset_ = starts_[line];
        counted_column_ = 1;
    }
    const std::string_view passed = get_text().substr(counted_offset_, offset - counted_offset_);
    counted_column_ += bk::count_characters(passed);
    counted_offset_ = offset;
    return {line + 1, counted_column_};
}

std::size_t SourceText::line_begin(std::size_t offset) const {
    return starts_[line_index(offset)];
}

std::size_t SourceText::line_end(std::size_t offset) const {
    const std::size_t next = line_index(offset) + 1;
    std::size_t end = next < starts_.size() ? starts_[next] : get_text().size();
    const std::size_t begin = starts_[next - 1];
    const std::string_view text = get_text();
    while (end > begin && (text[end - 1] == '\n' || text[end - 1] == '\r')) {
        --end;
    }
    return end;
}

} // namespace bk_parser
