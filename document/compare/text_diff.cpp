#include "document/text_diff.h"

#include "document/compare/sequence_match_impl.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <vector>

namespace bk_parser {

namespace {

constexpr std::uint32_t lines_around = 3;

std::vector<std::string_view> lines_of(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return lines;
}

/// Lines that differ: ranges of both texts.
struct Change {
    std::uint32_t left_begin;
    std::uint32_t left_end;
    std::uint32_t right_begin;
    std::uint32_t right_end;
};

class UnifiedDiff {
public:
    UnifiedDiff(std::string_view before, std::string_view after)
        : left_(lines_of(before)), right_(lines_of(after)) {
        find_changes();
    }

    std::string text(std::string_view before_name, std::string_view after_name) {
        if (changes_.empty()) {
            return {};
        }
        out_ = "--- " + std::string(before_name) + "\n+++ " + std::string(after_name) + "\n";
        for (std::size_t i = 0; i < changes_.size();) {
            std::size_t end = i + 1;
            while (end < changes_.size() &&
                   changes_[end].left_begin - changes_[end - 1].left_end <= 2 * lines_around) {
                ++end;
            }
            put_hunk(i, end);
            i = end;
        }
        return std::move(out_);
    }

private:
    std::vector<std::uint32_t> numbered(const std::vector<std::string_view>& lines) {
        std::vector<std::uint32_t> numbers;
        numbers.reserve(lines.size());
        for (const std::string_view line : lines) {
            numbers.push_back(
                numbers_.emplace(line, static_cast<std::uint32_t>(numbers_.size())).first->second);
        }
        return numbers;
    }

    void find_changes() {
        const std::vector<std::uint32_t> left = numbered(left_);
        const std::vector<std::uint32_t> right = numbered(right_);
        std::vector<MatchedPair> matches =
            match_sequences(left, right, static_cast<std::uint32_t>(numbers_.size()));
        matches.emplace_back(static_cast<std::uint32_t>(left.size()),
                             static_cast<std::uint32_t>(right.size()));
        std::uint32_t left_place = 0;
        std::uint32_t right_place = 0;
        for (const auto& [left_match, right_match] : matches) {
            if (left_match != left_place || right_match != right_place) {
                changes_.push_back({left_place, left_match, right_place, right_match});
            }
            left_place = left_match + 1;
            right_place = right_match + 1;
        }
    }

    void put_hunk(std::size_t first, std::size_t end) {
        const Change& begin = changes_[first];
        const Change& last = changes_[end - 1];
        const std::uint32_t before = std::min(begin.left_begin, lines_around);
        const std::uint32_t after =
            std::min(static_cast<std::uint32_t>(left_.size()) - last.left_end, lines_around);
        out_ += "@@ -" + range(begin.left_begin - before, last.left_end + after) + " +" +
                range(begin.right_begin - before, last.right_end + after) + " @@\n";
        std::uint32_t left = begin.left_begin - before;
        for (std::size_t i = first; i < end; ++i) {
            put_lines(' ', left_, left, changes_[i].left_begin);
            put_lines('-', left_, changes_[i].left_begin, changes_[i].left_end);
            put_lines('+', right_, changes_[i].right_begin, changes_[i].right_end);
            left = changes_[i].left_end;
        }
        put_lines(' ', left_, left, last.left_end + after);
    }

    /// "first,count" with lines from 1. When count is 0, `first` is the line before.
    static std::string range(std::uint32_t begin, std::uint32_t end) {
        const std::uint32_t count = end - begin;
        const std::string first = std::to_string(count == 0 ? begin : begin + 1);
        return count == 1 ? first : first + "," + std::to_string(count);
    }

    void put_lines(char mark, const std::vector<std::string_view>& lines, std::uint32_t begin,
                   std::uint32_t end) {
        for (std::uint32_t i = begin; i < end; ++i) {
            out_ += mark;
            out_ += lines[i];
            if (!lines[i].ends_with('\n')) {
                out_ += "\n\\ No newline at end of file\n";
            }
        }
    }

    std::vector<std::string_view> left_;
    std::vector<std::string_view> right_;
    std::unordered_map<std::string_view, std::uint32_t> numbers_;
    std::vector<Change> changes_;
    std::string out_;
};

} // namespace

std::string unified_diff(std::string_view before, std::string_view after, std::string_view before_name,
                         std::string_view after_name) {
    return UnifiedDiff(before, after).text(before_name, after_name);
}

} // namespace bk_parser
