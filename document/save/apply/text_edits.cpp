#include "document/save/apply/text_edits_impl.h"

#include <algorithm>

namespace bk_parser {

namespace {

bool is_before(const Edit& a, const Edit& b) noexcept {
    return a.begin != b.begin ? a.begin < b.begin : a.end < b.end;
}

} // namespace

void sort_edits(std::vector<Edit>& edits) {
    std::stable_sort(edits.begin(), edits.end(), is_before);
}

bool are_alike(const std::vector<Edit>& one, const std::vector<Edit>& two) noexcept {
    return std::equal(one.begin(), one.end(), two.begin(), two.end(), [](const Edit& a, const Edit& b) {
        return a.begin == b.begin && a.end == b.end && a.text == b.text;
    });
}

std::string edited(std::string_view text, const std::vector<Edit>& edits) {
    std::string result;
    result.reserve(text.size() + 4096);
    std::size_t at = 0;
    for (const Edit& edit : edits) {
        if (edit.begin > at) {
            result += text.substr(at, edit.begin - at);
            at = edit.begin;
        }
        result += edit.text;
        at = std::max(at, edit.end);
    }
    result += text.substr(at);
    return result;
}

} // namespace bk_parser
